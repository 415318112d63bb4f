#include "page_check.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>
#include <utility>

#include "error.h"
#include "platform_setup.h"
#include "text.h"
#include "ui_language.h"

namespace {

// Storing a value takes time, so not all types of a very long list are stored.
constexpr std::size_t kMaxStored = 100;

constexpr char kConfiguration[] = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";

// Returns null for a file that can be used. Opening a FIFO could block forever.
const char* ProblemOf(const std::string& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    return error ? "cannot be read" : "is not a regular file";
  }
  if (!std::ifstream(file)) {
    return "cannot be read";
  }
  return std::filesystem::file_size(file, error) == 0 ? "is empty" : nullptr;
}

class PageCheck {
 public:
  explicit PageCheck(KeyboardPage& page) : m_page(page) {
    UseUiLanguage(kNoLanguage);
    m_ids = ReadTexts();
    m_languages = m_page.ReadSetting(SettingId::kLanguage).choices;
  }

  std::vector<Finding> Run() {
    m_where = "page";
    CheckFile("help image", m_page.ReadHelpImage());
    if (CheckFile("configuration", kConfiguration)) {
      for (const Choice& language : m_languages) {
        CheckKeyboard(language.value);
      }
      ReportMissingTypes();
    }
    for (const Choice& language : m_languages) {
      CheckInterface(language.value);
    }
    return std::move(m_findings);
  }

 private:
  // The texts of the page, then the names of the languages.
  std::vector<std::string> ReadTexts() const {
    const PageHead head = m_page.ReadHead();
    const Setting language = m_page.ReadSetting(SettingId::kLanguage);
    const Setting type = m_page.ReadSetting(SettingId::kType);
    std::vector<std::string> texts = {head.title,    head.help, language.name,
                                      language.help, type.name, type.help};
    for (const Choice& choice : language.choices) {
      texts.push_back(choice.text);
    }
    return texts;
  }

  void Add(const std::string& item, const std::string& problem, const std::string& remedy) {
    m_findings.push_back({m_where, item, problem, remedy});
  }

  // Returns false for a file that cannot be used.
  bool CheckFile(const std::string& item, const std::string& path) {
    const char* problem = ProblemOf(LocateFile(path));
    if (problem != nullptr) {
      Add(item + " " + Quoted(path), problem, "install it again");
    }
    return problem == nullptr;
  }

  void CheckKeyboard(const std::string& locale) {
    m_where = "keyboard " + locale;
    if (!CheckStored(SettingId::kLanguage, locale)) {
      return;
    }
    const Setting type = m_page.ReadSetting(SettingId::kType);
    if (type.choices.empty()) {
      m_without_types.push_back(locale);
      return;
    }
    CheckFirstType(type);
    std::set<std::string> stored;
    for (const Choice& choice : type.choices) {
      CheckType(locale, choice);
      if (stored.size() < kMaxStored && stored.insert(choice.value).second) {
        CheckStored(SettingId::kType, choice.value);
      }
    }
  }

  // A configuration without any types is one finding, not one for each language.
  void ReportMissingTypes() {
    if (m_without_types.size() == m_languages.size()) {
      m_where = "page";
      Add("type list", "has no choices in any language",
          "fix lang_local_keyboard_type_table in " + Quoted(kConfiguration) +
              ", or install it again");
      return;
    }
    for (const std::string& locale : m_without_types) {
      m_where = "keyboard " + locale;
      Add("type list", "has no choices", "add keyboard_types for " + Quoted(locale));
    }
  }

  // Returns true if the provider stores `value` unchanged.
  bool CheckStored(SettingId id, const std::string& value) {
    m_page.Store(id, value);
    const std::optional<std::string> stored = m_page.ReadValue(id);
    if (stored == value) {
      return true;
    }
    Add((id == SettingId::kLanguage ? "language " : "type ") + Quoted(value),
        stored ? "is stored as " + Quoted(*stored) : "is not stored", "see the log");
    return false;
  }

  void CheckFirstType(const Setting& type) {
    const std::string& first = type.choices.front().value;
    const std::string stored = type.value.value_or("");
    if (stored != first) {
      Add("type list",
          "begins with " + Quoted(first) + ", but the provider stores " + Quoted(stored) +
              " with the language",
          "make the provider store the first type");
    }
  }

  void CheckType(const std::string& locale, const Choice& type) {
    const std::string item = "type " + Quoted(type.value);
    const std::string cut =
        " of " + std::to_string(DATA_PROVIDER_TYPE_LENGTH) + " bytes, so it may be truncated";
    if (type.value.size() == DATA_PROVIDER_TYPE_LENGTH) {
      Add(item, "has a value" + cut, "shorten its id");
    }
    if (type.text.size() == DATA_PROVIDER_TYPE_LENGTH) {
      Add(item, "has a text" + cut, "shorten its display_name");
    } else if (Printable(type.text).find("\uFFFD") != std::string::npos) {
      Add(item, "has U+FFFD or a control character in its text", "fix its display_name");
    } else if (type.value == locale + "." + type.text) {
      Add(item, "is shown as its id", "add a display_name");
    }
  }

  void CheckInterface(const std::string& locale) {
    m_where = "interface " + locale;
    std::optional<std::string> catalogue;
    try {
      catalogue = FindCatalogue(locale);
    } catch (const HostError& damage) {
      if (m_damaged.insert(damage.what()).second) {  // languages may share a catalogue
        Add("catalogue", damage.what(), "install it again");
      }
      return;
    }
    UseUiLanguage(locale);
    const std::string remedy = catalogue ? "translate it in " + *catalogue + ".po"
                                         : "add a catalogue for " + Quoted(locale);
    const std::vector<std::string> texts = ReadTexts();
    if (std::ranges::all_of(texts, [this](const std::string& text) { return IsMessageId(text); })) {
      Add("page", "is not translated at all", remedy);
      return;
    }
    std::set<std::string> reported;  // languages may share a name
    for (const std::string& text : texts) {
      if (IsMessageId(text) && reported.insert(text).second) {
        Add("text " + Quoted(text), "is not translated", remedy);
      }
    }
  }

  bool IsMessageId(const std::string& text) const {
    return std::ranges::find(m_ids, text) != m_ids.end();
  }

  KeyboardPage& m_page;
  std::vector<std::string> m_ids;  // what ReadTexts() returns without a translation
  std::vector<Choice> m_languages;
  std::vector<std::string> m_without_types;  // locales
  std::set<std::string> m_damaged;           // reports of damaged catalogues
  std::string m_where;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckPage(KeyboardPage& page) { return PageCheck(page).Run(); }
