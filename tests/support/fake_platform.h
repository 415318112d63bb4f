// A platform that a test sets up and can make fail, in place of the device's. The test program
// exports its functions, so the unmodified plug-in binds to them rather than to the stand-ins.
#ifndef TESTS_FAKE_PLATFORM_H
#define TESTS_FAKE_PLATFORM_H

#include <map>
#include <string>

struct FakePlatform {
  std::map<std::string, std::string> registry;

  // What it has and how it fails, each by its name; CONTRIBUTING.md lists them.
  std::map<std::string, std::string> settings = {{"languages", "0 1"}};

  // A line each: "E LoadKeyboardConfig: message"; W for warnings, and I if the setting "log" is
  // "info". Paths are the device's.
  std::string log;

  int language_requests = 0;
};

FakePlatform& Platform();

// What the registry holds, whether it can be read or not; "(nothing)" if it has no such key.
std::string StoredValue(const char* key);

// A new platform, with the keyboard configuration of kKeyboardConfig.
void ResetPlatform();

// What the plug-in finds in place of its configuration; "missing" for none.
void InstallKeyboardConfig(const std::string& contents);

// How often that was opened since.
int KeyboardConfigOpens();

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

#endif
