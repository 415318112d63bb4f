#include "text_check.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>

#include <glib.h>

#include "fonts.h"
#include "ui_language.h"

namespace {

class TextCheck {
 public:
  TextCheck(const KeyboardPage& page, Canvas& canvas)
      : m_page(page), m_canvas(canvas), m_types(page.ReadAllTypes()) {}

  std::vector<Finding> Run() {
    for (const Choice& language : m_page.ReadChoicesIfAny(SettingId::kLanguage)) {
      CheckInterface(language.value);
    }
    if (m_types.empty()) {
      m_findings.push_back({"page", "type list", "has no choices in any language",
                            "correct the configuration, or install it anew"});
    }
    if (!m_canvas.has_picture()) {
      m_findings.push_back({"page", "help picture", "cannot be shown", "install it anew"});
    }
    return std::move(m_findings);
  }

 private:
  void CheckInterface(const std::string& language) {
    m_where = "interface " + language;
    UseUiLanguage(language);
    m_canvas.SetLanguage(language);
    m_canvas.Show(PageState(m_page));
    const std::vector<Place> names = {{m_canvas.Nested("language"), "name"},
                                      {m_canvas.page(), "list.title"}};
    const std::vector<Place> values = {{m_canvas.Nested("language"), "value"},
                                       {m_canvas.Nested("choice.0"), "text"}};
    CheckText(m_page.ReadHead().title, {{m_canvas.page(), "title"}});
    for (const SettingId id : {SettingId::kLanguage, SettingId::kType}) {
      const Setting setting = m_page.ReadSetting(id);
      CheckText(setting.name, names);
      CheckHelp(setting.help);
    }
    for (const Choice& each : m_page.ReadChoicesIfAny(SettingId::kLanguage)) {
      CheckText(each.text, values);
    }
    for (const auto& [id, type] : m_types) {
      CheckText(type.text, values);
    }
  }

  // What is wrong with a text in one language is not said again of the same text in another one.
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
          "is " + std::to_string(size) + " px " + direction + " as '" + place.part + "', where " +
              std::to_string(room) + " fit",
          "shorten it");
    }
  }

  void CheckText(const std::string& text, const std::vector<Place>& places) {
    CheckLetters(text);
    for (const Place& place : places) {
      int room = 0;
      edje_object_part_geometry_get(place.object, place.part, nullptr, nullptr, &room, nullptr);
      CheckSize(text, place, "wide", WidthAt(place, text), room);
    }
  }

  void CheckHelp(const std::string& text) {
    CheckLetters(text);
    const Place place = m_canvas.help_text();
    m_canvas.ShowHelpText(text);
    edje_object_calc_force(place.object);
    int room = 0;
    int height = 0;
    edje_object_part_geometry_get(place.object, place.part, nullptr, nullptr, nullptr, &room);
    evas_object_textblock_size_formatted_get(edje_object_part_object_get(place.object, place.part),
                                             nullptr, &height);
    CheckSize(text, place, "high", height, room);
  }

  void CheckLetters(const std::string& text) {
    if (g_utf8_validate(text.c_str(), -1, nullptr) == FALSE) {
      return Add(text, "letters", "is not UTF-8", "correct it");
    }
    std::string missing;
    for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
      const gunichar letter = g_utf8_get_char(at);
      const GUnicodeType type = g_unichar_type(letter);
      const bool is_drawn = type != G_UNICODE_FORMAT && type != G_UNICODE_SPACE_SEPARATOR;
      if (is_drawn && FcCharSetHasChar(m_letters.get(), letter) == FcFalse) {
        missing.append(" ").append(at, static_cast<std::size_t>(g_utf8_next_char(at) - at));
      }
    }
    if (!missing.empty()) {
      Add(text, "letters", "has letters that no installed font has:" + missing,
          "install a font for them");
    }
  }

  static int WidthAt(const Place& place, const std::string& text) {
    const Evas_Object* part = edje_object_part_object_get(place.object, place.part);
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    evas_object_text_font_get(part, &font, &size);
    Evas_Object* measured = evas_object_text_add(evas_object_evas_get(place.object));
    evas_object_text_font_set(measured, font, size);
    evas_object_text_text_set(measured, text.c_str());
    int width = 0;
    evas_object_geometry_get(measured, nullptr, nullptr, &width, nullptr);
    evas_object_del(measured);
    return width;
  }

  const KeyboardPage& m_page;
  Canvas& m_canvas;
  Letters m_letters = InstalledLetters();
  std::map<std::string, Choice> m_types;
  std::string m_where;
  std::set<std::string> m_reported;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckTexts(const KeyboardPage& page, Canvas& canvas) {
  return TextCheck(page, canvas).Run();
}
