#include "fake_platform.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <regex>

#include <gtest/gtest.h>
#include <unistd.h>

#include "data_provider.h"
#include "devinfo.h"
#include "failing_allocator.h"
#include "kvreg.h"
#include "qlog.h"

namespace fs = std::filesystem;

namespace {

constexpr char kCapability[] = "com.velmora/featureconf/bt_profile_bt_smart_control";

std::mutex g_mutex;

}  // namespace

FakePlatform& Platform() {
  static FakePlatform platform;
  return platform;
}

void ResetPlatform() { Platform() = FakePlatform(); }

void InstallKeyboardConfig(const std::optional<std::string>& contents) {
  static const fs::path root =
      testing::TempDir() + "morvith_device." + std::to_string(getpid());
  const fs::path resources = root / "usr/share/lib-morvith-tv/res";
  if (!fs::exists(resources)) {
    fs::create_directories(resources / "config");
    fs::create_symlink(TEST_CATALOGUES, resources / "locale");
    setenv("MORVITH_TEST_ROOT", root.c_str(), 1);
    std::atexit([] { fs::remove_all(root); });
  }
  const fs::path file = resources / "config/hw_kbd_lang_config.json";
  fs::remove(file);
  if (contents) {
    std::ofstream(file, std::ios::binary) << *contents;
  }
}

std::vector<std::string> FakePlatform::Logged(const std::string& begin) const {
  std::vector<std::string> lines;
  for (const std::string& line : log) {
    if (line.rfind(begin, 0) == 0) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::vector<std::string> FakePlatform::Complaints() const {
  std::vector<std::string> lines;
  for (const std::string& line : log) {
    if (line.rfind("I ", 0) != 0) {
      lines.push_back(line);
    }
  }
  return lines;
}

extern "C" {

// Every slot gets an address of its own, to tell whether it was left alone.
void init_data_provider_cbs(data_provider_cbs* table) {
  auto* slots = reinterpret_cast<std::uintptr_t*>(table);
  for (std::uintptr_t i = 0; i < sizeof(*table) / sizeof(void*); ++i) {
    EXPECT_EQ(slots[i], 0u) << "the table was not zeroed";
    slots[i] = 0x1000 + i;
  }
}

int __qlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
  const NoRefusals fake_is_exempt;
  char text[4096];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);

  static const std::regex kPrefix(R"((\w+\.cpp): (\w+)\(\d+\) > ([^]*))");
  std::cmatch parts;
  const std::lock_guard lock(g_mutex);
  EXPECT_EQ(log_id, 0);
  EXPECT_STREQ(tag, "IME_QEL");
  EXPECT_TRUE(std::regex_match(text, parts, kPrefix)) << text;
  const char* letter = priority == 4 ? "I" : priority == 5 ? "W" : priority == 6 ? "E" : "?";
  Platform().log.push_back(std::string(letter) + " " + parts[2].str() + ": " + parts[3].str());
  return 0;
}

char* kvreg_get_str(const char* key) {
  const auto& values = Platform().registry;
  const auto found = values.find(key);
  const bool readable = Platform().unreadable_keys.count(key) == 0;
  return readable && found != values.end() ? strdup(found->second.c_str()) : nullptr;
}

int kvreg_set_str(const char* key, const char* value) {
  const NoRefusals fake_is_exempt;
  Platform().writes.push_back(std::string(key) + "=" + value);
  if (Platform().unwritable_keys.count(key) != 0) {
    return -1;
  }
  Platform().registry[key] = value;
  return 0;
}

int devinfo_get_value_int_array(int key, devinfo_int_array* out) {
  const FakePlatform& platform = Platform();
  EXPECT_EQ(key, 227);
  EXPECT_TRUE(out->count == 0 && out->values == nullptr) << "the record was not zeroed";
  ++Platform().language_requests;
  if (platform.language_result != 0) {
    return platform.language_result;
  }
  const NoRefusals fake_is_exempt;
  const std::size_t size = platform.language_ids.size();
  out->count = platform.language_count.value_or(static_cast<int>(size));
  if (!platform.language_values_null) {
    out->values = static_cast<int*>(std::malloc((size + 1) * sizeof(int)));
    std::copy(platform.language_ids.begin(), platform.language_ids.end(), out->values);
  }
  return 0;
}

int devinfo_get_custom_bool(const char* key, bool* value) {
  EXPECT_STREQ(key, kCapability);
  *value = Platform().bluetooth.value_or(true);  // a failure's value is not to be trusted
  return Platform().bluetooth ? 0 : -1;
}

}  // extern "C"
