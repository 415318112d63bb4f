#include "conversation.h"

#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <libintl.h>

#include "failing_allocator.h"
#include "fake_platform.h"
#include "ui_language.h"

namespace {

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

// "NULL" is a null pointer, "" the empty string, anything else itself.
const char* Argument(const std::string& text) {
  return text == "NULL" ? nullptr : text == "\"\"" ? "" : text.c_str();
}

template <typename Request>
auto InLibrary(Request request) {
  const Refusals allowed(true);
  return request();
}

}  // namespace

std::string PluginUnderTest() {
  const char* plugin = std::getenv("MORVITH_PLUGIN");
  return plugin == nullptr ? TEST_PLUGIN : plugin;
}

Conversation::Conversation() {
  ResetPlatform();
  UseUiLanguage(kNoLanguage);
}

Conversation::~Conversation() { Unload(); }

void Conversation::Unload() {
  m_provider.reset();
  EXPECT_EQ(dlopen(PluginUnderTest().c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

std::string Conversation::Say(const std::string& order) {
  const auto [command, rest] = SplitWord(order);
  if (command == "types") {
    Say("config " + rest);
    Say("stored language xx_XX");
    return Say("get_list_items type");
  }
  if (command == "languages") {
    Say("device languages " + rest);
    return Say("get_list_items language");
  }
  if (SetUp(command, rest)) {
    return "";
  }
  if (!m_provider) {
    m_provider = std::make_unique<Provider>(PluginUnderTest());
    Platform().log.clear();
  }
  const std::string answer = Ask(order);
  return std::exchange(Platform().log, "") + answer;
}

// What the library reads once, a library that is loaded anew reads.
bool Conversation::SetUp(const std::string& command, const std::string& rest) {
  const auto [name, value] = SplitWord(rest);
  if (command == "config" || name == "languages") {
    Unload();
  }
  if (command == "config") {
    InstallKeyboardConfig(rest);
  } else if (command == "device") {
    Platform().settings[name] = Key(value);
  } else if (command == "stored") {
    Platform().registry[Key(name)] = Argument(value);
  } else if (command == "ui-language") {
    UseUiLanguage(rest);
  } else {
    return false;
  }
  return true;
}

std::string Conversation::Ask(const std::string& order) const {
  const auto [command, rest] = SplitWord(order);
  const auto [key_word, value] = SplitWord(rest);
  const std::string key = Key(key_word);
  if (command == "opens") {
    return std::to_string(KeyboardConfigOpens()) + "\n";
  }
  if (command == "get_list_items") {
    return List(Argument(key));
  }
  if (command == "set_string") {
    const data_provider_cbs& table = m_provider->table();
    const char* choice = Argument(value);
    const int result = InLibrary([&] { return table.set_string(Argument(key), choice); });
    return std::to_string(result) + " " + StoredValue(DATA_PROVIDER_LANGUAGE) + ", " +
           StoredValue(DATA_PROVIDER_TYPE) + "\n";
  }
  return command == "create" ? Create() : AskEach(command, rest);
}

std::string Conversation::AskEach(const std::string& command, const std::string& keys) const {
  const data_provider_cbs& table = m_provider->table();
  const auto callback = kStringCallbacks.at(command);
  std::string answers;
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    char untouched[] = "(untouched)";
    char* text = untouched;
    const std::string key = Key(word);
    const int result = InLibrary([&] { return (table.*callback)(Argument(key), &text); });
    answers += std::to_string(result) + " " + (text == nullptr ? "(null)" : text) + "\n";
    if (text != untouched) {
      table.release_string(text);
    }
  }
  return answers;
}

std::string Conversation::List(const char* key) const {
  int count = 42;
  void** list = InLibrary([&] { return m_provider->table().get_list_items(key, &count); });
  if (list == nullptr) {
    return "no list, count " + std::to_string(count) + "\n";
  }
  std::string answer = std::to_string(count) + "\n";
  for (const ListItem& item : m_provider->TakeList(list, count)) {
    answer += item.value + " | " + item.display_value + "\n";
  }
  return answer;
}

// A second provider. The text domain is bound elsewhere first, so that binding it takes memory.
std::string Conversation::Create() const {
  bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, "/");
  void* handle = &handle;
  const int result = InLibrary([&] { return m_provider->create_provider()(&handle); });
  const std::string bound = bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, nullptr);
  m_provider->delete_provider()(&handle);
  return std::to_string(result) + (handle == nullptr ? " none" : " made") +
         (bound == "/" ? "\n" : ", bound\n");
}
