#include "fake_platform.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <regex>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "data_provider.h"
#include "devinfo.h"
#include "failing_allocator.h"
#include "kvreg.h"
#include "platform_setup.h"
#include "qlog.h"
#include "rootfs.h"

namespace fs = std::filesystem;

namespace {

// A folder of this process, below which the plug-in finds what it reads.
const fs::path& Root() {
  static std::string folder = testing::TempDir() + "morvith.XXXXXX";
  static const fs::path root = mkdtemp(folder.data());
  const fs::path resources = root.string() + ROOTFS_RESOURCES "/res";
  if (fs::create_directories(resources / "config")) {
    fs::create_symlink(TEST_CATALOGUES, resources / "locale");
    UseRoot(root);
    std::atexit([] { fs::remove_all(root); });
  }
  return root;
}

// Notified of what happens to the configuration.
const int g_notifications = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);

// The platform's services serve any thread.
std::mutex g_mutex;

bool Is(const char* setting, const std::string& value) {
  const auto found = Platform().settings.find(setting);
  return found != Platform().settings.end() && found->second == value;
}

bool IsUnusable(const char* key) {
  if (Is("throwing", key)) {
    throw 7;  // as no function of the platform may: not even an exception of the standard library
  }
  return Is("unusable", key);
}

}  // namespace

FakePlatform& Platform() {
  static FakePlatform platform;
  return platform;
}

std::string StoredValue(const char* key) {
  const std::lock_guard lock(g_mutex);
  const auto& registry = Platform().registry;
  const auto found = registry.find(key);
  return found == registry.end() ? "(nothing)" : found->second;
}

void ResetPlatform() {
  Platform() = FakePlatform();
  InstallKeyboardConfig(kKeyboardConfig);
}

void InstallKeyboardConfig(const std::string& contents) {
  const fs::path file = Root().string() + ROOTFS_RESOURCES "/res/config/hw_kbd_lang_config.json";
  fs::remove(file);
  KeyboardConfigOpens();
  if (contents != "missing") {
    std::ofstream(file, std::ios::binary) << contents;
    inotify_add_watch(g_notifications, file.c_str(), IN_OPEN | IN_CLOSE);
  }
}

int KeyboardConfigOpens() {
  int opens = 0;
  inotify_event event = {};
  while (read(g_notifications, &event, sizeof(event)) > 0) {
    opens += (event.mask & IN_OPEN) != 0 ? 1 : 0;
  }
  return opens;
}

extern "C" {

// Every slot gets a value of its own, to tell whether it was left alone.
void init_data_provider_cbs(data_provider_cbs* table) {
  auto* slots = reinterpret_cast<std::uintptr_t*>(table);
  for (std::uintptr_t i = 0; i < sizeof(*table) / sizeof(void*); ++i) {
    EXPECT_EQ(slots[i], 0u) << "the table was not zeroed";
    slots[i] = 0x1000 + i;
  }
}

int __qlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
  if (priority == QLOG_PRIORITY_INFO && !Is("log", "info")) {
    return 0;
  }
  const Refusals none(false);
  char text[4096];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  EXPECT_EQ(log_id, 0);
  EXPECT_STREQ(tag, "IME_QEL");
  std::string line = std::regex_replace(text, std::regex(R"(^\w+\.cpp: (\w+)\(\d+\) >)"), "$1:");
  line = std::regex_replace(line, std::regex(Root().string()), "");
  line = std::regex_replace(line, std::regex("\n"), "\\n");
  const std::lock_guard lock(g_mutex);
  Platform().log += std::string(1, "IWE"[priority - QLOG_PRIORITY_INFO]) + " " + line + "\n";
  return 0;
}

char* kvreg_get_str(const char* key) {
  const Refusals none(false);
  const std::lock_guard lock(g_mutex);
  const auto& registry = Platform().registry;
  const auto found = registry.find(key);
  return found == registry.end() || IsUnusable(key) ? nullptr : strdup(found->second.c_str());
}

int kvreg_set_str(const char* key, const char* value) {
  const Refusals none(false);
  const std::lock_guard lock(g_mutex);
  if (IsUnusable(key)) {
    return -1;
  }
  Platform().registry[key] = value;
  return 0;
}

int devinfo_get_value_int_array(int key, devinfo_int_array* out) {
  const Refusals none(false);
  EXPECT_EQ(key, 227);
  EXPECT_TRUE(out->count == 0 && out->values == nullptr) << "the record was not zeroed";
  ++Platform().language_requests;
  if (Is("languages", "fail")) {
    *out = {3, reinterpret_cast<int*>(out)};  // the values of a failure are not to be trusted
    return 7;
  }
  std::istringstream numbers(Platform().settings["languages"]);
  const std::vector<int> ids{std::istream_iterator<int>(numbers), {}};
  out->count = Is("count", "negative") ? -1 : static_cast<int>(ids.size());
  if (!Is("values", "null")) {
    out->values = static_cast<int*>(std::malloc((ids.size() + 1) * sizeof(int)));
    std::copy(ids.begin(), ids.end(), out->values);
  }
  return 0;
}

int devinfo_get_custom_bool(const char* key, bool* value) {
  EXPECT_STREQ(key, "com.velmora/featureconf/bt_profile_bt_smart_control");
  *value = !Is("bluetooth", "no");  // nor is this
  return Is("bluetooth", "fail") ? 7 : 0;
}

}  // extern "C"
