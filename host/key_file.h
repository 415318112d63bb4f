// A GLib key file, such as a device profile.
#ifndef HOST_KEY_FILE_H
#define HOST_KEY_FILE_H

#include <memory>
#include <string>

#include <glib.h>

#include "error.h"

struct KeyFileDeleter {
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

// Throws HostError, with the reason, if `path` is none.
inline KeyFile LoadKeyFile(const std::string& path) {
  KeyFile file(g_key_file_new());
  g_autoptr(GError) error = nullptr;
  if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, &error) == FALSE) {
    throw HostError("'" + path + "' is no key file: " + error->message);
  }
  return file;
}

#endif
