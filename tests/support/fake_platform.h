// A platform that a test sets up and can make fail. The test program exports its functions, so the
// unmodified plug-in binds to them instead of to the stand-ins and the libraries.
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

  // How often the library read the languages and the keyboard configuration.
  int language_reads = 0;
  int config_reads = 0;

  // The folder of the catalogues that the library binds.
  const char* catalogues = "";

  // Called by init_data_provider_cbs.
  std::function<void()> on_init = [] {};
};

// Has no lock, so the thread sanitizer reports if the library writes in a request that only reads.
FakePlatform& Platform();

#endif
