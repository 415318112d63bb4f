// The options that every settings application here has, and what they set up.
#ifndef HOST_HOST_OPTIONS_H
#define HOST_HOST_OPTIONS_H

#include <string>

#include "error.h"

namespace CLI {
class App;
}

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

// An option given twice counts as given the last time.
void AddHostOptions(CLI::App& app, HostOptions& options);

// Lets the platform find its files, but for the registry, which UseRegistry() does, and sets the
// language of the interface. To be called before the plug-in is loaded. Throws HostError for what
// is not there.
Sources SetUpHost(const HostOptions& options);

#endif
