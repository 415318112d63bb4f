// A test double of the platform. Tests configure it and inject failures. The test program exports
// the functions of the test double. So the unmodified plug-in calls these functions, not those of
// the stand-ins and the libraries.
#ifndef TESTS_FAKE_PLATFORM_H
#define TESTS_FAKE_PLATFORM_H

#include <functional>
#include <map>
#include <string>

struct FakePlatform {
  std::map<std::string, std::string> registry;

  // The device and its failures. CONTRIBUTING.md lists the settings.
  std::map<std::string, std::string> settings;

  // A log line has the form "E LoadKeyboardConfig: message"; "W" is a warning. Info lines ("I") are
  // logged only if the setting "log" is "info".
  std::string log;

  int language_reads = 0;
  int config_reads = 0;

  // The folder in which the library looks for its catalogues.
  const char* catalogues = "";

  // Called by init_data_provider_cbs.
  std::function<void()> on_init = [] {};
};

// The platform has no lock. So the thread sanitizer reports an error if a read-only request writes
// to the platform.
FakePlatform& Platform();

#endif
