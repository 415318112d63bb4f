#include "conversation.h"

#include <clocale>
#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <libintl.h>

#include "fake_platform.h"

namespace {

const std::map<std::string, std::string> kKeys = {{"page", DATA_PROVIDER_PAGE},
                                                  {"language", DATA_PROVIDER_LANGUAGE},
                                                  {"type", DATA_PROVIDER_TYPE}};

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

}  // namespace

std::string PluginUnderTest() {
  const char* plugin = std::getenv("MORVITH_PLUGIN");
  return plugin == nullptr ? TEST_PLUGIN : plugin;
}

Conversation::Conversation() {
  ResetPlatform();
  std::setlocale(LC_ALL, "C.UTF-8");
  unsetenv("LANGUAGE");
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
    setenv("LANGUAGE", rest.c_str(), 1);
    textdomain("");  // gettext looks at it again
  } else {
    return false;
  }
  return true;
}

std::string Conversation::Ask(const std::string& order) const {
  const auto [command, rest] = SplitWord(order);
  const auto [key_word, value] = SplitWord(rest);
  const std::string key = Key(key_word);
  if (command == "get_list_items") {
    return List(Argument(key));
  }
  if (command == "set_string") {
    const int result = m_provider->table().set_string(Argument(key), Argument(value));
    return std::to_string(result) + " " + StoredValue(DATA_PROVIDER_LANGUAGE) + ", " +
           StoredValue(DATA_PROVIDER_TYPE) + "\n";
  }
  return AskEach(command, rest);
}

std::string Conversation::AskEach(const std::string& command, const std::string& keys) const {
  const data_provider_cbs& table = m_provider->table();
  const std::map<std::string, int (*)(const char*, char**)> kStringCallbacks = {
      {"get_module_info", table.get_module_info},
      {"get_display_name", table.get_display_name},
      {"get_help_text", table.get_help_text},
      {"get_help_image_path", table.get_help_image_path},
      {"get_string", table.get_string}};
  std::string answers;
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    char untouched[] = "(untouched)";
    char* text = untouched;
    const int result = kStringCallbacks.at(command)(Argument(Key(word)), &text);
    answers += std::to_string(result) + " " + (text == nullptr ? "(null)" : text) + "\n";
    if (text != untouched) {
      table.release_string(text);
    }
  }
  return answers;
}

std::string Conversation::List(const char* key) const {
  const data_provider_cbs& table = m_provider->table();
  int count = 42;
  void** list = table.get_list_items(key, &count);
  if (list == nullptr) {
    return "no list, count " + std::to_string(count) + "\n";
  }
  table.free_list_items(list, count);
  std::string answer = std::to_string(count) + "\n";
  const std::vector<ListItem> items = m_provider->ListItems(key).value();
  for (const ListItem& item : items) {
    answer += item.value + " | " + item.display_value + "\n";
  }
  return answer;
}
