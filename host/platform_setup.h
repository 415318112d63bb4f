// Tells the platform's stand-ins where their files are. A stand-in reads its environment variable
// on each call. The plug-in reads each file only once, so these functions must be called before the
// plug-in is loaded.
//
// A program in /usr/bin has the root "/". A program in X/usr/bin, for example in the build folder,
// has the root X. These functions call it the program's own root.
#ifndef HOST_PLATFORM_SETUP_H
#define HOST_PLATFORM_SETUP_H

#include <string>
#include <vector>

// The environment variables of the stand-ins.
inline constexpr char kRootVariable[] = "ROOTFS_DIR";
inline constexpr char kProfileVariable[] = "DEVINFO_PROFILE";
inline constexpr char kRegistryVariable[] = "KVREG_FILE";
inline constexpr char kLogVariable[] = "QLOG_LEVEL";

// Returns the path of an installed file below the program's own root. `path` is absolute.
std::string OwnFile(const std::string& path);

// Throws HostError if `path` exists but is not a regular file. Opening a FIFO could block forever.
void RefuseSpecialFile(const std::string& path);

// Makes the platform read the library's files below `root`, a folder laid out like a device. If
// `root` is empty, uses the program's own root. Returns the absolute path of the root. Throws
// HostError if the root has no such files, or they cannot be read.
std::string UseRoot(const std::string& root);

// Returns the path on this machine of the device's file `path`. Throws HostError if it is too long.
std::string LocateFile(const std::string& path);

inline constexpr char kDefaultProfile[] = "global";

// Makes the platform use a device profile, and returns its path. `profile` is a path if it contains
// a slash. Otherwise it is the name of an installed profile, or a path if no installed profile has
// this name. Throws HostError if there is no such file or it is not a key file.
std::string UseDeviceProfile(const std::string& profile);

struct DeviceProfile {
  std::string name;
  std::string path;
};

// Returns the profiles that are installed below the program's own root, sorted by name.
std::vector<DeviceProfile> ReadDeviceProfiles();

// Returns the absolute path of `file`. If `file` is empty, returns the registry in the user's state
// folder. Creates nothing. Throws HostError if the user has no state folder.
std::string FindRegistry(const std::string& file);

// Makes the platform use the registry `path`, which the first write creates. If `writes` is true
// and `path` is in the user's state folder, creates that folder. If `writes` is false, the state
// folder may be missing. Throws HostError if the folder of `path` cannot be opened.
void UseRegistry(const std::string& path, bool writes = true);

#endif
