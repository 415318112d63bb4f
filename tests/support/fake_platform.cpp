#include "fake_platform.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string_view>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <json-glib/json-glib.h>
#include <libintl.h>

#include "data_provider.h"
#include "devinfo.h"
#include "failing_allocator.h"
#include "kvreg.h"
#include "qlog.h"

#define JSON_GLIB(function) reinterpret_cast<decltype(&(function))>(JsonGlib(#function))

namespace {

constexpr std::string_view kTextDomain = "lib-morvith-tv";

bool Is(const char* setting, const std::string& value) {
  const auto found = Platform().settings.find(setting);
  return found != Platform().settings.end() && found->second == value;
}

bool IsUnusable(const char* key) {
  if (Is("throwing", key)) {
    throw 7;  // not an exception of the standard library
  }
  return Is("unusable", key);
}

int DevinfoResult() { return std::stoi(Platform().settings.at("devinfo")); }

// The program does not link JSON-GLib: the plug-in must load it and keep it loaded.
void* JsonGlib(const char* function) {
  void* library = dlopen("libjson-glib-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD);
  void* address = dlsym(library, function);
  dlclose(library);
  return address;
}

// Checks that the file and line in `text` contain a log statement, and adds `text` to the log.
void AddToLog(int priority, const char* text) {
  std::cmatch parts;
  const std::regex form(R"((\w+\.cpp): (\w+)\((\d+)\) > ([\s\S]*))");
  ASSERT_TRUE(std::regex_match(text, parts, form)) << text;
  std::ifstream source(TEST_SOURCES "/" + parts.str(1));
  std::string statement;
  for (int line = std::stoi(parts[3]); line > 0; --line) {
    std::getline(source, statement);
  }
  EXPECT_NE(statement.find("QEL_"), std::string::npos) << text << " is not from " << statement;
  const std::string line = std::regex_replace(parts.format("$2: $4"), std::regex("\n"), "\\n");
  Platform().log += std::string(1, "IWE"[priority - QLOG_PRIORITY_INFO]) + " " + line + "\n";
}

}  // namespace

FakePlatform& Platform() {
  static FakePlatform platform;
  return platform;
}

extern "C" {

// Gives each slot a different value, so that a test can see which slots the provider wrote.
void init_data_provider_cbs(data_provider_cbs* table) {
  auto* slots = reinterpret_cast<std::uintptr_t*>(table);
  for (std::uintptr_t i = 0; i < sizeof(*table) / sizeof(void*); ++i) {
    EXPECT_EQ(slots[i], 0u) << "the table is not zeroed";
    slots[i] = 0x1000 + i;
  }
  Platform().on_init();
}

int __qlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
  if (priority == QLOG_PRIORITY_INFO && !Is("log", "info")) {
    return 0;
  }
  const AllowFailures none(false);
  char text[4096];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  EXPECT_EQ(log_id, 0);
  EXPECT_STREQ(tag, "IME_QEL");
  AddToLog(priority, text);
  return 0;
}

char* kvreg_get_str(const char* key) {
  const AllowFailures none(false);
  const auto& registry = Platform().registry;
  const auto found = registry.find(key);
  return IsUnusable(key) || found == registry.end() ? nullptr : strdup(found->second.c_str());
}

int kvreg_set_str(const char* key, const char* value) {
  const AllowFailures none(false);
  if (IsUnusable(key)) {
    return -1;
  }
  Platform().registry[key] = value;
  return 0;
}

int devinfo_get_value_int_array(int key, devinfo_int_array* out) {
  const AllowFailures none(false);
  EXPECT_EQ(key, 227);
  EXPECT_TRUE(out->count == 0 && out->values == nullptr) << "the record is not zeroed";
  ++Platform().language_reads;
  std::istringstream numbers(Platform().settings.at("languages"));
  const std::vector<int> ids{std::istream_iterator<int>(numbers), {}};
  out->count = Is("array", "negative") ? -1 : static_cast<int>(ids.size());
  if (DevinfoResult() != 0) {
    out->values = &out->count;  // must be neither read nor freed
  } else if (!Is("array", "null")) {
    out->values = static_cast<int*>(std::calloc(ids.size() + 1, sizeof(int)));
    std::ranges::copy(ids, out->values);
  }
  return DevinfoResult();
}

int devinfo_get_custom_bool(const char* key, bool* value) {
  EXPECT_STREQ(key, "com.velmora/featureconf/bt_profile_bt_smart_control");
  *value = !Is("bluetooth", "no");  // must be ignored on failure
  return DevinfoResult();
}

// JSON-GLib calls the next two functions with other domains.

char* bindtextdomain(const char* domain, const char* directory) {
  if (domain == kTextDomain) {
    Platform().catalogues = directory;
  }
  return Is("unusable", "text-domain") ? nullptr : const_cast<char*>(directory);
}

char* dgettext(const char* domain, const char* id) {
  if (domain != kTextDomain) {
    return const_cast<char*>(id);
  }
  const AllowFailures none(false);
  static thread_local std::string translation;
  translation = "translated " + std::string(id);
  return translation.data();
}

// A host may define this function, for example if it links JSON-GLib statically.
JsonParser* json_parser_new() {
  const AllowFailures none(false);
  return JSON_GLIB(json_parser_new)();
}

gboolean json_parser_load_from_file(JsonParser* parser, const gchar* path, GError** error) {
  const AllowFailures none(false);
  EXPECT_STREQ(path, "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json");
  ++Platform().config_reads;
  const std::string& config = Platform().settings.at("config");
  return JSON_GLIB(json_parser_load_from_data)(parser, config.data(), std::ssize(config), error);
}

}  // extern "C"
