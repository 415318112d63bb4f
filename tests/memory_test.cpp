// What happens when memory runs out, at any allocation that the plug-in makes, and what is left
// over.
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <libintl.h>
#include <sys/prctl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

using Registry = std::map<std::string, std::string>;
const Registry kBefore = {{kLanguageKey, "ko_KR"}, {kTypeKey, "ko_KR.us_intl_ibm103i"}};
const Registry kLanguageWritten = {{kLanguageKey, "en_US"}, {kTypeKey, "ko_KR.us_intl_ibm103i"}};
const Registry kLanguageStored = {{kLanguageKey, "en_US"}, {kTypeKey, "en_US.us_intl_ibm103i"}};
const Registry kTypeStored = {{kLanguageKey, "ko_KR"}, {kTypeKey, "ko_KR.kr_ibm106"}};

// A request answers in full or says that it has nothing: never with a part.
enum Answer { kNothing, kInFull, kInPart };

Answer Text(const Plugin& plugin, int (*get)(const char*, char**), const char* key,
            const char* expected) {
  char* text = nullptr;
  get(key, &text);
  const Answer answer = text == nullptr                    ? kNothing
                        : std::strcmp(text, expected) == 0 ? kInFull
                                                           : kInPart;
  plugin.cbs->release_string(text);
  return answer;
}

Answer Choices(const Plugin& plugin, const char* key) {
  int count = 42;
  void** list = plugin.cbs->get_list_items(key, &count);
  Answer answer = list != nullptr ? kInFull : count == 0 ? kNothing : kInPart;
  for (int i = 0; list != nullptr && i < 2; ++i) {
    char* text = nullptr;
    char* value = nullptr;
    plugin.cbs->get_list_item_display_value(list[i], &text);
    plugin.cbs->get_list_item_string_value(list[i], &value);
    answer = count == 2 && text != nullptr && value != nullptr ? answer : kInPart;
  }
  plugin.cbs->free_list_items(list, count);
  return answer;
}

Answer Store(const Plugin& plugin, const char* key, const char* value, const Registry& stored) {
  plugin.cbs->set_string(key, value);
  return Platform().registry == stored ? kInFull : kNothing;
}

Answer Create(const Plugin& plugin) {
  {
    const NoRefusals exempt;
    bindtextdomain("lib-morvith-tv", "/");  // binding it again takes memory
  }
  void* handle = &handle;
  const int result = plugin.create_provider(&handle);
  const bool bound = std::strcmp(bindtextdomain("lib-morvith-tv", nullptr), "/") != 0;
  const Answer answer = result == 0 && handle != nullptr   ? bound ? kInFull : kNothing
                        : result == 1 && handle == nullptr ? kNothing
                                                           : kInPart;
  plugin.delete_provider(&handle);
  return answer;
}

using Request = Answer (*)(const Plugin& plugin);
constexpr std::pair<const char*, Request> kRequests[] = {
    {"create", Create},
    {"name",
     [](const Plugin& p) { return Text(p, p.cbs->get_display_name, kTypeKey, "Tastaturtyp"); }},
    {"help",
     [](const Plugin& p) {
       return Text(p, p.cbs->get_help_text, kTypeKey, "Typ der Tastatur festlegen.");
     }},
    {"help image",
     [](const Plugin& p) {
       return Text(p, p.cbs->get_help_image_path, kPageKey,
                   "/usr/share/lib-morvith-tv/res/edje/help_morvith.edj");
     }},
    {"module information",
     [](const Plugin& p) {
       return Text(p, p.cbs->get_module_info, "provider/owner", "rask.ovnel");
     }},
    {"languages", [](const Plugin& p) { return Choices(p, kLanguageKey); }},
    {"types", [](const Plugin& p) { return Choices(p, kTypeKey); }},
    {"language", [](const Plugin& p) { return Text(p, p.cbs->get_string, kLanguageKey, "ko_KR"); }},
    {"type",
     [](const Plugin& p) { return Text(p, p.cbs->get_string, kTypeKey, "ko_KR.us_intl_ibm103i"); }},
    {"set language",
     [](const Plugin& p) { return Store(p, kLanguageKey, "en_US", kLanguageStored); }},
    {"set type",
     [](const Plugin& p) { return Store(p, kTypeKey, "ko_KR.kr_ibm106", kTypeStored); }},
};

// The request in a library loaded anew, with its allocation number `index` refused, alone or with
// all that follow. Returns whether there was one.
bool IsRefused(Request request, std::size_t index, Refusal refusal) {
  ResetPlatform();
  Platform().registry = kBefore;
  const Plugin plugin;
  Platform().log.clear();
  RefuseAllocation(index, refusal);
  const Answer answer = request(plugin);
  const bool refused = EndRefusals();
  if (answer != kInFull) {
    EXPECT_EQ(answer, kNothing);
    EXPECT_NE(Platform().log.find("E "), std::string::npos) << Platform().log;
    EXPECT_TRUE(Platform().registry == kBefore || Platform().registry == kLanguageWritten);
  }
  EXPECT_EQ(request(plugin), kInFull) << "the next time";
  return refused;
}

// What the process holds, without what the test program holds for a moment.
struct Footprint {
  long blocks;
  long descriptors;
  long resident_pages;
};

Footprint Measure() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {LiveBlocks(), std::distance(begin(descriptors), end(descriptors)), resident};
}

class Memory : public testing::Test {
 protected:
  void SetUp() override {
    Conversation().Say("set_string language ko_KR");  // loads what a process keeps for its life
    Conversation().Say("ui-language de_DE");
  }
};

}  // namespace

TEST_F(Memory, FailsTheRequestLeaksNothingAndAnswersTheNext) {
  for (const auto& [name, request] : kRequests) {
    SCOPED_TRACE(name);
    for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
      long live = 0;
      bool refused = true;
      for (std::size_t index = 0; refused; ++index) {
        SCOPED_TRACE(index);
        refused = IsRefused(request, index, refusal);
        ResetPlatform();
        live = index == 0 ? LiveBlocks() : live;
        EXPECT_EQ(LiveBlocks(), live) << "blocks leaked";
      }
    }
  }
}

TEST_F(Memory, StaysFlatOverLoadsAndUnloads) {
  prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // the kernel may not round resident memory up
  const char* given = std::getenv("LOAD_CYCLES");
  const int cycles = given == nullptr ? 10'000 : std::stoi(given);
  Conversation().Say("ui-language de_DE");
  ASSERT_GT(cycles, 0);
  Footprint warm = {};
  for (int cycle = 0; cycle < cycles; ++cycle) {
    {
      ResetPlatform();
      const Plugin plugin;
      for (const auto& [name, request] : kRequests) {
        Platform().registry = kBefore;
        EXPECT_EQ(request(plugin), kInFull) << name;
      }
    }
    ResetPlatform();
    warm = cycle == cycles / 10 ? Measure() : warm;
  }
  const Footprint last = Measure();
  EXPECT_EQ(last.blocks, warm.blocks);
  EXPECT_EQ(last.descriptors, warm.descriptors);
  if (cycles >= 10'000) {  // with fewer there is a sanitizer or valgrind, which keeps what is freed
    EXPECT_LE(last.resident_pages, warm.resident_pages + 16) << "of " << warm.resident_pages;
  }
}
