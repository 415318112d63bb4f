#include "text_check.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>

#include <glib.h>

#include "error.h"
#include "fonts.h"
#include "text.h"
#include "ui_language.h"

namespace {

class TextCheck {
 public:
  TextCheck(KeyboardPage& page, Canvas& canvas) : m_page(page), m_canvas(canvas) {
    UseUiLanguage(kNoLanguage);
    m_types = page.StoreEachLanguageToReadTypes();
  }

  std::vector<Finding> Run() {
    const Setting languages = m_page.ReadSetting(SettingId::kLanguage);
    for (const Choice& language : languages.choices) {
      CheckInterface(language.value);
    }
    if (m_types.empty()) {
      m_findings.push_back({"page", "type list", "has no choices in any language",
                            "fix the configuration, or install it again"});
    }
    if (!m_canvas.has_help_image()) {
      m_findings.push_back({"page", "help image", "cannot be shown", "install it again"});
    }
    return std::move(m_findings);
  }

 private:
  void CheckInterface(const std::string& language) {
    m_where = "interface " + language;
    try {
      FindCatalogue(language);
    } catch (const HostError& damage) {
      if (m_reported.insert(damage.what()).second) {  // languages may share a catalogue
        m_findings.push_back({m_where, "catalogue", damage.what(), "install it again"});
      }
      return;
    }
    UseUiLanguage(language);
    m_canvas.SetLanguage(language);
    m_fonts = FontsOf(FontFor(language));
    PageState state(m_page);
    state.Open();  // gives the parts of the list their sizes
    m_canvas.Show(state);
    CheckText(state.title(), {{m_canvas.page(), "title"}});
    for (const SettingId id : kSettingIds) {
      const Setting& setting = state.row(id).setting;
      CheckText(setting.name, {{m_canvas.row("language"), "name"}, {m_canvas.list(), "title"}});
      CheckText(setting.help, {m_canvas.help_text()});
    }
    for (const Choice& choice : state.row(SettingId::kLanguage).setting.choices) {
      CheckChoice(choice.text);
    }
    for (const auto& [id, name] : m_types) {
      CheckChoice(Translate(name));
    }
  }

  void CheckChoice(const std::string& text) {
    CheckText(text, {{m_canvas.row("language"), "value"}, {m_canvas.choice(0), "text"}});
  }

  // The same problem of the same text in another interface language is not reported again.
  void Add(const std::string& text, const char* kind, const std::string& problem,
           const std::string& remedy) {
    if (m_reported.insert(text + kind).second) {
      m_findings.push_back({m_where, "text " + Quoted(text), problem, remedy});
    }
  }

  void CheckSize(const std::string& text, const Place& place, const char* direction, int size,
                 int room) {
    if (size > room) {
      Add(text, place.part,
          "is " + std::to_string(size) + " px " + direction + " in '" + place.part +
              "', which has room for " + std::to_string(room),
          "shorten it, or choose another font");
    }
  }

  // A line of a text block is as high as the highest of its fonts.
  void CheckText(const std::string& text, const std::vector<Place>& places) {
    CheckCharacters(text);
    for (const Place& place : places) {
      edje_object_part_text_unescaped_set(place.object, place.part, text.c_str());
      edje_object_calc_force(place.object);
      int width = 0;
      int height = 0;
      edje_object_part_geometry_get(place.object, place.part, nullptr, nullptr, &width, &height);
      const auto* block = edje_object_part_object_get(place.object, place.part);
      int drawn_width = 0;
      int drawn_height = 0;
      place.is_line ? evas_object_textblock_size_native_get(block, &drawn_width, &drawn_height)
                    : evas_object_textblock_size_formatted_get(block, nullptr, &drawn_height);
      CheckSize(text, place, "wide", drawn_width, width);
      CheckSize(text, place, "high", drawn_height, height);
    }
  }

  void CheckCharacters(const std::string& text) {
    if (g_utf8_validate(text.c_str(), -1, nullptr) == FALSE) {
      Add(text, "characters", "is not UTF-8", "fix it");
      return;
    }
    std::string missing;
    std::string alone;  // marks such as vowel signs, whose letter is in another font
    const FcPattern* letter = nullptr;
    for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
      const gunichar character = g_utf8_get_char(at);
      const GUnicodeType type = g_unichar_type(character);
      if (type == G_UNICODE_FORMAT || type == G_UNICODE_SPACE_SEPARATOR) {
        continue;
      }
      const std::string shown(at, static_cast<const char*>(g_utf8_next_char(at)));
      const FcPattern* font = FontWith(m_fonts, character);
      const bool is_mark = g_unichar_ismark(character) != FALSE;
      if (font == nullptr || (is_mark && font != letter)) {
        (font == nullptr ? missing : alone).append(" ").append(shown);
      }
      letter = is_mark ? letter : font;
    }
    if (!missing.empty()) {
      Add(text, "characters", "has characters that no installed font has:" + missing,
          "install a font for them");
    }
    if (!alone.empty()) {
      Add(text, "marks", "has marks that are not in the font of their letters:" + alone,
          "in fonts.conf, choose a font that has both");
    }
  }

  KeyboardPage& m_page;
  Canvas& m_canvas;
  Fonts m_fonts;                               // of the interface language
  std::map<std::string, std::string> m_types;  // untranslated texts by type id
  std::string m_where;
  std::set<std::string> m_reported;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckTexts(KeyboardPage& page, Canvas& canvas) {
  return TextCheck(page, canvas).Run();
}
