#include "profile_check.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>
#include <system_error>
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

using Id = std::int32_t;

// Accepts what the system-information service accepts.
std::optional<Id> ParseId(std::string_view text) {
  Id id = 0;
  const auto [stop, error] = std::from_chars(text.begin(), text.end(), id);
  return error == std::errc() && stop == text.end() ? std::optional(id) : std::nullopt;
}

std::string Group(const std::string& name) { return "[" + name + "]"; }

// Redirects standard error, where the log goes, to memory.
class CapturedLog {
 public:
  CapturedLog() {
    if (m_log < 0 || m_standard_error < 0 || dup2(m_log, STDERR_FILENO) < 0) {
      throw HostError("cannot read the log");
    }
  }
  ~CapturedLog() {
    dup2(m_standard_error, STDERR_FILENO);
    close(m_standard_error);
    close(m_log);
  }
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  std::string Text() const {
    std::string text(static_cast<std::size_t>(lseek(m_log, 0, SEEK_END)), '\0');
    const ssize_t length = pread(m_log, text.data(), text.size(), 0);
    return text.substr(0, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  }

 private:
  ScopedVariable m_level{kLogVariable, "warning"};
  int m_log = memfd_create("log", MFD_CLOEXEC);
  int m_standard_error = dup(STDERR_FILENO);
};

// What the plug-in does with a profile.
struct Use {
  std::set<Id> unknown_languages;
  std::vector<Choice> booleans;  // the names that it reads
};

// Loads the plug-in with the profile. Leaves out the booleans, because the log has the names of
// those that are missing.
Use LearnUse(const std::string& profile, const std::string& plugin) {
  const KeyFile reduced = LoadProfile(profile);
  g_key_file_remove_group(reduced.get(), kBooleanGroup, nullptr);
  g_autofree gchar* contents = g_key_file_to_data(reduced.get(), nullptr, nullptr);
  const TemporaryProfile temporary(contents);
  const CapturedLog log;
  {
    const Provider provider(plugin);
    provider.ListItems(DATA_PROVIDER_LANGUAGE);
    provider.HelpImagePath(DATA_PROVIDER_PAGE);
  }
  const std::regex unknown(R"(sys_lang_id \[(-?\d+)\] not support)");
  const std::regex missing("^error DEVINFO: (.+?): ");
  Use use;
  std::istringstream lines(log.Text());
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (std::regex_search(line, match, unknown)) {
      use.unknown_languages.insert(std::stoi(match[1]));
    } else if (std::regex_search(line, match, missing) && match[1] != kLanguageKey) {
      use.booleans.push_back({match[1], match[1]});
    }
  }
  return use;
}

class ProfileCheck {
 public:
  ProfileCheck(const std::string& profile, const std::string& plugin)
      : m_profile(LoadProfile(profile)), m_where("profile " + profile) {
    CheckGroups();
    CheckDeviceKeys();
    try {
      m_use = LearnUse(profile, plugin);
      CheckLanguages();
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
        Add(Group(group), "is unknown",
            "rename it to " + Group(kDeviceGroup) + " or " + Group(kBooleanGroup) +
                ", or remove it");
      }
    }
  }

  void CheckDeviceKeys() {
    for (const std::string& key : KeysOf(kDeviceGroup)) {
      if (key != kLanguageKey) {
        Add(Group(kDeviceGroup) + " " + key, "is unknown",
            std::string("rename it to ") + kLanguageKey + ", or remove it");
      }
    }
  }

  void CheckLanguages() {
    const std::string item = Group(kDeviceGroup) + " " + kLanguageKey;
    gsize count = 0;
    g_auto(GStrv) entries =
        g_key_file_get_string_list(m_profile.get(), kDeviceGroup, kLanguageKey, &count, nullptr);
    if (count == 0) {
      const bool is_there =
          g_key_file_has_key(m_profile.get(), kDeviceGroup, kLanguageKey, nullptr) != FALSE;
      Add(item, is_there ? "has no readable entry" : "is missing",
          "list the language ids of the device");
    }
    std::set<Id> listed;
    for (gsize i = 0; i < count; ++i) {
      const char* entry = g_strstrip(entries[i]);
      CheckLanguage(item + " entry " + std::to_string(i + 1) + " " + Quoted(entry), ParseId(entry),
                    listed);
    }
  }

  void CheckLanguage(const std::string& item, std::optional<Id> id, std::set<Id>& listed) {
    if (!id) {
      Add(item, "is not a 32-bit integer", "fix or remove it");
    } else if (!listed.insert(*id).second) {
      Add(item, "is a duplicate", "remove it");
    } else if (m_use.unknown_languages.contains(*id)) {
      Add(item, "is an unknown language id", "fix or remove it");
    }
  }

  void CheckBooleans() {
    for (const std::string& name : KeysOf(kBooleanGroup)) {
      const std::string item = Group(kBooleanGroup) + " " + name;
      if (std::ranges::find(m_use.booleans, name, &Choice::value) == m_use.booleans.end()) {
        Add(item, "changes nothing on the page",
            DidYouMean(name, m_use.booleans) + "fix its name, or remove it");
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
  Use m_use;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckProfile(const std::string& profile, const std::string& plugin) {
  return ProfileCheck(profile, plugin).TakeFindings();
}
