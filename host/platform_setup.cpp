#include "platform_setup.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "error.h"
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

bool IsSet(const char* variable) { return std::getenv(variable) != nullptr; }

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
  if (home == nullptr) {
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
  if (profile.empty() && IsSet(kProfileVariable)) {
    return;
  }
  const std::string name = profile.empty() ? kDefaultProfile : profile;
  const fs::path installed = fs::path(MENU_HOST_DEVICES) / (name + kProfileSuffix);
  for (const fs::path& candidate : {installed, fs::path(name)}) {
    std::error_code error;
    if (fs::is_regular_file(candidate, error)) {
      SetEnvironment(kProfileVariable, candidate);
      return;
    }
  }
  throw HostError("unknown device profile '" + name + "'. Give a file, or one of: " +
                  Join(InstalledProfiles()) + " (in " MENU_HOST_DEVICES ").");
}

void UseRegistry(const std::string& file) {
  if (file.empty() && IsSet(kRegistryVariable)) {
    return;
  }
  const fs::path registry = file.empty() ? OwnRegistry() : file;
  const fs::path folder = fs::absolute(registry).parent_path();
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    throw HostError("no folder '" + folder.string() + "' for the registry. Make it first.");
  }
  SetEnvironment(kRegistryVariable, registry);
}

void UseLogLevel(const std::string& level) {
  if (!level.empty()) {
    SetEnvironment(kLogVariable, level);
  }
}
