// Requests where memory runs out, at any allocation that the plug-in makes; over many loads; and
// from many threads at once.
#include <barrier>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

// A request answers in full or says that it has nothing: never with a part.
struct Request {
  const char* order;
  const char* in_full;
  std::set<std::string> refused;
};

const Request kRequests[] = {
    {"get_display_name type", "0 Tastaturtyp\n", {"0 (null)\n"}},
    {"get_help_image_path page",
     "0 /usr/share/lib-morvith-tv/res/edje/help_morvith.edj\n",
     {"0 (null)\n"}},
    {"get_module_info provider/owner", "0 rask.ovnel\n", {"0 (null)\n"}},
    {"get_string type", "1 ko_KR.us_intl_ibm103i\n", {"1 (null)\n"}},
    {"get_list_items language",
     "2\nko_KR | SID_SETUP_LANGUAGE_KOREAN\nen_US | SID_SETUP_LANGUAGE_ENGLISH\n",
     {"no list, count 0\n"}},
    {"get_list_items type",
     "2\nko_KR.kr_ibm106 | Korean (106 keys)\n"
     "ko_KR.us_intl_ibm103i | English (US, International)\n",
     {"no list, count 0\n"}},
    {"create", "0 made, bound\n", {"0 made\n", "1 none\n", "1 none, bound\n"}},
    {"set_string type any", "1 ko_KR, any\n", {"1 ko_KR, ko_KR.us_intl_ibm103i\n"}},
    {"set_string language en_US",
     "1 en_US, en_US.us_intl_ibm103i\n",
     {"1 ko_KR, ko_KR.us_intl_ibm103i\n", "1 en_US, ko_KR.us_intl_ibm103i\n"}},
};
constexpr std::size_t kReading = 6;  // so many of them change nothing

// The library is loaded, and has been asked nothing.
void Prepare(Conversation& conversation) {
  conversation.Say("ui-language de_DE");
  conversation.Say("stored language ko_KR");
  conversation.Say("stored type ko_KR.us_intl_ibm103i");
  conversation.Say("get_module_info");
}

// The request in a library loaded anew, with its allocation number `index` refused, alone or with
// all that follow. Returns whether there was one.
bool IsRefused(const Request& request, std::size_t index, Refusal refusal) {
  Conversation conversation;
  Prepare(conversation);
  RefuseAllocation(index, refusal);
  const std::string answer = conversation.Ask(request.order);
  const bool refused = EndRefusals();
  if (answer != request.in_full) {
    EXPECT_TRUE(request.refused.contains(answer)) << request.order << " at " << index << answer;
    EXPECT_NE(Platform().log.find("E "), std::string::npos) << Platform().log;
  }
  EXPECT_EQ(conversation.Ask(request.order), request.in_full) << "the next time";
  return refused;
}

// What the process holds.
struct Footprint {
  long descriptors;
  long resident_pages;
};

Footprint Measure() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {std::distance(begin(descriptors), end(descriptors)), resident};
}

}  // namespace

// That nothing leaks on the way is for the leak sanitizer and valgrind to see.
TEST(Requests, FailWholeWhereMemoryIsRefusedAndAreAnsweredTheNextTime) {
  for (const Request& request : kRequests) {
    for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
      std::size_t index = 0;
      while (IsRefused(request, index, refusal)) {
        ++index;
      }
    }
  }
}

TEST(Requests, LeaveNothingBehindOverLoadsAndUnloads) {
  prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // the kernel may not round resident memory up
  const char* given = std::getenv("LOAD_CYCLES");
  const int cycles = given == nullptr ? 10'000 : std::stoi(given);
  ASSERT_GT(cycles, 0);
  Footprint warm = {};
  for (int cycle = 0; cycle < cycles; ++cycle) {
    {
      Conversation conversation;
      for (const Request& request : kRequests) {
        Prepare(conversation);
        EXPECT_EQ(conversation.Say(request.order), request.in_full);
      }
    }
    warm = cycle == cycles / 10 ? Measure() : warm;
  }
  const Footprint last = Measure();
  EXPECT_EQ(last.descriptors, warm.descriptors);
  if (cycles >= 10'000) {  // with fewer there is a sanitizer or valgrind, which keeps what is freed
    EXPECT_LE(last.resident_pages, warm.resident_pages + 16) << "of " << warm.resident_pages;
  }
}

TEST(Requests, OfThreadsAreAnsweredAlikeAndTheDeviceIsReadOnce) {
  for (int round = 0; round < 50; ++round) {
    constexpr std::size_t kThreads = 16;
    Conversation conversation;
    Prepare(conversation);
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        start.arrive_and_wait();
        for (std::size_t i = 0; i < kReading; ++i) {
          const Request& request = kRequests[(i + thread) % kReading];
          EXPECT_EQ(conversation.Ask(request.order), request.in_full);
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    EXPECT_EQ(Platform().language_requests, 1);
    EXPECT_EQ(KeyboardConfigOpens(), 1);
  }
}
