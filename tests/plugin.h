// The plug-in as the host has it: loaded when constructed, gone when destroyed.
#ifndef TESTS_PLUGIN_H
#define TESTS_PLUGIN_H

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "data_provider.h"

inline constexpr char kPage[] = "menu/system/external_device_manager/keyboard-settings";
inline constexpr char kLanguage[] = "db/ime/keyboard_language_name";
inline constexpr char kType[] = "db/ime/hardware_keyboard_name";

// What a test finds as the keyboard configuration.
inline constexpr char kKeyboardConfig[] = R"json({
  "keyboard_name_map": [
    { "name": "us_intl_ibm103i", "display_name": "English (US, International)" },
    { "name": "kr_ibm106", "display_name": "Korean (106 keys)" }
  ],
  "lang_local_keyboard_type_table": [
    { "lang_local": "ko_KR", "keyboard_types": [ "kr_ibm106", "us_intl_ibm103i" ] },
    { "lang_local": "en_US", "keyboard_types": [ "us_intl_ibm103i" ] },
    { "lang_local": "fr_CA" }
  ]
})json";

// The string value and the display value of each item.
using Items = std::vector<std::pair<std::string, std::string>>;

class Plugin {
 public:
  Plugin();
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  int (*create_provider)(void** handle) = nullptr;
  int (*delete_provider)(void** handle) = nullptr;
  data_provider_cbs* cbs = nullptr;

  // What a string callback hands out, released again; "(null)" for null, "(untouched)" if it left
  // the out value alone.
  std::string Ask(int (*callback)(const char*, char**), const char* key) const;

  // The list of a key, freed again. Fails the test if there is none.
  Items List(const char* key) const;
  std::vector<std::string> Values(const char* key) const;

 private:
  void* m_library;
};

// A fresh platform and a freshly loaded plug-in for each test that wants them.
class PluginTest : public testing::Test {
 protected:
  PluginTest();
};

#endif
