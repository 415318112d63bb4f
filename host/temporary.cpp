#include "temporary.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <glib.h>

#include "error.h"
#include "text.h"

ScopedVariable::ScopedVariable(const char* name, const std::string& value) : m_name(name) {
  if (const char* old_value = std::getenv(name)) {
    m_old_value = old_value;
  }
  setenv(name, value.c_str(), 1);
}

ScopedVariable::~ScopedVariable() {
  if (m_old_value) {
    setenv(m_name, m_old_value->c_str(), 1);
  } else {
    unsetenv(m_name);
  }
}

TemporaryFolder::TemporaryFolder() {
  g_autoptr(GError) error = nullptr;
  g_autofree gchar* path = g_dir_make_tmp("menu-host-XXXXXX", &error);
  if (path == nullptr) {
    throw HostError(std::string("cannot create a temporary folder: ") + error->message +
                    "; set TMPDIR to a writable folder");
  }
  m_path = path;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(m_path, error);
}

TemporaryProfile::TemporaryProfile(const std::string& contents) {
  g_autoptr(GError) error = nullptr;
  if (g_file_set_contents(m_file.c_str(), contents.c_str(), -1, &error) == FALSE) {
    throw HostError(std::string("cannot write a temporary device profile: ") + error->message);
  }
}
