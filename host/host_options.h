// The options that every settings application here has, and what they set up.
#ifndef HOST_HOST_OPTIONS_H
#define HOST_HOST_OPTIONS_H

#include <functional>
#include <string>

#include "KeyboardPage.h"
#include "error.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

struct HostOptions {
  std::string ui_language = "en_US";
  std::string root;
  std::string device;
  std::string registry;
  std::string log_level;
  std::string plugin;
};

struct Sources {  // paths
  std::string plugin;
  std::string root;
  std::string profile;
  std::string registry;
};

class UsageError : public HostError {
  using HostError::HostError;
};

// To be called first of what is added to `app`, whose version is `version`. An option given twice
// counts as given the last time.
void AddHostOptions(CLI::App& app, const char* version, HostOptions& options);

// An option or an argument that is "language" or "type".
CLI::Option* AddSetting(CLI::App& app, const char* name, const char* description,
                        std::function<void(SettingId)> set);

// Returns whether there is anything left to do: not when the help or the version was asked for, and
// shown. Throws UsageError for what cannot be understood.
bool Parse(CLI::App& app, int argc, const char* const* argv);

// Lets the platform find its files, but for the registry, which UseRegistry() does, and sets the
// language of the interface. To be called before the plug-in is loaded. Throws HostError for what
// is not there.
Sources SetUpHost(const HostOptions& options);

#endif
