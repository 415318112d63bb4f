#include "page_check.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <utility>

#include "glib_ptr.h"
#include "ui_language.h"

namespace {

constexpr std::size_t kCutLength = 254;  // where the provider cuts what it says of a type

struct Shown {
  std::string item;  // the message id, or the stored value
  std::string text;
};

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

bool IsUtf8(const std::string& text) {
  return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != FALSE;
}

// Whether a text, in UTF-8, has nothing to see.
bool IsBlank(const std::string& text) {
  for (const char* c = text.c_str(); *c != '\0'; c = g_utf8_next_char(c)) {
    if (g_unichar_isgraph(g_utf8_get_char(c)) != FALSE) {
      return false;
    }
  }
  return true;
}

// Null where the file cannot be read.
std::optional<std::size_t> ReadableLength(const std::string& path) {
  gchar* contents = nullptr;
  gsize length = 0;
  const bool readable = g_file_get_contents(path.c_str(), &contents, &length, nullptr) != FALSE;
  const GlibPtr<gchar> owned(contents);
  return readable ? std::optional<std::size_t>(length) : std::nullopt;
}

class PageCheck {
 public:
  explicit PageCheck(const KeyboardPage& page) : m_page(page) {
    UseUiLanguage(kNoLanguage);
    m_ids = page.ReadTexts();
    m_languages = page.ReadChoices(SettingId::kLanguage);
    m_known_ids.insert(m_ids.begin(), m_ids.end());
    for (const Choice& language : m_languages) {
      m_known_ids.insert(language.text);
    }
  }

  std::vector<Finding> Run() {
    CheckHelpImage();
    for (const Choice& language : m_languages) {
      CheckKeyboard(language.value);
    }
    ReportWithoutTypes();
    for (const Choice& language : m_languages) {
      CheckInterface(language.value);
    }
    return std::move(m_findings);
  }

 private:
  void Add(const std::string& item, const std::string& problem, const std::string& remedy) {
    m_findings.push_back({m_where, item, problem, remedy});
  }

  void CheckHelpImage() {
    m_where = "page";
    const std::string path = m_page.ReadHead().help_image;
    const std::optional<std::size_t> length = ReadableLength(path);
    if (length.value_or(0) == 0) {
      Add("help image " + Quoted(path), length ? "is empty" : "cannot be read", "install it anew");
    }
  }

  void CheckKeyboard(const std::string& locale) {
    m_where = "keyboard " + locale;
    if (!CheckStored(SettingId::kLanguage, locale)) {
      return;
    }
    const std::vector<Choice> types = m_page.ReadChoices(SettingId::kType);
    if (types.empty()) {
      m_without_types.push_back(locale);
      return;
    }
    CheckFirstType(types.front().value);
    std::vector<Shown> shown;
    for (const Choice& type : types) {
      CheckType(locale, type);
      shown.push_back({type.value, type.text});
    }
    CheckAlike("type ", shown, "give each a display_name of its own and list it once");
  }

  void ReportWithoutTypes() {
    if (m_without_types.size() == m_languages.size()) {
      m_where = "page";
      Add("type list", "has no choices in any language",
          "install the keyboard configuration anew, or correct it");
      return;
    }
    for (const std::string& locale : m_without_types) {
      m_where = "keyboard " + locale;
      Add("type list", "has no choices", "add keyboard_types for " + Quoted(locale));
    }
  }

  // Stores `value`, and returns whether it comes back as it was.
  bool CheckStored(SettingId id, const std::string& value) {
    m_page.Store(id, value);
    const std::optional<std::string> stored = m_page.ReadSetting(id).value;
    if (stored == value) {
      return true;
    }
    Add((id == SettingId::kLanguage ? "language " : "type ") + Quoted(value),
        stored ? "comes back as " + Quoted(*stored) : "is not stored", "see what the log says");
    return false;
  }

  void CheckFirstType(const std::string& first) {
    const std::string stored = m_page.ReadSetting(SettingId::kType).value.value_or("");
    if (stored != first) {
      Add("type list", "begins with " + Quoted(first) + " where " + Quoted(stored) + " was stored",
          "the two must be the same");
    }
  }

