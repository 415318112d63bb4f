// Under callgrind, counts the instructions of each request and its floor: one dump for each, named
// after it. The libraries that it calls into count too.
#include <string>

#include <gtest/gtest.h>
#include <valgrind/callgrind.h>

#include "requests.h"

namespace {

void CountWork(const char* configuration, const Request& request, Work work, const char* side) {
  // Counted is the last: the others pay what is paid once, and settle the heap.
  const int rounds = request.start == Library::kAsked ? 100 : 3;
  Device device(configuration, request.start);
  for (int round = 1; round <= rounds; ++round) {
    device.Prepare();
    if (round == rounds) {
      CALLGRIND_TOGGLE_COLLECT;
    }
    work(device);
    if (round == rounds) {
      CALLGRIND_TOGGLE_COLLECT;
    }
    device.TidyUp();
  }
  const std::string name = std::string(request.name) + "/" + configuration + "/" + side;
  CALLGRIND_DUMP_STATS_AT(name.c_str());
}

void Count(const char* configuration, const Request& request) {
  CountWork(configuration, request, request.ask, "request");
  CountWork(configuration, request, request.floor, "floor");
}

}  // namespace

int main() {
  for (const Request& request : kRequests) {
    Count("shipped", request);
  }
  Count("real_x1", kRequests[0]);
  Count("real_x10", kRequests[0]);
  return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
