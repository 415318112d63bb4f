#include "profile_check.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "Provider.h"
#include "platform_setup.h"
#include "profile.h"
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

// Loads the plug-in with temporary profiles to learn what it reads from them.
class Trials {
 public:
  explicit Trials(std::string plugin) : m_plugin(std::move(plugin)) {}

  // A known language that is listed twice yields two entries; an unknown one yields only the
  // fallback.
  bool KnowsLanguage(Id id) const {
    const std::string text = std::to_string(id);
    const TemporaryProfile profile(Group(kDeviceGroup) + "\n" + kLanguageKey + "=" + text + ";" +
                                   text);
    const auto languages = Provider(m_plugin).ListItems(DATA_PROVIDER_LANGUAGE);
    return languages && languages->size() > 1;
  }

  bool ReadsBoolean(const std::string& name) const {
    return HelpImageWhen(name, "true") != HelpImageWhen(name, "false");
  }

 private:
  std::optional<std::string> HelpImageWhen(const std::string& name, const char* value) const {
    const TemporaryProfile profile(Group(kBooleanGroup) + "\n" + name + "=" + value);
    return Provider(m_plugin).HelpImagePath(DATA_PROVIDER_PAGE);
  }

  std::string m_plugin;
  ScopedVariable m_log_level{kLogVariable, "none"};
};

class ProfileCheck {
 public:
  ProfileCheck(const std::string& profile, const std::string& plugin)
      : m_profile(LoadProfile(profile)), m_trials(plugin), m_where("profile " + profile) {}

  std::vector<Finding> Run() {
    CheckGroups();
    CheckDeviceKeys();
    try {
      CheckLanguages();
      CheckBooleans();
    } catch (const HostError& error) {
      Add("[device] and [custom_bool]", std::string("cannot be checked: ") + error.what(),
          "fix this, then check again");
    }
    return std::move(m_findings);
  }

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
    } else if (!m_trials.KnowsLanguage(*id)) {
      Add(item, "is an unknown language id", "fix or remove it");
    }
  }

  void CheckBooleans() {
    for (const std::string& name : KeysOf(kBooleanGroup)) {
      const std::string item = Group(kBooleanGroup) + " " + name;
      if (!m_trials.ReadsBoolean(name)) {
        Add(item, "changes nothing on the page", "fix its name, or remove it");
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
  Trials m_trials;
  std::string m_where;
  std::vector<Finding> m_findings;
};

}  // namespace

std::vector<Finding> CheckProfile(const std::string& profile, const std::string& plugin) {
  return ProfileCheck(profile, plugin).Run();
}
