// Requests where memory runs out, at any allocation that the plug-in makes; over many loads; and
// from many threads at once.
#include <algorithm>
#include <barrier>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

// A request, and what may be logged and answered in place of the whole answer: that there is
// nothing, and never a part.
struct Request {
  const char* order;
  std::set<std::string> refused;
};

const std::string kTextDomainNotBound =
    "E create_provider: text domain lib-morvith-tv not bound: texts stay untranslated\n";
const std::string kNoTable = "E create_provider: no memory for the callback table\n";
std::string OutOfMemory(const std::string& key, const std::string& failure) {
  return "E LogException: " + key + ": " + failure + ": std::bad_alloc\n";
}

const std::string kNotStored =
    OutOfMemory(DATA_PROVIDER_LANGUAGE, "not stored, or its type not with it");

const Request kRequests[] = {
    {"get_display_name type",
     {OutOfMemory(DATA_PROVIDER_TYPE, "nothing to hand out") + "0 (null)\n",
      "0 COM_TV_KEYBOARD_TYPE\n"}},  // of gettext in glibc 2.41, which is refused memory itself
    {"get_string type", {}},
    {"get_list_items language",
     {OutOfMemory(DATA_PROVIDER_LANGUAGE, "no list") + "no list, count 0\n"}},
    {"get_list_items type", {OutOfMemory(DATA_PROVIDER_TYPE, "no list") + "no list, count 0\n"}},
    {"create",
     {kTextDomainNotBound + "0 made\n", kNoTable + "1 none, bound\n",
      kTextDomainNotBound + kNoTable + "1 none\n"}},
    {"set_string type any", {}},
    {"set_string language en_US",
     {kNotStored + "1 ko_KR, ko_KR.us_intl_ibm103i\n",
      kNotStored + "1 en_US, ko_KR.us_intl_ibm103i\n"}},
};
constexpr std::size_t kReading = 4;  // so many of them change nothing

// The library is loaded, and has been asked nothing.
void Prepare(Conversation& conversation) {
  conversation.Say("ui-language de_DE");
  conversation.Say("stored language ko_KR");
  conversation.Say("stored type ko_KR.us_intl_ibm103i");
  conversation.Say("get_module_info");
}

std::string WholeAnswer(const Request& request) {
  Conversation conversation;
  Prepare(conversation);
  return conversation.Ask(request.order);
}

// The request in a library loaded anew, with its allocation number `index` refused, alone or with
// all that follow. Returns whether there was one.
bool IsRefused(const Request& request, const std::string& whole, std::size_t index,
               Refusal refusal) {
  Conversation conversation;
  Prepare(conversation);
  RefuseAllocation(index, refusal);
  const std::string answer = conversation.Ask(request.order);
  const bool refused = EndRefusals();
  const std::string said = Platform().log + answer;
  EXPECT_TRUE(said == whole || request.refused.contains(said)) << request.order << ": " << said;
  EXPECT_EQ(conversation.Ask(request.order), whole) << "the next time";
  return refused;
}

long ResidentPages() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident;
}

}  // namespace

// That nothing leaks on the way is for the leak sanitizer and valgrind to see.
TEST(Requests, FailWholeWhereMemoryIsRefusedAndAreAnsweredTheNextTime) {
  for (const Request& request : kRequests) {
    const std::string whole = WholeAnswer(request);
    for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
      std::size_t index = 0;
      while (IsRefused(request, whole, index, refusal)) {
        ++index;
      }
    }
  }
}

TEST(Requests, LeaveNothingBehindOverLoadsAndUnloads) {
  prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // the kernel may not round resident memory up
  const char* given = std::getenv("LOAD_CYCLES");
  const int cycles = given == nullptr ? TEST_LOAD_CYCLES : std::stoi(given);
  ASSERT_GT(cycles, 0);
  long warm = 0;
  for (int cycle = 0; cycle < cycles; ++cycle) {
    Conversation conversation;
    for (const Request& request : kRequests) {
      Prepare(conversation);
      conversation.Say(request.order);
    }
    warm = cycle == cycles / 10 ? ResidentPages() : warm;
  }
  if (cycles >= 10'000) {  // with fewer there is a sanitizer or valgrind, which keeps what is freed
    EXPECT_LE(ResidentPages(), warm + 16) << "of " << warm;
  }
}

TEST(Requests, OfThreadsAreAnsweredAlikeAndTheDeviceIsReadOnce) {
  std::vector<std::string> whole;
  std::ranges::transform(kRequests, std::back_inserter(whole), WholeAnswer);
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
          const std::size_t turn = (i + thread) % kReading;
          EXPECT_EQ(conversation.Ask(kRequests[turn].order), whole[turn]);
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
