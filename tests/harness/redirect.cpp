// What the plug-in reads under /usr/share/lib-morvith-tv is read below $MORVITH_TEST_ROOT instead.
// Stands in front of the C library, within a test program or preloaded. Allocates nothing.
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>

namespace {

class Redirected {
 public:
  explicit Redirected(const char* path) {
    constexpr char kPrefix[] = "/usr/share/lib-morvith-tv/";
    const char* root = std::getenv("MORVITH_TEST_ROOT");
    const bool inside = std::strncmp(path, kPrefix, sizeof(kPrefix) - 1) == 0;
    std::snprintf(m_path, sizeof(m_path), "%s%s", inside && root != nullptr ? root : "", path);
  }

  const char* c_str() const { return m_path; }

 private:
  char m_path[PATH_MAX];
};

}  // namespace

extern "C" {

[[gnu::visibility("default")]] char* bindtextdomain(const char* domain, const char* directory) {
  const auto bind =
      reinterpret_cast<char* (*)(const char*, const char*)>(dlsym(RTLD_NEXT, "bindtextdomain"));
  return bind(domain, directory == nullptr ? nullptr : Redirected(directory).c_str());
}

[[gnu::visibility("default")]] int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return openat(AT_FDCWD, Redirected(path).c_str(), flags, mode);
}

}  // extern "C"
