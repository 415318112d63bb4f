#include "fuzz_host.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sanitizer/allocator_interface.h>
#include <sanitizer/lsan_interface.h>

#include "fake_platform.h"

namespace {

constexpr std::size_t kTextLimit = 254;

// Read by libFuzzer after each input, and zeroed before.
[[gnu::section("__libfuzzer_extra_counters")]] std::uint8_t g_library_counters[1 << 13];

long g_live_blocks = 0;

class AbortOnFailure : public testing::EmptyTestEventListener {
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (result.failed()) {
      std::abort();
    }
  }
};

}  // namespace

extern "C" {

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  testing::UnitTest::GetInstance()->listeners().Append(new AbortOnFailure);
  __sanitizer_install_malloc_and_free_hooks(
      [](const volatile void* /*block*/, std::size_t /*size*/) { ++g_live_blocks; },
      [](const volatile void* /*block*/) { --g_live_blocks; });
  return 0;
}

// An input may load the library more than once.
void fuzz_take_coverage(const std::uint8_t* counters, std::size_t count) {
  ASSERT_LE(count, std::size(g_library_counters));
  for (std::size_t i = 0; i < count; ++i) {
    g_library_counters[i] =
        static_cast<std::uint8_t>(std::min(255, g_library_counters[i] + counters[i]));
  }
}

// In place of the address sanitizer's, which registers a function of its own with each of another's
// and never lets go of it: what every load and unload leaves behind would soon slow them down.
int __cxa_atexit(void (*function)(void*), void* argument, void* library) {
  static const auto kRegister =
      reinterpret_cast<decltype(&__cxa_atexit)>(dlsym(RTLD_NEXT, "__cxa_atexit"));
  return kRegister(function, argument, library);
}

}  // extern "C"

LeakCheck::LeakCheck() {
  Platform() = FakePlatform();
  m_before = g_live_blocks;
}

LeakCheck::~LeakCheck() {
  Platform() = FakePlatform();
  if (g_live_blocks > m_before && __lsan_do_recoverable_leak_check() != 0) {
    std::abort();
  }
}

std::optional<OpenList> OpenChoices(const data_provider_cbs& cbs, const char* key) {
  OpenList list = {nullptr, -42};
  list.items = cbs.get_list_items(key, &list.count);
  if (list.items == nullptr) {
    EXPECT_EQ(list.count, -42);
    return std::nullopt;
  }
  EXPECT_GE(list.count, 0);
  return list;
}

Choices ReadChoices(const data_provider_cbs& cbs, const OpenList& list) {
  Choices choices;
  for (int i = 0; i < list.count; ++i) {
    char* value = nullptr;
    char* text = nullptr;
    int number = -42;
    EXPECT_NE(list.items[i], nullptr) << i << " of " << list.count;
    EXPECT_EQ(cbs.get_list_item_string_value(list.items[i], &value), 0);
    EXPECT_EQ(cbs.get_list_item_display_value(list.items[i], &text), 0);
    EXPECT_EQ(cbs.get_list_item_int_value(list.items[i], &number), 0);
    EXPECT_TRUE(value != nullptr && text != nullptr && number == -42) << i << " of " << list.count;
    choices.push_back({value, text});
  }
  return choices;
}

std::optional<Choices> GetChoices(const data_provider_cbs& cbs, const char* key) {
  const std::optional<OpenList> list = OpenChoices(cbs, key);
  if (!list) {
    return std::nullopt;
  }
  const Choices choices = ReadChoices(cbs, *list);
  EXPECT_EQ(cbs.free_list_items(list->items, list->count), 0);
  return choices;
}

void CheckTypes(const Choices& types, const std::string& language) {
  const std::string prefix = (language + ".").substr(0, kTextLimit);
  for (const Choice& type : types) {
    EXPECT_EQ(type.value.substr(0, prefix.size()), prefix);
    EXPECT_LE(type.value.size(), kTextLimit);
    EXPECT_LE(type.text.size(), kTextLimit);
  }
}

void CheckStoredType(const Choices& types, const std::string& language, const std::string& stored) {
  if (types.empty()) {
    EXPECT_EQ(stored, language + ".us_intl_ibm103i");
    return;
  }
  EXPECT_EQ(stored.substr(0, language.size() + 1), language + ".");
  EXPECT_EQ(stored.substr(0, kTextLimit), types.front().value);
}
