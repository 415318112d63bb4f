#include "page_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>
#include <utility>

#include "platform_setup.h"
#include "ui_language.h"

namespace {

constexpr char kConfiguration[] = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";

struct Shown {
  std::string id;  // of the message
  std::string text;
};

// Null where the file cannot be read.
std::optional<std::uintmax_t> ReadableLength(const std::string& path) {
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(path, error);
  const bool readable = !error && std::ifstream(path).good();
  return readable ? std::optional(length) : std::nullopt;
}

class PageCheck {
 public:
  explicit PageCheck(const KeyboardPage& page) : m_page(page) {
    UseUiLanguage(kNoLanguage);
    m_ids = page.ReadTexts();
    m_languages = m_page.ReadChoicesIfAny(SettingId::kLanguage);
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
    const std::optional<std::uintmax_t> length = ReadableLength(LocateFile(path));
    if (length.value_or(0) == 0) {
      Add("help image " + Quoted(path), length ? "is empty" : "cannot be read", "install it anew");
    }
  }

  void CheckKeyboard(const std::string& locale) {
    m_where = "keyboard " + locale;
    if (!CheckStored(SettingId::kLanguage, locale)) {
      return;
    }
    const std::vector<Choice> types = m_page.ReadChoicesIfAny(SettingId::kType);
    if (types.empty()) {
      m_without_types.push_back(locale);
      return;
    }
    CheckFirstType(types.front().value);
    for (const Choice& type : types) {
      CheckType(locale, type);
    }
  }

  void ReportWithoutTypes() {
    if (m_without_types.size() == m_languages.size()) {
      m_where = "page";
      Add("type list", "has no choices in any language",
          "correct " + Quoted(kConfiguration) + ", or install it anew");
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
    const std::string cut =
        " of " + std::to_string(DATA_PROVIDER_TYPE_LENGTH) + " bytes, where a longer one is cut";
    if (type.value.size() == DATA_PROVIDER_TYPE_LENGTH) {
      Add(item, "has a value" + cut, "shorten its id");
    }
    if (type.text.size() == DATA_PROVIDER_TYPE_LENGTH) {
      Add(item, "has a text" + cut, "shorten its display_name");
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
    const std::vector<Shown> texts = Texts();
    if (std::ranges::none_of(texts, [this](const Shown& each) { return IsTranslated(each); })) {
      Add("page", "is not translated at all",
          found ? "replace " + catalogue : "add " + catalogue + ", or one of its language");
      return;
    }
    for (const Shown& shown : texts) {
      if (!IsTranslated(shown)) {
        Add("text " + Quoted(shown.id), "is not translated", "add its msgstr to " + catalogue);
      }
    }
  }

  bool IsTranslated(const Shown& shown) const { return !m_known_ids.contains(shown.text); }

  // The page's texts, then the languages' names, each once though several languages may share it.
  std::vector<Shown> Texts() const {
    std::vector<Shown> shown;
    const std::vector<std::string> texts = m_page.ReadTexts();
    for (std::size_t i = 0; i < std::min(m_ids.size(), texts.size()); ++i) {
      shown.push_back({m_ids[i], texts[i]});
    }
    const std::vector<Choice> choices = m_page.ReadChoicesIfAny(SettingId::kLanguage);
    std::set<std::string> known;
    for (std::size_t i = 0; i < std::min(m_languages.size(), choices.size()); ++i) {
      if (known.insert(m_languages[i].text).second) {
        shown.push_back({m_languages[i].text, choices[i].text});
      }
    }
    return shown;
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
