#include <cstring>

#include <dlfcn.h>

#include "failing_allocator.h"
#include "fake_platform.h"
#include "plugin.h"

namespace {

// A list when memory may be refused: complete, or none at all.
void ExpectListOrFailure(const Plugin& plugin, const char* key, std::size_t size) {
  int count = 42;
  void** list = plugin.cbs->get_list_items(key, &count);
  const NoRefusals test_is_exempt;
  if (list == nullptr) {
    EXPECT_TRUE(count == 0 || count == 42) << count;  // 42: the registry was refused memory
    EXPECT_FALSE(Platform().Complaints().empty());
    return;
  }
  EXPECT_EQ(count, static_cast<int>(size));
  for (int i = 0; i < count; ++i) {
    const auto* item = static_cast<char**>(list[i]);
    EXPECT_TRUE(item != nullptr && item[0] != nullptr && item[1] != nullptr);
  }
  plugin.cbs->free_list_items(list, count);
}

}  // namespace

TEST_F(PluginTest, CreatesATableOrAnswersOne) {
  const Plugin plugin;
  RefuseEachAllocation([&plugin] {
    const long before = LiveBlocks();
    void* handle = &handle;
    const int result = plugin.create_provider(&handle);
    EXPECT_EQ(result, handle == nullptr ? 1 : 0);
    plugin.delete_provider(&handle);
    const NoRefusals test_is_exempt;
    Platform().log = std::vector<std::string>();
    EXPECT_LE(LiveBlocks(), before + 1);  // gettext keeps the binding
  });
}

TEST_F(PluginTest, HandsOutAStringOrNull) {
  const Plugin plugin;
  RefuseEachAllocation([&plugin] {
    char* text = nullptr;
    plugin.cbs->get_module_info("provider/owner", &text);
    const NoRefusals test_is_exempt;
    EXPECT_TRUE(text == nullptr || std::strcmp(text, "rask.ovnel") == 0);
    EXPECT_EQ(Platform().Complaints().size(), text == nullptr ? 1u : 0u);
    plugin.cbs->release_string(text);
    Platform().log.clear();
  });
}

// In a library that is loaded anew each time, so that the managers are built under pressure too.
TEST_F(PluginTest, RecoversWhenMemoryRanOut) {
  const struct {
    const char* name;
    void (*request)(const Plugin& plugin);
  } cases[] = {
      {"languages", [](const Plugin& plugin) { ExpectListOrFailure(plugin, kLanguage, 2); }},
      {"types", [](const Plugin& plugin) { ExpectListOrFailure(plugin, kType, 2); }},
      {"language", [](const Plugin& plugin) { plugin.cbs->set_string(kLanguage, "ko_KR"); }},
      {"type", [](const Plugin& plugin) { plugin.cbs->set_string(kType, "ko_KR.kr_ibm106"); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    long live = 0;
    for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
      bool refused = true;
      for (std::size_t index = 0; refused; ++index) {
        ResetPlatform();
        Platform().language_ids = {0, 1};
        Platform().registry[kLanguage] = "ko_KR";
        {
          const Plugin plugin;
          RefuseAllocation(index, refusal);
          c.request(plugin);
          refused = EndRefusals();
          EXPECT_EQ(plugin.List(kLanguage).size(), 2u);
          EXPECT_EQ(plugin.List(kType).size(), 2u);
          plugin.cbs->set_string(kLanguage, "ko_KR");
          EXPECT_EQ(Platform().registry[kType], "ko_KR.kr_ibm106");
        }
        ResetPlatform();
        // The first round pays for what GLib and the loader keep for the life of the process.
        if (index == 1 && refusal == Refusal::kOnce) {
          live = LiveBlocks();
        }
        if (index > 1) {
          EXPECT_EQ(LiveBlocks(), live) << "allocation " << index;
        }
      }
    }
  }
}
