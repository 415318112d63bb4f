#include "conversation.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>
#include <utility>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "Provider.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

constexpr char kConfig[] = R"json({
  "keyboard_name_map": [{"name": "kr_ibm106", "display_name": "Korean (106 keys)"}],
  "lang_local_keyboard_type_table": [
    {"lang_local": "ko_KR", "keyboard_types": ["kr_ibm106", "us_intl_ibm103i"]},
    {"lang_local": "fr_CA"}
  ]
})json";

std::unique_ptr<Provider> g_provider;

const std::map<std::string, std::string> kKeys = {{"page", DATA_PROVIDER_PAGE},
                                                  {"language", DATA_PROVIDER_LANGUAGE},
                                                  {"type", DATA_PROVIDER_TYPE}};

const std::map<std::string, int (*data_provider_cbs::*)(const char*, char**)> kStringCallbacks = {
    {"get_module_info", &data_provider_cbs::get_module_info},
    {"get_display_name", &data_provider_cbs::get_display_name},
    {"get_help_text", &data_provider_cbs::get_help_text},
    {"get_help_image_path", &data_provider_cbs::get_help_image_path},
    {"get_string", &data_provider_cbs::get_string}};

std::string Key(const std::string& word) {
  const auto found = kKeys.find(word);
  return found == kKeys.end() ? word : found->second;
}

std::pair<std::string, std::string> SplitWord(const std::string& line) {
  const std::size_t space = line.find(' ');
  return space == std::string::npos ? std::pair(line, std::string())
                                    : std::pair(line.substr(0, space), line.substr(space + 1));
}

const char* Argument(const std::string& text) {
  if (text == "NULL") {
    return nullptr;
  }
  return text == "\"\"" ? "" : text.c_str();
}

template <typename Request>
auto InLibrary(Request request) {
  const AllowFailures allowed(true);
  return request();
}

void Unload() {
  g_provider.reset();
  EXPECT_EQ(dlopen(TEST_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

struct UnloadAtEnd : testing::Environment {
  void TearDown() override { Unload(); }
};
const testing::Environment* g_unload = testing::AddGlobalTestEnvironment(new UnloadAtEnd);

// Calls the callback with each key, and again with a null out-pointer.
std::string GetStrings(const std::string& verb, const std::string& keys) {
  const auto callback = g_provider->table().*kStringCallbacks.at(verb);
  std::string answers;
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    char untouched[] = "(untouched)";
    char* text = untouched;
    const std::string key = Key(word);
    const int result = InLibrary([&] { return callback(Argument(key), &text); });
    EXPECT_EQ(callback(Argument(key), nullptr), result) << word;
    answers += std::to_string(result) + " " + (text == nullptr ? "(null)" : text) + "\n";
    if (text != untouched) {
      EXPECT_EQ(g_provider->table().release_string(text), text == nullptr ? 1 : 0);
    }
  }
  return answers;
}

std::string SetString(const char* key, const char* value) {
  const int result = InLibrary([&] { return g_provider->table().set_string(key, value); });
  std::string answer = std::to_string(result);
  for (const auto& [stored_key, stored_value] : Platform().registry) {
    answer += " " + stored_value;
  }
  return answer + "\n";
}

std::string GetListItems(const char* key) {
  const auto get_list_items = g_provider->table().get_list_items;
  EXPECT_EQ(get_list_items(key, nullptr), nullptr);
  int count = 42;
  void** list = InLibrary([&] { return get_list_items(key, &count); });
  if (list == nullptr) {
    return "no list, count " + std::to_string(count) + "\n";
  }
  std::string answer = count == 0 ? "empty list\n" : "";
  for (const ListItem& item : g_provider->TakeList(list, count)) {
    answer += item.value + " | " + item.display_value + "\n";
  }
  return answer;
}

std::string CreateProvider() {
  void* handle = static_cast<void*>(&handle);
  const int result = InLibrary([&] { return g_provider->create_provider()(&handle); });
  g_provider->delete_provider()(&handle);
  return std::to_string(result) + (handle == nullptr ? " null\n" : " table\n");
}

}  // namespace

void Begin() {
  Unload();
  Platform() = FakePlatform();
  Platform().settings = {{"languages", "0 1"}, {"config", kConfig}, {"devinfo", "0"}};
}

std::string Say(const std::string& command) {
  const auto [verb, rest] = SplitWord(command);
  const auto [name, value] = SplitWord(rest);
  if (verb == "types") {
    Say("device config " + rest);
    Say("stored language xx_XX");
    return Say("get_list_items type");
  }
  if (verb == "languages") {
    Say("device languages " + rest);
    return Say("get_list_items language");
  }
  if (verb == "stored") {
    Platform().registry[Key(name)] = Argument(value);
    return "";
  }
  if (verb == "device") {
    Platform().settings[name] = Key(value);
    if (name == "languages" || name == "config") {
      Unload();  // the library reads them only once per load
    }
    return "";
  }
  if (!g_provider) {
    g_provider = std::make_unique<Provider>(TEST_PLUGIN);
    Platform().log.clear();
  }
  const std::string answer = Ask(command);
  return std::exchange(Platform().log, "") + answer;
}

std::string Ask(const std::string& request) {
  const auto [verb, rest] = SplitWord(request);
  const auto [word, value] = SplitWord(rest);
  const std::string key = Key(word);
  if (verb == "reads") {
    const std::string languages = std::to_string(Platform().language_reads);
    return languages + " " + std::to_string(Platform().config_reads) + "\n";
  }
  if (verb == "create") {
    return CreateProvider();
  }
  if (verb == "get_list_items") {
    return GetListItems(Argument(key));
  }
  return verb == "set_string" ? SetString(Argument(key), Argument(value)) : GetStrings(verb, rest);
}
