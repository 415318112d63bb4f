// A platform that a test sets up and can make fail, in place of the device's. The test program
// exports its functions, so the unmodified plug-in binds to them rather than to the stand-ins.
#ifndef TESTS_FAKE_PLATFORM_H
#define TESTS_FAKE_PLATFORM_H

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

struct FakePlatform {
  std::map<std::string, std::string> registry;
  std::set<std::string> failing_keys;  // neither read nor written

  int language_result = 0;
  std::vector<int> language_ids = {0, 1};
  std::optional<int> language_count;  // where it differs from the number of ids
  bool language_values_null = false;
  int language_requests = 0;

  std::optional<bool> bluetooth;  // none: the service fails

  std::string log;  // a line each: "E LoadKeyboardConfig: message"; W and I for the other levels
};

FakePlatform& Platform();

// A new platform, with the keyboard configuration of kKeyboardConfig.
void ResetPlatform();

// What the plug-in finds in place of its configuration; none: no such file.
void InstallKeyboardConfig(const std::optional<std::string>& contents);

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
