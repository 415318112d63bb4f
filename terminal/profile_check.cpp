#include "profile_check.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

#include "Provider.h"
#include "platform_setup.h"
#include "profile.h"
#include "suggestion.h"
#include "temporary.h"
#include "text.h"

namespace {

constexpr char kDeviceGroup[] = "device";
constexpr char kLanguageKey[] = "system_language_ids";
constexpr char kBooleanGroup[] = "custom_bool";

// Redirects standard error, where the log goes, to memory. kFile reads it from the beginning.
class CapturedLog {
 public:
  static constexpr char kFile[] = "/proc/self/fd/2";

  CapturedLog() : m_standard_error(dup(STDERR_FILENO)) {
    const int memory = memfd_create("log", 0);
    dup2(memory, STDERR_FILENO);
    close(memory);
  }
  ~CapturedLog() {
    dup2(m_standard_error, STDERR_FILENO);
    close(m_standard_error);
  }
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

 private:
  ScopedVariable m_level{kLogVariable, "info"};
  int m_standard_error;
};

class ProfileCheck {
 public:
  ProfileCheck(const std::string& profile, const std::string& plugin)
      : m_profile(LoadProfile(profile)), m_where("profile " + profile) {
    CheckGroups();
    CheckDeviceKeys();
    try {
      UseWithoutBooleans(profile, plugin);
      CheckBooleans();
    } catch (const HostError& error) {
      Add("[device] and [custom_bool]", std::string("cannot be checked: ") + error.what(),
          "fix this, then check again");
    }
  }

  std::vector<Finding> TakeFindings() { return std::move(m_findings); }

 private:
  void Add(const std::string& item, const std::string& problem, const std::string& remedy) {
    m_findings.push_back({m_where, item, problem, remedy});
  }

  void CheckGroups() {
    gsize count = 0;
    g_auto(GStrv) groups = g_key_file_get_groups(m_profile.get(), &count);
    for (gsize i = 0; i < count; ++i) {
      const std::string group = groups[i];
      if (group != kDeviceGroup && group != kBooleanGroup) {
        Add("[" + group + "]", "is unknown",
            "rename it to [device] or [custom_bool], or remove it");
      }
    }
  }

  void CheckDeviceKeys() {
    for (const std::string& key : KeysOf(kDeviceGroup)) {
      if (key != kLanguageKey) {
        Add("[device] " + key, "is unknown", "rename it to system_language_ids, or remove it");
      }
    }
  }

  // Loads the plug-in without any booleans. The log then names each boolean that the plug-in reads.
  void UseWithoutBooleans(const std::string& profile, const std::string& plugin) {
    const KeyFile reduced = LoadProfile(profile);
    g_key_file_remove_group(reduced.get(), kBooleanGroup, nullptr);
    g_autofree gchar* contents = g_key_file_to_data(reduced.get(), nullptr, nullptr);
    const TemporaryProfile temporary(contents);
    const CapturedLog log;
    const Provider provider(plugin);
    provider.ListItems(DATA_PROVIDER_LANGUAGE);
    provider.HelpImagePath(DATA_PROVIDER_PAGE);
    ReadLog(CapturedLog::kFile);
  }

  void ReadLog(const char* file) {
    const std::string item = "[device] system_language_ids";
    const std::regex skipped("system_language_ids: (entry .*) skipped: (.*)");
    const std::regex language(R"(sys_lang_id \[(-?\d+)\](.*))");
    const std::regex missing("error DEVINFO: (.*?): .*");
    std::set<std::string> ids;
    std::ifstream lines(file);
    std::smatch match;
    for (std::string line; std::getline(lines, line);) {
      if (std::regex_search(line, match, skipped)) {
        Add(item + " " + match.str(1), "is " + match.str(2), "fix or remove it");
      } else if (std::regex_search(line, match, language)) {
        const std::string id = item + " " + match.str(1);
        if (!ids.insert(id).second) {
          Add(id, "is a duplicate", "remove it");
        } else if (match.str(2) == " not support") {
          Add(id, "is an unknown language id", "fix or remove it");
        }
      } else if (std::regex_match(line, match, missing) && match.str(1) != kLanguageKey) {
        m_booleans.push_back({match.str(1), match.str(1)});
      }
    }
    if (ids.empty()) {
      Add(item, "has no language ids", "list those of the device");
    }
  }

  void CheckBooleans() {
    for (const std::string& name : KeysOf(kBooleanGroup)) {
      const std::string item = "[custom_bool] " + name;
      if (std::ranges::find(m_booleans, name, &Choice::value) == m_booleans.end()) {
        Add(item, "changes nothing on the page",
            DidYouMean(name, m_booleans) + "fix its name, or remove it");
      }
      g_autoptr(GError) error = nullptr;
      g_key_file_get_boolean(m_profile.get(), kBooleanGroup, name.c_str(), &error);
      if (error != nullptr) {
        Add(item, "is not a boolean", "write true or false");
      }
    }
  }

  // Returns nothing if there is no such group.
  std::vector<std::string> KeysOf(const char* group) const {
    gsize count = 0;
    g_auto(GStrv) keys = g_key_file_get_keys(m_profile.get(), group, &count, nullptr);
    return {keys, keys + count};
  }

  KeyFile m_profile;
  std::string m_where;
  std::vector<Choice> m_booleans;  // the names that the plug-in reads
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckProfile(const std::string& profile, const std::string& plugin) {
  return ProfileCheck(profile, plugin).TakeFindings();
}
