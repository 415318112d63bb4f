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

// What an element callback fills. An exception must not pass through JSON-GLib's frames: the
// callback leaves it here, and the elements that follow are not read.
template <typename Table>
struct Filling {
  Table& table;
  std::exception_ptr failure;
};

// GObject never forgets a registered type, nor can a type be registered twice. If JSON-GLib were
// unloaded together with this library, its types would be lost for the rest of the process. On
// loading, not on first use: a dlopen that is refused memory makes glibc fail the next ones too.
[[gnu::constructor]] void KeepJsonGlibLoaded() {
  Dl_info json_glib = {};
  if (dladdr(reinterpret_cast<void*>(json_parser_new), &json_glib) == 0 ||
      dlopen(json_glib.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE) == nullptr) {
    QEL_WARNING("JSON-GLib is not kept loaded: once unloaded, it cannot be used again");
  }
}

// The next three answer null for a node of another type; all but ArrayOf take null for a node that
// is not there.

JsonObject* ObjectOf(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

JsonArray* ArrayOf(JsonNode* node) {
  return JSON_NODE_HOLDS_ARRAY(node) ? json_node_get_array(node) : nullptr;
}

const char* StringOf(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_VALUE(node) ? json_node_get_string(node) : nullptr;
}

// The list of an element of the locale table, without what is no type id.
std::vector<std::string> ReadKeyboardTypes(guint index, JsonObject* element) {
  JsonNode* member = json_object_get_member(element, kKeyboardTypes);
  if (member == nullptr) {
    return {};
  }
  JsonArray* array = ArrayOf(member);
  if (array == nullptr) {
    QEL_WARNING("%s[%u].%s skipped: not an array", kLocaleTable, index, kKeyboardTypes);
    return {};
  }
  std::vector<std::string> types;
  const guint length = json_array_get_length(array);
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

void ReadKeyboardName(guint index, JsonNode* node, NameTable& table) {
  JsonObject* element = ObjectOf(node);
  if (element == nullptr) {
    QEL_WARNING("%s[%u] skipped: not an object", kNameTable, index);
    return;
  }
  const char* name = StringOf(json_object_get_member(element, "name"));
  const char* display_name = StringOf(json_object_get_member(element, "display_name"));
  if (name == nullptr || display_name == nullptr) {
    QEL_WARNING("%s[%u] skipped: no string \"%s\"", kNameTable, index,
                name == nullptr ? "name" : "display_name");
    return;
  }
  table.emplace(name, display_name);
}

void ReadLocale(guint index, JsonNode* node, LocaleTable& table) {
  JsonObject* element = ObjectOf(node);
  if (element == nullptr) {
    QEL_WARNING("%s[%u] skipped: not an object", kLocaleTable, index);
    return;
  }
  const char* lang_local = StringOf(json_object_get_member(element, "lang_local"));
  if (lang_local == nullptr) {
    QEL_WARNING("%s[%u] skipped: no string \"lang_local\"", kLocaleTable, index);
    return;
  }
  const auto [row, is_new] = table.try_emplace(lang_local);
  if (is_new) {
    row->second = ReadKeyboardTypes(index, element);
  }
}

template <typename Table>
void FillFromElement(guint index, JsonNode* element, gpointer user_data,
                     void (*read)(guint, JsonNode*, Table&)) noexcept {
  auto& filling = *static_cast<Filling<Table>*>(user_data);
  if (filling.failure) {
    return;
  }
  try {
    read(index, element, filling.table);
  } catch (...) {
    filling.failure = std::current_exception();
  }
}

void prase_keyboard_name_cb(JsonArray* /*array*/, guint index, JsonNode* element,
                            gpointer user_data) noexcept {
  FillFromElement(index, element, user_data, ReadKeyboardName);
}

void prase_langlocal2keyboard_cb(JsonArray* /*array*/, guint index, JsonNode* element,
                                 gpointer user_data) noexcept {
  FillFromElement(index, element, user_data, ReadLocale);
}

template <typename Table>
void FillTable(JsonObject* root, const char* name, JsonArrayForeach element_cb, Table& table) {
  JsonNode* member = json_object_get_member(root, name);
  if (member == nullptr) {
    return;
  }
  JsonArray* array = ArrayOf(member);
  if (array == nullptr) {
    QEL_WARNING("%s skipped: not an array", name);
    return;
  }
  table.reserve(json_array_get_length(array));
  Filling<Table> filling = {table, nullptr};
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
