#include "devinfo.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include <glib.h>

#include "qlog.h"

namespace {

constexpr char kLanguageGroup[] = "device";
constexpr char kLanguageKey[] = "system_language_ids";
constexpr char kCustomBoolGroup[] = "custom_bool";

void Log(int priority, const char* what, const char* reason) {
  __qlog_print(QLOG_ID_MAIN, priority, "DEVINFO", "%s: %s", what, reason);
}

void LogError(const char* what, const GError* error) {
  Log(QLOG_PRIORITY_ERROR, what, error->message);
}

// Returns null if the profile cannot be read, and logs the reason.
GKeyFile* LoadProfile() {
  const char* path = std::getenv("DEVINFO_PROFILE");
  if (path == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "device profile", "DEVINFO_PROFILE is not set");
    return nullptr;
  }
  g_autoptr(GKeyFile) profile = g_key_file_new();
  g_autoptr(GError) error = nullptr;
  if (g_key_file_load_from_file(profile, path, G_KEY_FILE_NONE, &error) == FALSE) {
    LogError(path, error);
    return nullptr;
  }
  return std::exchange(profile, nullptr);
}

bool ParseId(const char* text, int& id) {
  const char* const end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, id);
  return error == std::errc() && stop == end;
}

}  // namespace

int devinfo_get_value_int_array(int key, devinfo_int_array* out) {
  if (key != DEVINFO_KEY_SYS_LANG_IDS || out == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "integer array", "unknown key or null out-pointer");
    return -1;
  }
  g_autoptr(GKeyFile) profile = LoadProfile();
  if (profile == nullptr) {
    return -1;
  }
  g_autoptr(GError) error = nullptr;
  gsize length = 0;
  g_auto(GStrv) entries =
      g_key_file_get_string_list(profile, kLanguageGroup, kLanguageKey, &length, &error);
  if (error != nullptr) {
    LogError(kLanguageKey, error);
    return -1;
  }
  int* values = static_cast<int*>(std::calloc(length + 1, sizeof(int)));
  if (values == nullptr) {
    Log(QLOG_PRIORITY_ERROR, kLanguageKey, "out of memory");
    return -1;
  }
  int count = 0;
  for (gsize i = 0; i < length; ++i) {
    const char* entry = g_strstrip(entries[i]);
    if (ParseId(entry, values[count])) {
      ++count;
    } else {
      __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_WARNING, "DEVINFO",
                   "%s: entry %zu '%s' skipped: not a 32-bit integer", kLanguageKey, i + 1, entry);
    }
  }
  *out = {count, values};
  return 0;
}

int devinfo_get_custom_bool(const char* key, bool* value) {
  if (key == nullptr || value == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "custom boolean", "null key or out-pointer");
    return -1;
  }
  g_autoptr(GKeyFile) profile = LoadProfile();
  if (profile == nullptr) {
    return -1;
  }
  g_autoptr(GError) error = nullptr;
  const bool answer = g_key_file_get_boolean(profile, kCustomBoolGroup, key, &error) != FALSE;
  if (error != nullptr) {
    LogError(key, error);
    return -1;
  }
  *value = answer;
  return 0;
}
