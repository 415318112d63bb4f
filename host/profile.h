// Reads a device profile, which is a GLib key file.
#ifndef HOST_PROFILE_H
#define HOST_PROFILE_H

#include <memory>
#include <string>

#include <glib.h>

#include "error.h"
#include "platform_setup.h"
#include "text.h"

struct KeyFileDeleter {
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

// Reads the device profile at `path`. Throws HostError with the reason if it cannot be opened or
// is not a key file.
inline KeyFile LoadProfile(const std::string& path) {
  RefuseSpecialFile(path);
  KeyFile file(g_key_file_new());
  g_autoptr(GError) error = nullptr;
  if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, &error) == FALSE) {
    throw HostError("cannot read the device profile " + Quoted(path) + ": " + error->message);
  }
  return file;
}

#endif
