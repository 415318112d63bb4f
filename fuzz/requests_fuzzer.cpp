// The input is a device, and what a host asks on it, in any order. Each answer is held against the
// contract of the boundary, and the registry against what was to be stored.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>
#include <gtest/gtest.h>

#include "fake_platform.h"
#include "fuzz_host.h"
#include "plugin.h"

namespace {

using Registry = std::map<std::string, std::string>;

constexpr const char* kItemKeys[] = {kPageKey, kLanguageKey, kTypeKey};
constexpr const char* kModuleInfoKeys[] = {"provider/owner", "provider/main-component",
                                           "provider/sub-component"};
constexpr const char* kOtherKeys[] = {"db/ime/keyboard_language", "DB/IME/HARDWARE_KEYBOARD_NAME",
                                      "", nullptr};
constexpr const char* kLanguages[] = {"en_US", "en_GB", "ko_KR", "fr_CA", "KO_KR", "xx", ""};
constexpr const char* kTypes[] = {"us", "kr_ibm106", "en_US.us", ""};
constexpr const char* kNoRows[] = {"null",
                                   "{}",
                                   "[]",
                                   "1",
                                   R"({"name": "us"})",
                                   R"({"lang_local": ["ko_KR"], "display_name": "xx"})"};

constexpr char kUntouched[] = "(untouched)";
constexpr char kNull[] = "(null)";

bool Is(const char* key, const char* other) {
  return key != nullptr && std::strcmp(key, other) == 0;
}

template <std::size_t size>
bool IsOneOf(const char* key, const char* const (&keys)[size]) {
  return std::any_of(std::begin(keys), std::end(keys), [key](const char* k) { return Is(key, k); });
}

bool IsUsable(const char* key) {
  const std::string& unusable = Platform().settings["unusable"];
  return unusable != key && unusable != "all";
}

// What the registry answers.
std::optional<std::string> Stored(const char* key) {
  const auto found = Platform().registry.find(key);
  return found != Platform().registry.end() && IsUsable(key) ? std::optional(found->second)
                                                             : std::nullopt;
}

// What a keyboard configuration says, for those who have not read it.
struct Configuration {
  std::map<std::string, std::vector<std::string>> types;
  std::map<std::string, std::string> names;

  std::vector<std::string> TypesOf(const std::string& language) const {
    const auto found = types.find(language);
    return found == types.end() ? std::vector<std::string>() : found->second;
  }

