#include "devinfo.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

#include <glib.h>

#include "qlog.h"

namespace {

constexpr char kLanguageGroup[] = "device";
constexpr char kLanguageKey[] = "system_language_ids";
constexpr char kCustomBoolGroup[] = "custom_bool";

struct GlibDeleter {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(gchar** strings) const { g_strfreev(strings); }
};
using KeyFile = std::unique_ptr<GKeyFile, GlibDeleter>;
using StringVector = std::unique_ptr<gchar*, GlibDeleter>;

void Log(int priority, const char* what, const char* reason) {
  __qlog_print(QLOG_ID_MAIN, priority, "DEVINFO", "%s: %s", what, reason);
}

// Logs and frees an error of GLib. Returns whether there was one.
bool Failed(const char* what, GError* raised) {
  const std::unique_ptr<GError, GlibDeleter> error(raised);
  if (error) {
    Log(QLOG_PRIORITY_ERROR, what, error->message);
  }
  return error != nullptr;
}

// Null, with the failure logged, when there is no profile to read.
KeyFile LoadProfile() {
  const char* path = std::getenv("DEVINFO_PROFILE");
  if (path == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "device profile", "DEVINFO_PROFILE is not set");
    return nullptr;
  }
  KeyFile profile(g_key_file_new());
  GError* error = nullptr;
  g_key_file_load_from_file(profile.get(), path, G_KEY_FILE_NONE, &error);
  return Failed(path, error) ? nullptr : std::move(profile);
}

bool ParseId(const char* text, int& id) {
  const char* const end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, id);
  return error == std::errc() && stop == end;
}

}  // namespace

int devinfo_get_value_int_array(int key, devinfo_int_array* out) {
  if (key != DEVINFO_KEY_SYS_LANG_IDS || out == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "integer array", "no such key");
    return -1;
  }
  const KeyFile profile = LoadProfile();
  if (!profile) {
    return -1;
  }
  GError* error = nullptr;
  gsize length = 0;
  const StringVector entries(
      g_key_file_get_string_list(profile.get(), kLanguageGroup, kLanguageKey, &length, &error));
  if (Failed(kLanguageKey, error)) {
    return -1;
  }
  int* values = static_cast<int*>(std::calloc(length + 1, sizeof(int)));
  if (values == nullptr) {
    Log(QLOG_PRIORITY_ERROR, kLanguageKey, "out of memory");
    return -1;
  }
  int count = 0;
  for (gsize i = 0; i < length; ++i) {
    const char* entry = g_strstrip(entries.get()[i]);
    if (ParseId(entry, values[count])) {
      ++count;
    } else {
      __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_WARNING, "DEVINFO",
                   "%s: entry %zu, '%s', skipped: not an integer", kLanguageKey, i + 1, entry);
    }
  }
  *out = {count, values};
  return 0;
}

int devinfo_get_custom_bool(const char* key, bool* value) {
  if (key == nullptr || value == nullptr) {
    Log(QLOG_PRIORITY_ERROR, "custom boolean", "a null key or out-pointer");
    return -1;
  }
  const KeyFile profile = LoadProfile();
  if (!profile) {
    return -1;
  }
  GError* error = nullptr;
  const bool answer = g_key_file_get_boolean(profile.get(), kCustomBoolGroup, key, &error) != FALSE;
  if (Failed(key, error)) {
    return -1;
  }
  *value = answer;
  return 0;
}
