// Ownership of what GLib and JSON-GLib hand out.
#ifndef MENU_HOST_GLIB_PTR_H
#define MENU_HOST_GLIB_PTR_H

#include <memory>

#include <json-glib/json-glib.h>

struct GlibDeleter {
  void operator()(gchar* text) const { g_free(text); }
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
  void operator()(JsonNode* node) const { json_node_unref(node); }
  void operator()(JsonBuilder* builder) const { g_object_unref(builder); }
};

template <typename T>
using GlibPtr = std::unique_ptr<T, GlibDeleter>;

#endif
