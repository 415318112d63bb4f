#include "platform_setup.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <glib.h>

#include "error.h"
#include "profile.h"
#include "rootfs.h"
#include "text.h"

namespace fs = std::filesystem;

namespace {

constexpr char kProfileSuffix[] = ".ini";

void SetEnvironment(const char* variable, const std::string& value) {
  setenv(variable, value.c_str(), 1);
}

bool Exists(const fs::path& file) {
  std::error_code error;
  return fs::exists(file, error);
}

// GLib takes the home folder from the system's user database if HOME is unset.
fs::path StateFolder() { return fs::path(g_get_user_state_dir()) / "morvith-menu-host"; }

// Throws HostError with the reason and the remedy if `folder` cannot be opened.
void OpenFolder(const fs::path& folder, const std::string& remedy) {
  std::error_code error;
  const fs::directory_iterator opened(folder, error);
  if (error) {
    throw HostError("cannot open the folder " + Quoted(folder) + ": " + error.message() + "; " +
                    remedy);
  }
}

}  // namespace

void RefuseSpecialFile(const std::string& path) {
  std::error_code error;
  if (Exists(path) && !fs::is_regular_file(path, error)) {
    throw HostError("cannot open " + Quoted(path) + ": not a regular file");
  }
}

std::string OwnFile(const std::string& path) {
  std::error_code error;
  const std::string folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  const std::string binaries = HOST_BINARIES;
  return folder.ends_with(binaries) ? folder.substr(0, folder.size() - binaries.size()) + path
                                    : path;
}

std::string UseRoot(const std::string& root) {
  const fs::path used = root.empty() ? fs::path(OwnFile("/")) : fs::absolute(root);
  SetEnvironment(kRootVariable, used);
  OpenFolder(LocateFile(ROOTFS_RESOURCES), "install libmorvith-dataprovider, or pass another root");
  return used;
}

std::string LocateFile(const std::string& path) {
  char located[PATH_MAX];
  if (rootfs_locate(path.c_str(), located, sizeof(located)) != 0) {
    throw HostError("the path of " + Quoted(path) + " is too long below this root");
  }
  return located;
}

std::string UseDeviceProfile(const std::string& profile) {
  const fs::path installed = fs::path(OwnFile(HOST_DEVICES)) / (profile + kProfileSuffix);
  const bool is_path = profile.find('/') != std::string::npos;
  const fs::path file = is_path || !Exists(installed) ? fs::path(profile) : installed;
  if (!Exists(file)) {
    std::vector<std::string> names;
    for (const DeviceProfile& known : ReadDeviceProfiles()) {
      names.push_back(known.name);
    }
    throw HostError("unknown device profile " + Quoted(profile) + "; available: " + Join(names) +
                    "; or pass the path of a profile");
  }
  LoadProfile(file);
  SetEnvironment(kProfileVariable, file);
  return file;
}

std::vector<DeviceProfile> ReadDeviceProfiles() {
  std::vector<DeviceProfile> profiles;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(OwnFile(HOST_DEVICES), error)) {
    if (entry.path().extension() == kProfileSuffix) {
      profiles.push_back({entry.path().stem(), entry.path()});
    }
  }
  std::ranges::sort(profiles, {}, &DeviceProfile::name);
  return profiles;
}

std::string FindRegistry(const std::string& file) {
  if (!file.empty()) {
    return fs::absolute(file);
  }
  if (StateFolder().is_relative()) {
    throw HostError("no folder for the registry: " + Quoted(StateFolder()) +
                    " is not an absolute path; fix HOME or XDG_STATE_HOME, or pass a file for the "
                    "registry");
  }
  return StateFolder() / "registry.db";
}

void UseRegistry(const std::string& path, bool writes) {
  const fs::path folder = fs::path(path).parent_path();
  std::error_code error;
  if (writes && folder == StateFolder()) {
    fs::create_directories(folder, error);
  }
  if (writes || folder != StateFolder()) {
    OpenFolder(folder, "pass a registry in another folder");
  }
  SetEnvironment(kRegistryVariable, path);
}
