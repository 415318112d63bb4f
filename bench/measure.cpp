// Times each request and its floor; under callgrind, counts the instructions of each as well, in a
// dump named after it. The libraries that they call into count too.
#include <iterator>

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include "platform_setup.h"
#include "requests.h"
#include "ui_language.h"

namespace {

void Measure(benchmark::State& state) {
  const Request& request = kRequests[state.range(0)];
  const bool is_floor = state.range(1) != 0;
  const std::string name = std::string(request.name) + (is_floor ? "/floor" : "");
  const Work work = is_floor ? request.floor : request.ask;
  const int first_rounds = request.prepare == nullptr ? 20 : 1;
  const bool counts = RUNNING_ON_VALGRIND != 0;

  state.SetLabel(name);
  UseUiLanguage("ko_KR");
  UseRoot(request.root);
  Library library;
  Load(library);
  for (int round = 0; round < first_rounds; ++round) {
    work(library);  // pays what is paid once, and settles the heap
  }
  for ([[maybe_unused]] auto _ : state) {
    if (request.prepare != nullptr) {
      state.PauseTiming();
      request.prepare(library);
      state.ResumeTiming();
    }
    if (counts) {
      CALLGRIND_ZERO_STATS;
    }
    work(library);
    if (counts) {
      CALLGRIND_DUMP_STATS_AT(name.c_str());
    }
  }
}

BENCHMARK(Measure)->ArgsProduct({benchmark::CreateDenseRange(0, std::ssize(kRequests) - 1, 1),
                                 {0, 1}});

}  // namespace

BENCHMARK_MAIN();
