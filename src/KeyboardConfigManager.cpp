#include "KeyboardConfigManager.h"

#include <exception>

#include <dlfcn.h>
#include <json-glib/json-glib.h>

#include "log.h"

namespace {

constexpr char kConfigPath[] = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";
constexpr char kNameTable[] = "keyboard_name_map";
constexpr char kLocaleTable[] = "lang_local_keyboard_type_table";
constexpr char kKeyboardTypes[] = "keyboard_types";

using NameTable = std::unordered_map<std::string, std::string, TextHash>;
using LocaleTable = std::unordered_map<std::string, std::vector<std::string>>;

// The user data of an element callback. C++ exceptions must not unwind through JSON-GLib, which is
// C. So the callback stores an exception here and then skips the remaining elements.
template <typename Table>
struct Filling {
  const char* name;
  Table& table;
  std::exception_ptr failure;
};

// Keeps JSON-GLib loaded when this library is unloaded, because GObject can neither unregister a
// type nor register it twice. This library links JSON-GLib, so dlopen() finds JSON-GLib by its
// SONAME. dladdr() on a JSON-GLib function does not work here: the host may define a function of
// that name. This must run when the library is loaded: if dlopen() fails once for lack of memory,
// later calls of dlopen() fail too in glibc.
[[gnu::constructor]] void KeepJsonGlibLoaded() {
  dlopen("libjson-glib-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

// The next three functions return null if the node is null or has another type. In these cases the
// getters of JSON-GLib log a critical error, which ends a process that runs with
// G_DEBUG=fatal-criticals.

JsonObject* ObjectOf(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

JsonArray* ArrayOf(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_ARRAY(node) ? json_node_get_array(node) : nullptr;
}

const char* StringOf(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_VALUE(node) ? json_node_get_string(node) : nullptr;
}

// The keyboard types of an element of the locale table. Skips elements that are not strings.
std::vector<std::string> ReadKeyboardTypes(guint index, JsonObject* element) {
  std::vector<std::string> types;
  JsonArray* array = ArrayOf(json_object_get_member(element, kKeyboardTypes));
  const guint length = array == nullptr ? 0 : json_array_get_length(array);
  types.reserve(length);
  for (guint i = 0; i < length; ++i) {
    const char* type = StringOf(json_array_get_element(array, i));
    if (type == nullptr) {
      QEL_WARNING("%s[%u].%s[%u] skipped: not a string", kLocaleTable, index, kKeyboardTypes, i);
      continue;
    }
    types.emplace_back(type);
  }
  return types;
}

void ReadKeyboardName(guint index, JsonObject* element, NameTable& table) {
  const char* name = StringOf(json_object_get_member(element, "name"));
  const char* display_name = StringOf(json_object_get_member(element, "display_name"));
  if (name == nullptr || display_name == nullptr) {
    const char* missing = name == nullptr ? "name" : "display_name";
    QEL_WARNING("%s[%u] skipped: no string \"%s\"", kNameTable, index, missing);
    return;
  }
  table.emplace(name, display_name);  // does not replace the entry of an earlier element
}

void ReadLocale(guint index, JsonObject* element, LocaleTable& table) {
  const char* lang_local = StringOf(json_object_get_member(element, "lang_local"));
  if (lang_local == nullptr) {
    QEL_WARNING("%s[%u] skipped: no string \"lang_local\"", kLocaleTable, index);
    return;
  }
  const auto [row, is_new] = table.try_emplace(lang_local);
  if (is_new) {  // the first element of a locale wins
    row->second = ReadKeyboardTypes(index, element);
  }
}

template <typename Table>
void FillFromElement(guint index, JsonNode* node, gpointer user_data,
                     void (*read)(guint, JsonObject*, Table&)) noexcept {
  auto& filling = *static_cast<Filling<Table>*>(user_data);
  if (filling.failure) {
    return;
  }
  try {
    JsonObject* element = ObjectOf(node);
    if (element == nullptr) {
      QEL_WARNING("%s[%u] skipped: not an object", filling.name, index);
      return;
    }
    read(index, element, filling.table);
  } catch (...) {
    filling.failure = std::current_exception();
  }
}

void prase_keyboard_name_cb(JsonArray* /*array*/, guint index, JsonNode* node,
                            gpointer user_data) noexcept {
  FillFromElement(index, node, user_data, ReadKeyboardName);
}

void prase_langlocal2keyboard_cb(JsonArray* /*array*/, guint index, JsonNode* node,
                                 gpointer user_data) noexcept {
  FillFromElement(index, node, user_data, ReadLocale);
}

template <typename Table>
void FillTable(JsonObject* root, const char* name, JsonArrayForeach element_cb, Table& table) {
  JsonArray* array = ArrayOf(json_object_get_member(root, name));
  if (array == nullptr) {
    return;
  }
  table.reserve(json_array_get_length(array));
  Filling<Table> filling = {name, table, nullptr};
  json_array_foreach_element(array, element_cb, &filling);
  if (filling.failure) {
    std::rethrow_exception(filling.failure);
  }
}

}  // namespace

KeyboardConfigManager* KeyboardConfigManager::GetInstance() {
  static KeyboardConfigManager instance;
  return &instance;
}

KeyboardConfigManager::KeyboardConfigManager() { LoadKeyboardConfig(kConfigPath); }

KeyboardConfigManager::~KeyboardConfigManager() = default;

void KeyboardConfigManager::LoadKeyboardConfig(const std::string& path) {
  g_autoptr(JsonParser) parser = json_parser_new();
  g_autoptr(GError) error = nullptr;
  json_parser_load_from_file(parser, path.c_str(), &error);
  if (error != nullptr) {
    QEL_ERROR("Unable to parse '%s':%s", path.c_str(), error->message);
    return;
  }
  JsonObject* root = ObjectOf(json_parser_get_root(parser));
  if (root == nullptr) {
    return;
  }
  FillTable(root, kNameTable, prase_keyboard_name_cb, m_keyboard_name_map);
  FillTable(root, kLocaleTable, prase_langlocal2keyboard_cb, m_langlocal2keyboard_map);
}

bool KeyboardConfigManager::GetLangLocalKeyboards(const std::string& lang_local,
                                                  std::vector<std::string>& keyboards) const {
  const auto found = m_langlocal2keyboard_map.find(lang_local);
  if (found == m_langlocal2keyboard_map.end()) {
    return false;
  }
  keyboards = found->second;
  return true;
}

std::string KeyboardConfigManager::GetKeyboardDisplayName(const std::string& keyboard_type) const {
  const auto found = m_keyboard_name_map.find(keyboard_type);
  return found == m_keyboard_name_map.end() ? keyboard_type : found->second;
}
