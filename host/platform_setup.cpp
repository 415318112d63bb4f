#include "platform_setup.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "error.h"
#include "glib_ptr.h"
#include "join.h"

namespace fs = std::filesystem;

namespace {

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

bool IsProfile(const fs::path& file) {
  const GlibPtr<GKeyFile> profile(g_key_file_new());
  return g_key_file_load_from_file(profile.get(), file.c_str(), G_KEY_FILE_NONE, nullptr) !=
             FALSE &&
         g_key_file_has_group(profile.get(), "device") != FALSE;
}

std::vector<std::string> InstalledProfiles() {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(MENU_HOST_DEVICES, error)) {
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
    throw HostError("no folder for the registry: HOME is not set. Name a file with --registry.");
  }
  return fs::path(home) / ".local" / "state";
}

std::string OwnRegistry() {
  const fs::path folder = StateFolder() / "morvith-menu-host";
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw HostError("cannot make the registry's folder '" + folder.string() +
                    "': " + error.message() + ". Name a file with --registry.");
  }
  return folder / "registry.db";
}

}  // namespace

void UseDeviceProfile(const std::string& profile) {
  const std::string wanted = OptionOr(profile, kProfileVariable);
  const std::string name = wanted.empty() ? kDefaultProfile : wanted;
  const fs::path installed = fs::path(MENU_HOST_DEVICES) / (name + kProfileSuffix);
  for (const fs::path& candidate : {installed, fs::path(name)}) {
    if (IsProfile(candidate)) {
      SetEnvironment(kProfileVariable, candidate);
      return;
    }
  }
  throw HostError("no device profile '" + name +
                  "'. Give a key file with a group [device], or one of: " +
                  Join(InstalledProfiles()) + " (in " MENU_HOST_DEVICES ").");
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

TemporaryRegistry::TemporaryRegistry() {
  const GlibPtr<gchar> folder(g_dir_make_tmp("menu-host-XXXXXX", nullptr));
  if (!folder) {
    throw HostError(std::string("cannot make a folder for a temporary registry in '") +
                    g_get_tmp_dir() + "'. Name another place with TMPDIR.");
  }
  m_folder = folder.get();
  SetEnvironment(kRegistryVariable, fs::path(m_folder) / "registry.db");
}

TemporaryRegistry::~TemporaryRegistry() {
  std::error_code error;
  fs::remove_all(m_folder, error);
}

void UseLogLevel(const std::string& level) {
  if (!level.empty()) {
    SetEnvironment(kLogVariable, level);
  }
}
