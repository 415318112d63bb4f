// Where the platform's stand-ins find what they need, told to them before the plug-in is loaded.
#ifndef MENU_HOST_PLATFORM_SETUP_H
#define MENU_HOST_PLATFORM_SETUP_H

#include <string>

// `profile` is a file, or the name of an installed profile; empty for $DEVINFO_PROFILE, or else
// "global". Throws HostError if there is no such profile.
void UseDeviceProfile(const std::string& profile);

// `file` is made by the first write; empty for $KVREG_FILE, or else a file in the user's own state
// folder. Throws HostError if there is no folder to make it in.
void UseRegistry(const std::string& file);

// A registry in a temporary folder, in place of the user's own for as long as it lives.
class TemporaryRegistry {
 public:
  TemporaryRegistry();  // throws HostError if there is no place for it
  ~TemporaryRegistry();
  TemporaryRegistry(const TemporaryRegistry&) = delete;
  TemporaryRegistry& operator=(const TemporaryRegistry&) = delete;

 private:
  std::string m_folder;
};

// "info", "warning", "error" or "none"; empty for $QLOG_LEVEL, or else the log's own default.
void UseLogLevel(const std::string& level);

#endif
