#include "conversation.h"

#include <clocale>
#include <cstdlib>
#include <map>
#include <utility>

#include <libintl.h>

#include "fake_platform.h"

namespace {

const std::map<std::string, std::string> kKeys = {
    {"page", kPageKey}, {"language", kLanguageKey}, {"type", kTypeKey}};

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

Conversation::Conversation() {
  ResetPlatform();
  std::setlocale(LC_ALL, "C.UTF-8");
  unsetenv("LANGUAGE");
}

std::string Conversation::Say(const std::string& order) {
  const auto [command, rest] = SplitWord(order);
  if (SetUp(command, rest)) {
    return "";
  }
  if (!m_plugin) {
    m_plugin = std::make_unique<Plugin>();
    Platform().log.clear();
  }
  const std::string answer = Ask(order);
  return std::exchange(Platform().log, "") + answer;
}

bool Conversation::SetUp(const std::string& command, const std::string& rest) {
  const auto [name, value] = SplitWord(rest);
  if (command == "reload") {
    m_plugin.reset();
  } else if (command == "ui-language") {
    setenv("LANGUAGE", rest.c_str(), 1);
    textdomain("");  // gettext looks at it again
  } else if (command == "config") {
    rest == "missing" ? RemoveKeyboardConfig() : InstallKeyboardConfig(rest);
  } else if (command == "device") {
    Platform().settings[name] = Key(value);
  } else if (command == "stored") {
    Platform().registry[Key(name)] = Argument(value);
  } else {
    return false;
  }
  return true;
}

std::string Conversation::Ask(const std::string& order) const {
  const auto [command, rest] = SplitWord(order);
  const data_provider_cbs& cbs = *m_plugin->cbs;
  const std::map<std::string, int (*)(const char*, char**)> kStringCallbacks = {
      {"get_module_info", cbs.get_module_info},
      {"get_display_name", cbs.get_display_name},
      {"get_help_text", cbs.get_help_text},
      {"get_help_image_path", cbs.get_help_image_path},
      {"get_string", cbs.get_string}};
  const auto [key_word, value] = SplitWord(rest);
  const std::string key_text = Key(key_word);
  const char* key = Argument(key_text);
  if (command == "get_list_items") {
    return List(key);
  }
  if (command == "set_string") {
    return std::to_string(cbs.set_string(key, Argument(value))) + "\n";
  }
  char untouched[] = "(untouched)";
  char* text = untouched;
  const int result = kStringCallbacks.at(command)(key, value == "NULL" ? nullptr : &text);
  const std::string answer = std::to_string(result) + " " + (text == nullptr ? "(null)" : text);
  if (text != untouched) {
    cbs.release_string(text);
  }
  return answer + "\n";
}

std::string Conversation::List(const char* key) const {
  const data_provider_cbs& cbs = *m_plugin->cbs;
  int count = 42;
  void** list = cbs.get_list_items(key, &count);
  std::string answer = (list == nullptr ? "no list, count " : "") + std::to_string(count) + "\n";
  for (int i = 0; list != nullptr && i < count; ++i) {
    char* value = nullptr;
    char* text = nullptr;
    cbs.get_list_item_string_value(list[i], &value);
    cbs.get_list_item_display_value(list[i], &text);
    answer += std::string(value) + " | " + text + "\n";
  }
  cbs.free_list_items(list, list == nullptr ? 0 : count);
  return answer;
}
