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
  std::set<std::string> unreadable_keys;
  std::set<std::string> unwritable_keys;
  std::vector<std::string> writes;  // "key=value", failed ones too

  int language_result = 0;
  std::vector<int> language_ids;
  std::optional<int> language_count;  // where it differs from the number of ids
  bool language_values_null = false;
  int language_requests = 0;

  std::optional<bool> bluetooth;  // none: the service fails

  std::vector<std::string> log;  // "E LoadKeyboardConfig: message"; I and W for the other levels

  std::vector<std::string> Logged(const std::string& begin) const;
  std::vector<std::string> Complaints() const;  // warnings and errors
};

FakePlatform& Platform();
void ResetPlatform();

// What the plug-in finds in place of its configuration; none: no such file.
void InstallKeyboardConfig(const std::optional<std::string>& contents);

#endif
