// The input is the keyboard configuration, the whole file. The tables that KeyboardConfigManager
// makes of it, and what it logs, are held against a second reading of the document.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <json-glib/json-glib.h>
#include <sanitizer/lsan_interface.h>

#include "KeyboardConfigManager.h"
#include "qlog.h"

namespace {

struct Reading {
  decltype(KeyboardConfigManager::m_keyboard_name_map) names;
  decltype(KeyboardConfigManager::m_langlocal2keyboard_map) locales;
  std::string log;  // a letter for each line: w, a warning, or e, an error
};

std::string g_file;
std::string g_logged;
Reading g_expected;

// The next two take null for a node that is not there, and answer null for one of another type.

JsonNode* Member(JsonNode* node, const char* name) {
  const bool is_object = node != nullptr && JSON_NODE_HOLDS_OBJECT(node);
  return is_object ? json_object_get_member(json_node_get_object(node), name) : nullptr;
}

const char* Text(JsonNode* node) {
  return node != nullptr && JSON_NODE_HOLDS_VALUE(node) ? json_node_get_string(node) : nullptr;
}

// Those that have a text. Each other is worth a warning, and so is what is no array.
std::vector<JsonNode*> Elements(JsonNode* node, const char* (*text)(JsonNode*)) {
  std::vector<JsonNode*> elements(node == nullptr ? 0 : 1);
  if (node != nullptr && JSON_NODE_HOLDS_ARRAY(node)) {
    elements.resize(json_array_get_length(json_node_get_array(node)));
    for (guint i = 0; i < elements.size(); ++i) {
      elements[i] = json_array_get_element(json_node_get_array(node), i);
    }
  }
  g_expected.log.append(std::erase_if(elements, std::not_fn(text)), 'w');
  return elements;
}

const char* Locale(JsonNode* row) { return Text(Member(row, "lang_local")); }
const char* DisplayName(JsonNode* row) { return Text(Member(row, "display_name")); }
const char* Name(JsonNode* row) {
  return DisplayName(row) == nullptr ? nullptr : Text(Member(row, "name"));
}

void ReadDocument(JsonNode* root) {
  for (JsonNode* row : Elements(Member(root, "keyboard_name_map"), Name)) {
    g_expected.names.emplace(Name(row), DisplayName(row));
  }
  for (JsonNode* row : Elements(Member(root, "lang_local_keyboard_type_table"), Locale)) {
    const auto [types, is_new] = g_expected.locales.try_emplace(Locale(row));
    for (JsonNode* type : Elements(is_new ? Member(row, "keyboard_types") : nullptr, Text)) {
      types->second.emplace_back(Text(type));
    }
  }
}

}  // namespace

int __qlog_print(int /*log_id*/, int priority, const char* /*tag*/, const char* /*format*/, ...) {
  g_logged += priority == QLOG_PRIORITY_ERROR ? 'e' : 'w';
  return 0;
}

// In front of JSON-GLib's own, so that no file has to be written. What JSON-GLib itself loses, over
// malformed surrogate pairs or several documents in one file, is not for the library to free.
gboolean json_parser_load_from_file(JsonParser* parser, const gchar* /*path*/, GError** error) {
  const __lsan::ScopedDisabler no_leaks;
  const gboolean is_json =
      json_parser_load_from_data(parser, g_file.c_str(), std::ssize(g_file), error);
  g_expected.log = is_json == FALSE ? "e" : "";
  ReadDocument(is_json == FALSE ? nullptr : json_parser_get_root(parser));
  return is_json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  g_file.assign(reinterpret_cast<const char*>(data), size);
  g_logged.clear();
  g_expected = {{}, {}, "not read"};
  const KeyboardConfigManager manager;
  g_assert_true(manager.m_keyboard_name_map == g_expected.names);
  g_assert_true(manager.m_langlocal2keyboard_map == g_expected.locales);
  g_assert_cmpstr(g_logged.c_str(), ==, g_expected.log.c_str());
  return 0;
}
