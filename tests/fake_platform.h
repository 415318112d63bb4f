// A platform that a test sets up and can make fail, in place of the device's. The test program
// exports its functions, so the unmodified plug-in binds to them rather than to the stand-ins. It
// also redirects the two folders that the plug-in reads: the keyboard configuration comes from
// `keyboard_config`, the catalogues from the build.
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

  std::optional<std::string> keyboard_config;  // none: no such file

  std::vector<std::string> log;  // "I LoadKeyboardConfig: message", without the info lines' "I" ...
  std::string bound_directory;

  // The lines of `log` that begin with this.
  std::vector<std::string> Logged(const std::string& begin) const;
  std::vector<std::string> Complaints() const;  // warnings and errors
};

FakePlatform& Platform();
void ResetPlatform();

#endif
