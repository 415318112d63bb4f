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

std::vector<std::string> ProfileNames(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == kProfileSuffix) {
      names.push_back(entry.path().stem());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

fs::path StateFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state != '\0') {
    return state;
  }
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') {
    throw HostError("no folder for the registry: HOME is not set. Name a file for it.");
  }
  return fs::path(home) / ".local" / "state";
}

std::string OwnRegistry() {
  const fs::path folder = StateFolder() / "morvith-menu-host";
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw HostError("cannot make the registry's folder '" + folder.string() +
                    "': " + error.message() + ". Name a file for it.");
  }
  return folder / "registry.db";
}

}  // namespace

std::string OwnPlugin() { return BelowOwnRoot(HOST_PLUGIN); }

void UseRoot(const std::string& root) {
  const std::string wanted = OptionOr(root, kRootVariable);
  SetEnvironment(kRootVariable, wanted.empty() ? BelowOwnRoot("/") : fs::absolute(wanted));
  const std::string resources = LocateFile(ROOTFS_RESOURCES);
  std::error_code error;
  if (!fs::is_directory(resources, error)) {
    throw HostError("no folder '" + resources +
                    "'. Install libmorvith-dataprovider, or name a root that has it.");
  }
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
    throw HostError("no device profile '" + name + "'. Give a key file, or one of: " +
                    Join(ProfileNames(folder)) + " (in " + folder.string() + ").");
  }
  LoadKeyFile(*found);
  SetEnvironment(kProfileVariable, *found);
  return *found;
}

void UseRegistry(const std::string& file) {
  const std::string wanted = OptionOr(file, kRegistryVariable);
  const fs::path registry = fs::absolute(wanted.empty() ? OwnRegistry() : wanted);
  std::error_code error;
  if (!fs::is_directory(registry.parent_path(), error)) {
    throw HostError("no folder '" + registry.parent_path().string() +
                    "' for the registry. Make it first.");
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
  if (!level.empty()) {
    SetEnvironment(kLogVariable, level);
  }
}