  void CheckType(const std::string& locale, const Choice& type) {
    const std::string item = "type " + Quoted(type.value);
    const std::string cut = " of 254 bytes, where a longer one is cut";
    if (type.value.size() == kCutLength) {
      Add(item, "has a value" + cut, "shorten its id");
    }
    if (type.text.size() == kCutLength) {
      Add(item, "has a text" + cut, "shorten its display_name");
    } else if (!IsUtf8(type.text)) {
      Add(item, "has a text that is not UTF-8", "correct its display_name");
    } else if (IsBlank(type.text)) {
      Add(item, "shows no text", "give it a display_name");
    } else if (type.value == locale + "." + type.text) {
      Add(item, "is shown as its id", "give it a display_name");
    }
    CheckStored(SettingId::kType, type.value);
  }

  void CheckInterface(const std::string& locale) {
    m_where = "interface " + locale;
    UseUiLanguage(locale);
    const std::optional<std::string> found = FindCatalogue(locale);
    const std::string catalogue = "the catalogue " + Quoted(found.value_or(locale));
    const std::vector<Shown> languages = LanguageNames();
    std::vector<Shown> texts = PageTexts();
    texts.insert(texts.end(), languages.begin(), languages.end());
    if (std::none_of(texts.begin(), texts.end(),
                     [this](const Shown& shown) { return IsTranslated(shown); })) {
      Add("page", "is not translated at all",
          found ? "replace " + catalogue : "add " + catalogue + ", or one of its language");
      return;
    }
    for (const Shown& shown : texts) {
      if (!IsTranslated(shown)) {
        Add("text " + Quoted(shown.item), "is not translated", "add its msgstr to " + catalogue);
      } else if (!IsUtf8(shown.text)) {
        Add("text " + Quoted(shown.item), "is not UTF-8", "correct its msgstr in " + catalogue);
      } else if (IsBlank(shown.text)) {
        Add("text " + Quoted(shown.item), "is blank", "correct its msgstr in " + catalogue);
      }
    }
    CheckAlike("text ", languages, "tell them apart in " + catalogue);
  }

  bool IsTranslated(const Shown& shown) const { return !m_known_ids.contains(shown.text); }

  std::vector<Shown> PageTexts() const {
    const std::vector<std::string> texts = m_page.ReadTexts();
    std::vector<Shown> shown;
    for (std::size_t i = 0; i < std::min(m_ids.size(), texts.size()); ++i) {
      shown.push_back({m_ids[i], texts[i]});
    }
    return shown;
  }

  // Each name once, though several languages may share it.
  std::vector<Shown> LanguageNames() const {
    const std::vector<Choice> choices = m_page.ReadChoices(SettingId::kLanguage);
    std::set<std::string> known;
    std::vector<Shown> shown;
    for (std::size_t i = 0; i < std::min(m_languages.size(), choices.size()); ++i) {
      if (known.insert(m_languages[i].text).second) {
        shown.push_back({m_languages[i].text, choices[i].text});
      }
    }
    return shown;
  }

  void CheckAlike(const std::string& kind, const std::vector<Shown>& list,
                  const std::string& remedy) {
    std::map<std::string, std::string> first;  // item of each text
    for (const Shown& shown : list) {
      const auto [same, is_new] = first.emplace(shown.text, shown.item);
      if (!is_new) {
        Add(kind + Quoted(shown.item),
            "reads " + Quoted(shown.text) + ", as " + Quoted(same->second) + " does", remedy);
      }
    }
  }

  const KeyboardPage& m_page;
  std::vector<std::string> m_ids;   // message ids of the page's texts
  std::vector<Choice> m_languages;  // with message ids for texts
  std::set<std::string> m_known_ids;
  std::vector<std::string> m_without_types;  // locales
  std::string m_where;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckPage(const KeyboardPage& page) { return PageCheck(page).Run(); }