  Choices ChoicesOf(const std::string& language) const {
    Choices choices;
    for (const std::string& type : TypesOf(language)) {
      const auto name = names.find(type);
      choices.push_back({(language + "." + type).substr(0, 254),
                         (name == names.end() ? type : name->second).substr(0, 254)});
    }
    return choices;
  }
};

class Session {
 public:
  explicit Session(FuzzedDataProvider& input) : m_input(input) {
    ResetPlatform();
    ChangeDevice();
    ChangeConfiguration();
    m_plugin = std::make_unique<Plugin>();
  }
  ~Session() { GiveBackAll(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void TakeStep() {
    constexpr void (Session::*kSteps[])() = {
        &Session::ChangeDevice, &Session::ChangeRegistry, &Session::ChangeConfiguration,
        &Session::Reload,       &Session::SetString,      &Session::AskForString,
        &Session::AskForList,   &Session::GiveBackList,   &Session::AskForNothing};
    m_registry = Platform().registry;
    (this->*m_input.PickValueInArray(kSteps))();
    EXPECT_EQ(Platform().registry, m_registry);
    EXPECT_LE(Platform().language_requests, 1);
  }

 private:
  const data_provider_cbs& Cbs() const { return *m_plugin->cbs; }

  const char* Key() {
    switch (m_input.ConsumeIntegralInRange(0, 9)) {
      case 0:
        return m_input.PickValueInArray(kOtherKeys);
      case 1:
        return m_input.PickValueInArray(kModuleInfoKeys);
      default:
        return m_input.PickValueInArray(kItemKeys);
    }
  }

  std::string Language() { return Text(kLanguages); }
  std::string Type() { return Text(kTypes); }

  // One of these, or one to be cut or just not.
  template <std::size_t size>
  std::string Text(const char* const (&texts)[size]) {
    return m_input.ConsumeIntegralInRange(0, 7) > 0
               ? m_input.PickValueInArray(texts)
               : std::string(m_input.ConsumeIntegralInRange<std::size_t>(240, 270), 'x');
  }

  void ChangeDevice() {
    std::string ids;
    for (int i = m_input.ConsumeIntegralInRange(0, 12); i > 0; --i) {
      const int id = m_input.ConsumeBool() ? m_input.PickValueInArray({0, 1, 3, 17})
                                           : m_input.ConsumeIntegralInRange(-1, 100);
      ids += std::to_string(id) + " ";
    }
    Platform().settings["languages"] = m_input.ConsumeIntegralInRange(0, 7) > 0 ? ids : "fail";
    Platform().settings["count"] = m_input.PickValueInArray({"right", "right", "negative"});
    Platform().settings["values"] = m_input.PickValueInArray({"there", "there", "null"});
    Platform().settings["bluetooth"] = m_input.PickValueInArray({"yes", "no", "fail"});
    Platform().settings["unusable"] =
        m_input.PickValueInArray({"none", "none", kLanguageKey, kTypeKey, "all"});
  }

  void ChangeRegistry() {
    const char* key = m_input.PickValueInArray({kLanguageKey, kTypeKey});
    m_registry.erase(key);
    if (m_input.ConsumeBool()) {
      m_registry[key] = Language();
    }
    Platform().registry = m_registry;
  }

  // Seen by the library once it is loaded again.
  void ChangeConfiguration() {
    m_installed = Configuration();
    const std::string contents = R"({"keyboard_name_map": [)" + NameRows() +
                                 R"(], "lang_local_keyboard_type_table": [)" + LocaleRows() + "]}";
    switch (m_input.ConsumeIntegralInRange(0, 7)) {
      case 0:
        RemoveKeyboardConfig();
        m_installed = Configuration();
        break;
      case 1:
        InstallKeyboardConfig(contents.substr(0, contents.size() - 1));
        m_installed = Configuration();
        break;
      default:
        InstallKeyboardConfig(contents);
    }
  }

  std::string NameRows() {
    std::string rows = m_input.PickValueInArray(kNoRows);
    for (int i = m_input.ConsumeIntegralInRange(0, 3); i > 0; --i) {
      const std::string type = Type();
      const std::string name = Type();
      m_installed.names.emplace(type, name);
      rows += R"(, {"name": ")" + type + R"(", "display_name": ")" + name + R"("})";
    }
    return rows;
  }

  std::string LocaleRows() {
    std::string rows = m_input.PickValueInArray(kNoRows);
    for (int i = m_input.ConsumeIntegralInRange(0, 3); i > 0; --i) {
      const std::string language = Language();
      std::vector<std::string> types;
      rows += R"(, {"lang_local": ")" + language + R"(", "keyboard_types": [0)";
      for (int j = m_input.ConsumeIntegralInRange(0, 3); j > 0; --j) {
        types.push_back(Type());
        rows += ", \"" + types.back() + "\"";
      }
      rows += "]}";
      m_installed.types.emplace(language, types);
    }
    return rows;
  }

  void Reload() {
    GiveBackAll();
    m_plugin.reset();
    m_loaded.reset();
    m_languages.reset();
    Platform().language_requests = 0;
    m_plugin = std::make_unique<Plugin>();
  }

  // The configuration that the library reads now, or has read.
  const Configuration& Loaded() {
    m_loaded = m_loaded.value_or(m_installed);
    return *m_loaded;
  }

  // The same holds of the languages.
  const Choices& Languages() {
    if (!m_languages) {
      m_languages = GetChoices(Cbs(), kLanguageKey);
      EXPECT_TRUE(Supports("en_US") || Supports("en_GB"));
      std::map<std::string, std::string>& settings = Platform().settings;
      const bool fails = settings["languages"] == "fail" || settings["count"] == "negative" ||
                         settings["values"] == "null";
      const auto ids = std::count(settings["languages"].begin(), settings["languages"].end(), ' ');
      EXPECT_LE(m_languages->size(), fails ? 1 : static_cast<std::size_t>(ids) + 1);
    }
    return *m_languages;
  }

  bool Supports(const std::string& language) {
    const Choices& languages = Languages();
    return std::any_of(languages.begin(), languages.end(),
                       [&](const Choice& choice) { return choice.value == language; });
  }

  std::string DefaultLanguage() {
    const Choices& languages = Languages();
    const auto english = std::find_if(languages.begin(), languages.end(), [](const Choice& choice) {
      return choice.value == "en_US" || choice.value == "en_GB";
    });
    return english->value;
  }

  void SetString() {
    const char* key = Key();
    const std::string text = Language();
    if (m_input.ConsumeIntegralInRange(0, 7) == 0) {
      EXPECT_EQ(Cbs().set_string(key, nullptr), 1);
      return;
    }
    EXPECT_EQ(Cbs().set_string(key, text.c_str()), 1);
    if (Is(key, kTypeKey)) {
      ExpectStored(kTypeKey, text);
    } else if (Is(key, kLanguageKey)) {
      const std::string language = Supports(text) ? text : DefaultLanguage();
      if (ExpectStored(kLanguageKey, language)) {
        const std::vector<std::string> types = Loaded().TypesOf(language);
        ExpectStored(kTypeKey,
                     language + "." + (types.empty() ? "us_intl_ibm103i" : types.front()));
      }
    }
  }

  bool ExpectStored(const char* key, const std::string& value) {
    if (IsUsable(key)) {
      m_registry[key] = value;
    }
    return IsUsable(key);
  }

  void AskForString() {
    const char* key = Key();
    const bool is_item = IsOneOf(key, kItemKeys);
    const bool is_page = Is(key, kPageKey);
    switch (m_input.ConsumeIntegralInRange(0, 4)) {
      case 0:
        return ExpectText(Ask(Cbs().get_display_name, key, 0), is_item);
      case 1:
        return ExpectText(Ask(Cbs().get_help_text, key, 0), is_item);
      case 2:
        return ExpectText(Ask(Cbs().get_module_info, key, 0), IsOneOf(key, kModuleInfoKeys));
      case 3: {
        const std::string path = Ask(Cbs().get_help_image_path, key, is_page ? 0 : -1);
        EXPECT_EQ(path.ends_with(".edj"), is_page && Platform().settings["bluetooth"] == "yes");
        return ExpectText(path, is_page);
      }
      default:
        EXPECT_EQ(Ask(Cbs().get_string, key, 1),
                  is_item && !is_page ? Stored(key).value_or(kNull) : kUntouched);
    }
  }

  std::string Ask(int (*callback)(const char* key, char** text), const char* key, int result) {
    EXPECT_EQ(callback(key, nullptr), result);
    std::string untouched = kUntouched;
    char* text = untouched.data();
    EXPECT_EQ(callback(key, &text), result);
    std::string answer = text == nullptr ? kNull : text;
    if (text != untouched.data()) {
      EXPECT_EQ(Cbs().release_string(text), text == nullptr ? 1 : 0);
    }
    return answer;
  }

  static void ExpectText(const std::string& answer, bool is_known) {
    EXPECT_EQ(answer == kUntouched, !is_known);
    EXPECT_NE(answer, kNull);
  }

  void AskForList() {
    const char* key = Key();
    EXPECT_EQ(Cbs().get_list_items(key, nullptr), nullptr);
    const std::optional<OpenList> list = OpenChoices(Cbs(), key);
    const std::optional<std::string> language = Stored(kLanguageKey);
    EXPECT_EQ(list.has_value(), Is(key, kLanguageKey) || (Is(key, kTypeKey) && language));
    if (list) {
      m_open.emplace_back(*list, Is(key, kTypeKey) ? Loaded().ChoicesOf(*language) : Languages());
      EXPECT_EQ(ReadChoices(Cbs(), *list), m_open.back().second);
    }
  }

  // Nothing that came after it may have changed it.
  void GiveBackList() {
    if (m_open.empty()) {
      return;
    }
    std::swap(m_open.back(),
              m_open[m_input.ConsumeIntegralInRange<std::size_t>(0, m_open.size() - 1)]);
    const auto& [list, choices] = m_open.back();
    EXPECT_EQ(ReadChoices(Cbs(), list), choices);
    EXPECT_EQ(Cbs().free_list_items(list.items, list.count), 0);
    m_open.pop_back();
  }

  void GiveBackAll() {
    while (!m_open.empty()) {
      GiveBackList();
    }
  }

  void AskForNothing() {
    const char* key = Key();
    int number = 42;
    char* text = nullptr;
    EXPECT_EQ(Cbs().set_int(key, 1) + Cbs().get_int(key, &number) + Cbs().get_int(key, nullptr), 0);
    EXPECT_EQ(Cbs().get_list_item_int_value(nullptr, &number), 0);
    EXPECT_EQ(Cbs().get_list_item_string_value(nullptr, &text), 0);
    EXPECT_EQ(Cbs().get_list_item_display_value(nullptr, nullptr), 0);
    EXPECT_EQ(Cbs().release_string(nullptr), 1);
    EXPECT_EQ(Cbs().free_list_items(nullptr, m_input.ConsumeIntegral<int>()), 0);
    EXPECT_TRUE(number == 42 && text == nullptr);

    // A list with holes, of which more or less than all is given back.
    const auto size = m_input.ConsumeIntegralInRange<std::size_t>(0, 3);
    const int count = m_input.PickValueInArray({static_cast<int>(size), 0, -1, INT_MIN});
    auto** list = static_cast<void**>(std::calloc(size, sizeof(void*)));
    EXPECT_EQ(Cbs().free_list_items(list, count), 0);

    void* handle = nullptr;
    EXPECT_EQ(m_plugin->create_provider(nullptr), 1);
    EXPECT_EQ(m_plugin->create_provider(&handle), 0);
    EXPECT_EQ(m_plugin->delete_provider(&handle), 0);
    handle = nullptr;
    EXPECT_EQ(m_plugin->delete_provider(&handle), 0);
    EXPECT_EQ(m_plugin->delete_provider(nullptr), 1);
  }

  FuzzedDataProvider& m_input;
  std::unique_ptr<Plugin> m_plugin;
  Registry m_registry;  // what it is to be
  Configuration m_installed;
  std::optional<Configuration> m_loaded;
  std::optional<Choices> m_languages;
  std::vector<std::pair<OpenList, Choices>> m_open;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const LeakCheck no_leaks;
  FuzzedDataProvider input(data, size);
  Session session(input);
  while (input.remaining_bytes() > 0) {
    session.TakeStep();
  }
  return 0;
}
