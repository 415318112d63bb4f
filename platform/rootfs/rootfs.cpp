#include "rootfs.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <dlfcn.h>
#include <json-glib/json-glib.h>
#include <libintl.h>

namespace {

bool IsResource(std::string_view path) {
  constexpr std::string_view kFolder = ROOTFS_RESOURCES;
  return path.starts_with(kFolder) &&
         (path.size() == kFolder.size() || path[kFolder.size()] == '/');
}

std::string_view Root() {
  const char* variable = std::getenv("ROOTFS_DIR");
  std::string_view root = variable == nullptr ? "" : variable;
  while (root.ends_with('/')) {
    root.remove_suffix(1);
  }
  return root;
}

// A translated path. A path that is too long is truncated, so opening it fails. Null stays null.
class Located {
 public:
  explicit Located(const char* path) : m_is_null(path == nullptr) {
    if (!m_is_null) {
      rootfs_locate(path, m_path, sizeof(m_path));
    }
  }
  const char* c_str() const { return m_is_null ? nullptr : m_path; }

 private:
  bool m_is_null;
  char m_path[PATH_MAX];
};

// Returns the function that `caller` would call without this stand-in. RTLD_NEXT does not find
// JSON-GLib if the program loaded it with RTLD_LOCAL, as a dependency of the caller. Then dlsym()
// with the caller's handle finds it. In glibc, the handle of a library is its link map.
void* Original(const char* function, const void* caller) {
  void* original = dlsym(RTLD_NEXT, function);
  if (original != nullptr) {
    return original;
  }
  Dl_info library = {};
  void* handle = nullptr;
  dladdr1(caller, &library, &handle, RTLD_DL_LINKMAP);
  return dlsym(handle, function);
}

}  // namespace

int rootfs_locate(const char* path, char* located, size_t size) {
  const std::string_view root = IsResource(path) ? Root() : "";
  const int length =
      std::snprintf(located, size, "%.*s%s", static_cast<int>(root.size()), root.data(), path);
  return length >= 0 && static_cast<size_t>(length) < size ? 0 : -1;
}

extern "C" {

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): glibc's names are reserved
[[gnu::visibility("default")]] char* bindtextdomain(const char* domain, const char* directory) {
  const auto bind = reinterpret_cast<decltype(&bindtextdomain)>(dlsym(RTLD_NEXT, "bindtextdomain"));
  return bind(domain, Located(directory).c_str());
}

[[gnu::visibility("default")]] gboolean json_parser_load_from_file(JsonParser* parser,
                                                                   const gchar* path,
                                                                   GError** error) {
  const auto load = reinterpret_cast<decltype(&json_parser_load_from_file)>(
      Original("json_parser_load_from_file", __builtin_return_address(0)));
  return load(parser, Located(path).c_str(), error);
}

}  // extern "C"
