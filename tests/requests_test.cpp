// Tests of requests under allocation failure, over unload cycles, and from many threads.
#include <algorithm>
#include <barrier>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

const std::vector<std::string> kRequests = {
    "get_display_name type",    "get_string type", "get_list_items language",
    "get_list_items type",      "create",          "set_string type any",
    "set_string language en_US"};
constexpr std::size_t kReadOnly = 4;  // the first four requests only read

// The allowed log lines and answers if an allocation fails. A partial answer is not allowed.
const std::regex kFailure(
    "E LogException: \\S+: (cannot answer|cannot list the choices|not stored completely): "
    "std::bad_alloc\n"
    "(0 \\(null\\)|no list, count 0|1 ko_KR.us_intl_ibm103i (ko_KR|en_US))\n|"
    "E create_provider: out of memory: .*\n1 null\n");

// Loads the library with a request that does not read the languages or the configuration.
void Prepare() {
  Begin();
  Say("stored language ko_KR");
  Say("stored type ko_KR.us_intl_ibm103i");
  Say("get_module_info");
}

std::string CompleteAnswer(const std::string& request) {
  Prepare();
  return Ask(request);
}

// Sends the request to a newly loaded library while allocations `first` to `end` - 1 fail (counted
// from 0), and again afterwards. Returns false if there was no allocation `first`.
bool FailAndRetry(const std::string& request, std::size_t first, std::size_t end) {
  const std::string complete = CompleteAnswer(request);
  Prepare();
  FailAllocations(first, end);
  std::string answer = Ask(request);
  const bool has_failed = EndFailures();
  answer.insert(0, Platform().log);
  EXPECT_TRUE(answer == complete || std::regex_match(answer, kFailure))
      << request << ", allocation " << first << ": " << answer;
  EXPECT_EQ(Ask(request), complete) << "when there is memory again";
  return has_failed;
}

long ResidentPages() {
  long size = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident;
}

}  // namespace

// The leak sanitizer and valgrind check that nothing leaks.
TEST(Requests, SurviveAllocationFailure) {
  std::size_t failures = 0;
  for (const std::string& request : kRequests) {
    for (std::size_t first = 0; FailAndRetry(request, first, first + 1); ++first) {
      FailAndRetry(request, first, SIZE_MAX);
      ++failures;
    }
  }
  EXPECT_GT(failures, kRequests.size());
}

// calloc() may return null for a size of 0. That is not an allocation failure.
TEST(Requests, AcceptNullFromCallocOfSizeZero) {
  Begin();
  Say("stored language fr_CA");
  EXPECT_EQ(Say("get_list_items type"), "empty list\n");
  FailAllocations(0, 1);
  EXPECT_EQ(Say("get_list_items type"), "no list, count 0\n");
  EXPECT_TRUE(EndFailures());
}

TEST(Requests, LeakNothingOverUnloadCycles) {
  prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // huge pages would make the figures inexact
  const char* given = std::getenv("LOAD_CYCLES");
  const int cycles = given == nullptr ? TEST_LOAD_CYCLES : std::stoi(given);
  ASSERT_GT(cycles, 0);
  long warm = 0;
  for (int cycle = 0; cycle < cycles; ++cycle) {
    Begin();
    for (const std::string& request : kRequests) {
      Say("stored language ko_KR");
      Say(request);
    }
    warm = cycle == cycles / 10 ? ResidentPages() : warm;
  }
  if (cycles >= 10'000) {  // with fewer cycles, the figures cannot be compared
    EXPECT_LE(ResidentPages(), warm + 16) << "of " << warm;
  }
}

TEST(Requests, FromManyThreadsReadTheDeviceOnce) {
  std::vector<std::string> complete;
  std::ranges::transform(kRequests, std::back_inserter(complete), CompleteAnswer);
  for (int round = 0; round < 50; ++round) {
    constexpr std::size_t kThreads = 16;
    Prepare();
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        start.arrive_and_wait();
        for (std::size_t i = 0; i < kReadOnly; ++i) {
          const std::size_t turn = (i + thread) % kReadOnly;
          EXPECT_EQ(Ask(kRequests[turn]), complete[turn]);
        }
      });
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(Ask("reads"), "1 1\n");
  }
}
