// Where the platform's stand-ins find what they need, told to them before the plug-in is loaded.
//
// A program finds its own root by where it lies: it is "/" for one in /usr/bin, and a folder that
// is laid out like a device for one in its usr/bin, as the build's is.
#ifndef HOST_PLATFORM_SETUP_H
#define HOST_PLATFORM_SETUP_H

#include <string>
#include <vector>

// The plug-in below the program's own root.
std::string OwnPlugin();

// What a program installs at `path`, below the program's own root.
std::string OwnFile(const std::string& path);

// `root` is a folder that has the library's files where a device has them; empty for $ROOTFS_DIR,
// or else the program's own root. Throws HostError if there are none.
// Returns the root's path.
std::string UseRoot(const std::string& root);

// Where a file that the provider names lies below the root in use.
std::string LocateFile(const std::string& path);

// `profile` is a file if it has a slash, otherwise a profile below the program's own root, or else
// a file; empty for $DEVINFO_PROFILE, or else "global". Returns its path. Throws HostError if there
// is no such file, or it is no key file.
std::string UseDeviceProfile(const std::string& profile);

struct DeviceProfile {
  std::string name;
  std::string path;
};

// Those below the program's own root, in the order of their names.
std::vector<DeviceProfile> ReadDeviceProfiles();

// The path of `file`; empty for $KVREG_FILE, or else a file in the user's own state folder. Nothing
// is made.
std::string FindRegistry(const std::string& file);

// The registry that FindRegistry() names is made by the first write; the user's own state folder is
// made here. Throws HostError if there is no folder to make it in.
void UseRegistry(const std::string& file);

class TemporaryFolder {
 public:
  TemporaryFolder();  // throws HostError if there is no place for it
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string PathOf(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

// A registry in a temporary folder, in place of the user's own for as long as it lives.
class TemporaryRegistry {
 public:
  TemporaryRegistry();  // throws HostError if there is no place for it

 private:
  TemporaryFolder m_folder;
};

// A device profile in a temporary folder, in place of the one in use, which stays out of use.
class TemporaryProfile {
 public:
  // Throws HostError if it cannot be written.
  explicit TemporaryProfile(const std::string& contents);

 private:
  TemporaryFolder m_folder;
};

inline const std::vector<std::string> kLogLevels = {"info", "warning", "error", "none"};

// One of kLogLevels; empty for $QLOG_LEVEL, or else the log's own default. Throws HostError for
// another level.
void UseLogLevel(const std::string& level);

#endif
