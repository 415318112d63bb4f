// What happens when memory runs out, at any allocation that the plug-in makes, and what is left
// over.
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>
#include <libintl.h>
#include <sys/prctl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

using Registry = std::map<std::string, std::string>;
Registry Holding(const char* language, const char* type) {
  return {{DATA_PROVIDER_LANGUAGE, language}, {DATA_PROVIDER_TYPE, type}};
}
const Registry kBefore = Holding("ko_KR", "ko_KR.us_intl_ibm103i");
const Registry kLanguageWritten = Holding("en_US", "ko_KR.us_intl_ibm103i");
const Registry kLanguageStored = Holding("en_US", "en_US.us_intl_ibm103i");
const Registry kTypeStored = Holding("ko_KR", "ko_KR.kr_ibm106");

// A request answers in full or says that it has nothing: never with a part.
enum Answer { kNothing, kInFull, kInPart };

using Request = std::function<Answer(const Provider& provider)>;
using StringSlot = int (*data_provider_cbs::*)(const char* key, char** value);

Request Text(StringSlot slot, const char* key, const char* expected) {
  return [=](const Provider& provider) {
    char* text = nullptr;
    (provider.table().*slot)(key, &text);
    const bool is_whole = text != nullptr && std::strcmp(text, expected) == 0;
    const Answer answer = text == nullptr ? kNothing : is_whole ? kInFull : kInPart;
    provider.table().release_string(text);
    return answer;
  };
}

Request Choices(const char* key) {
  return [=](const Provider& provider) {
    int count = 42;
    void** list = provider.table().get_list_items(key, &count);
    Answer answer = list != nullptr && count == 2 ? kInFull : kInPart;
    for (int i = 0; answer == kInFull && i < count; ++i) {
      char* text = nullptr;
      char* value = nullptr;
      provider.table().get_list_item_display_value(list[i], &text);
      provider.table().get_list_item_string_value(list[i], &value);
      answer = text != nullptr && value != nullptr ? kInFull : kInPart;
    }
    provider.table().free_list_items(list, count);
    return list == nullptr && count == 0 ? kNothing : answer;
  };
}

Request Store(const char* key, const char* value, const Registry& stored) {
  return [=](const Provider& provider) {
    provider.table().set_string(key, value);
    return Platform().registry == stored ? kInFull : kNothing;
  };
}

Answer Create(const Provider& provider) {
  {
    const NoRefusals exempt;
    bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, "/");  // binding it again takes memory
  }
  void* handle = &handle;
  const int result = provider.create_provider()(&handle);
  const bool bound = std::strcmp(bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, nullptr), "/") != 0;
  const bool made = result == 0 && handle != nullptr;
  const bool refused = result == 1 && handle == nullptr;
  provider.delete_provider()(&handle);
  return made && bound ? kInFull : made || refused ? kNothing : kInPart;
}

const std::pair<const char*, Request> kRequests[] = {
    {"create", Create},
    {"name", Text(&data_provider_cbs::get_display_name, DATA_PROVIDER_TYPE, "Tastaturtyp")},
    {"help image", Text(&data_provider_cbs::get_help_image_path, DATA_PROVIDER_PAGE,
                        "/usr/share/lib-morvith-tv/res/edje/help_morvith.edj")},
    {"module information",
     Text(&data_provider_cbs::get_module_info, DATA_PROVIDER_OWNER, "rask.ovnel")},
    {"type", Text(&data_provider_cbs::get_string, DATA_PROVIDER_TYPE, "ko_KR.us_intl_ibm103i")},
    {"languages", Choices(DATA_PROVIDER_LANGUAGE)},
    {"types", Choices(DATA_PROVIDER_TYPE)},
    {"set language", Store(DATA_PROVIDER_LANGUAGE, "en_US", kLanguageStored)},
    {"set type", Store(DATA_PROVIDER_TYPE, "ko_KR.kr_ibm106", kTypeStored)},
};

// The request in a library loaded anew, with its allocation number `index` refused, alone or with
// all that follow. Returns whether there was one.
bool IsRefused(const Request& request, std::size_t index, Refusal refusal) {
  ResetPlatform();
  Platform().registry = kBefore;
  const Provider provider(PluginUnderTest());
  Platform().log.clear();
  RefuseAllocation(index, refusal);
  const Answer answer = request(provider);
  const bool refused = EndRefusals();
  if (answer != kInFull) {
    EXPECT_EQ(answer, kNothing);
    EXPECT_NE(Platform().log.find("E "), std::string::npos) << Platform().log;
    EXPECT_TRUE(Platform().registry == kBefore || Platform().registry == kLanguageWritten);
  }
  EXPECT_EQ(request(provider), kInFull) << "the next time";
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
    for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
      long live = 0;
      bool refused = true;
      for (std::size_t index = 0; refused; ++index) {
        SCOPED_TRACE(testing::Message() << name << ", allocation " << index);
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
  ASSERT_GT(cycles, 0);
  Footprint warm = {};
  for (int cycle = 0; cycle < cycles; ++cycle) {
    {
      const Conversation conversation;
      setenv("LANGUAGE", "de_DE", 1);
      const Provider provider(PluginUnderTest());
      for (const auto& [name, request] : kRequests) {
        Platform().registry = kBefore;
        EXPECT_EQ(request(provider), kInFull) << name;
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
