// What happens when memory runs out, at any allocation that the plug-in makes.
#include <cstring>

#include <gtest/gtest.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

constexpr char kLanguageKey[] = "db/ime/keyboard_language_name";
constexpr char kTypeKey[] = "db/ime/hardware_keyboard_name";

// Calls `request` with its first, second, ... allocation refused, alone or with all that follow,
// until it needs no more.
template <typename Request>
void RefuseEachAllocation(Request request) {
  for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
    bool refused = true;
    for (std::size_t index = 0; refused; ++index) {
      SCOPED_TRACE("allocation " + std::to_string(index));
      refused = request(index, refusal);
    }
  }
}

// -42 for no list with the count left alone.
int ListLength(const data_provider_cbs& cbs, const char* key) {
  int count = 42;
  void** list = cbs.get_list_items(key, &count);
  cbs.free_list_items(list, count);
  return list == nullptr ? -count : count;
}

int Store(const data_provider_cbs& cbs, const char* key) {
  return cbs.set_string(key, "ko_KR") + 1;
}

}  // namespace

TEST(Memory, CreatesATableOrAnswersOneAndHandsOutAStringOrNull) {
  ResetPlatform();
  const Plugin plugin;
  RefuseEachAllocation([&plugin](std::size_t index, Refusal refusal) {
    void* handle = &handle;
    char* text = nullptr;
    RefuseAllocation(index, refusal);
    const int result = plugin.create_provider(&handle);
    plugin.cbs->get_module_info("provider/owner", &text);
    const bool refused = EndRefusals();
    EXPECT_EQ(result, handle == nullptr ? 1 : 0);
    EXPECT_TRUE(text == nullptr ? refused : std::strcmp(text, "rask.ovnel") == 0);
    EXPECT_EQ(Platform().log.find("E ") != std::string::npos, refused);
    Platform().log.clear();
    plugin.cbs->release_string(text);
    plugin.delete_provider(&handle);
    return refused;
  });
}

// In a library that is loaded anew each time, so that the managers too are built under pressure.
TEST(Memory, FailsTheRequestLeaksNothingAndAnswersTheNext) {
  const struct {
    const char* key;
    int (*request)(const data_provider_cbs& cbs, const char* key);
  } cases[] = {{kTypeKey, ListLength}, {kLanguageKey, ListLength}, {kLanguageKey, Store}};
  for (const auto& c : cases) {
    long live = 0;
    RefuseEachAllocation([&c, &live](std::size_t index, Refusal refusal) {
      ResetPlatform();
      Platform().registry[kLanguageKey] = "ko_KR";
      bool refused = false;
      {
        const Plugin plugin;
        RefuseAllocation(index, refusal);
        const int length = c.request(*plugin.cbs, c.key);
        refused = EndRefusals();
        const bool reported = Platform().log.find("E ") != std::string::npos;
        EXPECT_TRUE(length == 2 || ((length == 0 || length == -42) && reported)) << length;
        EXPECT_EQ(c.request(*plugin.cbs, c.key), 2);
      }
      ResetPlatform();
      // The first rounds pay for what GLib and the loader keep for the life of the process.
      live = index == 1 && refusal == Refusal::kOnce ? LiveBlocks() : live;
      EXPECT_TRUE(index <= 1 || LiveBlocks() == live) << LiveBlocks() - live << " blocks leaked";
      return refused;
    });
  }
}

TEST(Memory, StaysFlatOverLoadsAndUnloads) {
  long live = 0;
  for (int i = 0; i < 200; ++i) {
    {
      Conversation conversation;
      conversation.Say("set_string language ko_KR");
      conversation.Say("get_list_items language");
      EXPECT_EQ(conversation.Say("get_list_items type").substr(0, 2), "2\n");
    }
    ResetPlatform();
    live = i == 1 ? LiveBlocks() : live;
  }
  EXPECT_EQ(LiveBlocks(), live);
}
