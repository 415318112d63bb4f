// Fuzzes the code that reads the keyboard configuration. The input is the whole file.
#include <cstdint>
#include <string>

#include <json-glib/json-glib.h>
#include <sanitizer/lsan_interface.h>

#include "KeyboardConfigManager.h"
#include "qlog.h"

namespace {

std::string g_file;
bool g_is_json = false;
int g_errors = 0;

}  // namespace

int __qlog_print(int /*log_id*/, int priority, const char* /*tag*/, const char* /*format*/, ...) {
  g_errors += priority == QLOG_PRIORITY_ERROR ? 1 : 0;
  return 0;
}

// Replaces the function of JSON-GLib, so that no file is needed. JSON-GLib leaks memory for a
// malformed surrogate pair and for several roots in a file; the library cannot prevent that.
gboolean json_parser_load_from_file(JsonParser* parser, const gchar* /*path*/, GError** error) {
  const __lsan::ScopedDisabler no_leaks;
  const auto size = std::ssize(g_file);
  g_is_json = json_parser_load_from_data(parser, g_file.c_str(), size, error) != FALSE;
  return g_is_json ? TRUE : FALSE;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  g_file.assign(reinterpret_cast<const char*>(data), size);
  g_errors = 0;
  const KeyboardConfigManager manager;
  const bool is_empty =
      manager.m_keyboard_name_map.empty() && manager.m_langlocal2keyboard_map.empty();
  g_assert_true(g_is_json ? g_errors == 0 : g_errors == 1 && is_empty);
  return 0;
}
