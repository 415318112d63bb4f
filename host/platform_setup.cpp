#include "platform_setup.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include <glib.h>

#include "error.h"
#include "join.h"
#include "key_file.h"
#include "rootfs.h"

namespace fs = std::filesystem;

namespace {

constexpr char kRootVariable[] = "ROOTFS_DIR";
constexpr char kProfileVariable[] = "DEVINFO_PROFILE";
constexpr char kRegistryVariable[] = "KVREG_FILE";
constexpr char kLogVariable[] = "QLOG_LEVEL";
constexpr char kDefaultProfile[] = "global";
constexpr char kProfileSuffix[] = ".ini";

void SetEnvironment(const char* variable, const std::string& value) {
  setenv(variable, value.c_str(), 1);
}

// The option, or else the environment's value; empty if there is neither.
std::string OptionOr(const std::string& option, const char* variable) {
  const char* value = std::getenv(variable);
  return !option.empty() ? option : value == nullptr ? "" : value;
}

// An absolute path, below the program's own root.
fs::path BelowOwnRoot(const std::string& path) {
  std::error_code error;
  const std::string folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  return folder.ends_with(HOST_BINARIES)
             ? folder.substr(0, folder.size() - sizeof(HOST_BINARIES) + 1) + path
             : path;
}

bool Exists(const fs::path& file) {
  std::error_code error;
  return fs::exists(file, error);
}

// Without HOME too: GLib asks the system's user database then. An empty one it takes as it is.
fs::path OwnStateFolder() {
  const fs::path folder = g_get_user_state_dir();
  if (folder.is_relative()) {
    throw HostError("no folder for the registry: HOME is empty. Name a file for the registry.");
  }
  return folder / "morvith-menu-host";
}

}  // namespace

std::string OwnPlugin() { return BelowOwnRoot(HOST_PLUGIN); }

std::string OwnFile(const std::string& path) { return BelowOwnRoot(path); }

std::string UseRoot(const std::string& root) {
  const std::string wanted = OptionOr(root, kRootVariable);
  const fs::path used = wanted.empty() ? BelowOwnRoot("/") : fs::absolute(wanted);
  SetEnvironment(kRootVariable, used);
  const std::string resources = LocateFile(ROOTFS_RESOURCES);
  std::error_code error;
  if (!fs::is_directory(resources, error)) {
    throw HostError("no folder '" + resources +
                    "'. Install libmorvith-dataprovider, or name a root that has it.");
  }
  return used;
}

std::string LocateFile(const std::string& path) {
  char located[PATH_MAX];
  if (rootfs_locate(path.c_str(), located, sizeof(located)) != 0) {
    throw HostError("the path of '" + path + "' is too long below this root");
  }
  return located;
}

std::string UseDeviceProfile(const std::string& profile) {
  const std::string wanted = OptionOr(profile, kProfileVariable);
  const std::string name = wanted.empty() ? kDefaultProfile : wanted;
  const fs::path folder = BelowOwnRoot(HOST_DEVICES);
  std::vector<fs::path> candidates = {name};
  if (name.find('/') == std::string::npos) {
    candidates.insert(candidates.begin(), folder / (name + kProfileSuffix));
  }
  const auto found = std::ranges::find_if(candidates, Exists);
  if (found == candidates.end()) {
    std::vector<std::string> names;
    for (const DeviceProfile& known : ReadDeviceProfiles()) {
      names.push_back(known.name);
    }
    throw HostError("no device profile '" + name + "'. Give a key file, or one of: " + Join(names) +
                    " (in " + folder.string() + ").");
  }
  LoadKeyFile(*found);
  SetEnvironment(kProfileVariable, *found);
  return *found;
}

std::vector<DeviceProfile> ReadDeviceProfiles() {
  std::vector<DeviceProfile> profiles;
  std::error_code error;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(BelowOwnRoot(HOST_DEVICES), error)) {
    if (entry.path().extension() == kProfileSuffix) {
      profiles.push_back({entry.path().stem(), entry.path()});
    }
  }
  std::ranges::sort(profiles, {}, &DeviceProfile::name);
  return profiles;
}

std::string FindRegistry(const std::string& file) {
  const std::string wanted = OptionOr(file, kRegistryVariable);
  return fs::absolute(wanted.empty() ? OwnStateFolder() / "registry.db" : fs::path(wanted));
}

void UseRegistry(const std::string& file) {
  const std::string registry = FindRegistry(file);
  const fs::path folder = fs::path(registry).parent_path();
  std::error_code error;
  if (OptionOr(file, kRegistryVariable).empty()) {
    fs::create_directories(folder, error);
  }
  const std::string reason = error ? ": " + error.message() : "";
  if (!fs::is_directory(folder, error)) {
    throw HostError("no folder '" + folder.string() + "' for the registry" + reason +
                    ". Make it first, or name another file for the registry.");
  }
  SetEnvironment(kRegistryVariable, registry);
}

TemporaryFolder::TemporaryFolder() {
  g_autofree gchar* path = g_dir_make_tmp("menu-host-XXXXXX", nullptr);
  if (path == nullptr) {
    throw HostError(std::string("cannot make a temporary folder in '") + g_get_tmp_dir() +
                    "'. Name another place with TMPDIR.");
  }
  m_path = path;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  fs::remove_all(m_path, error);
}

TemporaryRegistry::TemporaryRegistry() {
  SetEnvironment(kRegistryVariable, m_folder.PathOf("registry.db"));
}

TemporaryProfile::TemporaryProfile(const std::string& contents) {
  const std::string file = m_folder.PathOf("profile.ini");
  g_autoptr(GError) error = nullptr;
  if (g_file_set_contents(file.c_str(), contents.c_str(), -1, &error) == FALSE) {
    throw HostError(std::string("cannot write a temporary device profile: ") + error->message);
  }
  SetEnvironment(kProfileVariable, file);
}

void UseLogLevel(const std::string& level) {
  const std::string wanted = OptionOr(level, kLogVariable);
  if (wanted.empty()) {
    unsetenv(kLogVariable);
    return;
  }
  if (std::ranges::find(kLogLevels, wanted) == kLogLevels.end()) {
    throw HostError("the log has no level '" + wanted + "'. There are: " + Join(kLogLevels) + ".");
  }
  SetEnvironment(kLogVariable, wanted);
}
