// The command-line options that all host programs share, and the set-up that follows from them.
#ifndef HOST_HOST_OPTIONS_H
#define HOST_HOST_OPTIONS_H

#include <functional>
#include <string>

#include "KeyboardPage.h"
#include "platform_setup.h"
#include "ui_language.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

// An empty string stands for the default that the help text names.
struct HostOptions {
  std::string ui_language;
  std::string root;
  std::string device = kDefaultProfile;
  std::string registry;
  std::string log_level;
  std::string plugin;
};

// The paths and the interface language that a program uses.
struct Sources {
  UiLanguage ui_language;
  std::string plugin;
  std::string root;
  std::string profile;
  std::string registry;
};

// Adds --version and the host options to `app`. Parse() writes their values to `options`. Both must
// live until Parse() has returned. An option that is missing on the command line is read from its
// environment variable, if it has one. If an option is given twice, the last one counts. Call this
// first: options that are added later inherit the defaults that are set here.
void AddHostOptions(CLI::App& app, const char* version, HostOptions& options);

// Adds an option or argument `name` with the value "language" or "type", and calls `set` with it.
// `app` owns the option that is returned.
CLI::Option* AddSetting(CLI::App& app, const char* name, const char* description,
                        std::function<void(SettingId)> set);

// Parses the command line. Returns false if it printed the help or the version; then the program
// must do nothing else. Throws UsageError if an argument is unknown, missing or invalid.
bool Parse(CLI::App& app, int argc, const char* const* argv);

// Sets up the log, the device profile, the root and the interface language. Call it before the
// plug-in is loaded. Does not set up the registry: pass the path in `registry` to UseRegistry().
// Throws HostError if a file, a folder or the machine's locale cannot be used, and UsageError if
// the log level is unknown.
Sources SetUpHost(const HostOptions& options);

#endif
