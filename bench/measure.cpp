// Times each request and its floor; under callgrind, counts the instructions of each as well, in a
// dump named after it. The libraries that they call into count too.
#include <clocale>
#include <cstdlib>

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include "platform_setup.h"
#include "requests.h"

namespace {

void Measure(benchmark::State& state, const std::string& name, const Request& request, Work work) {
  const bool counts = RUNNING_ON_VALGRIND != 0;
  const int first_rounds = request.prepare == nullptr ? 20 : 1;
  Library library;
  UseRoot(request.root);
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

void Register(const std::string& name, const Request& request, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), Measure, name, request, work);
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C.UTF-8");
  setenv("LANGUAGE", "ko", 1);
  benchmark::Initialize(&argc, argv);
  for (const Request& request : kRequests) {
    Register(request.name, request, request.ask);
    Register(std::string(request.name) + "/floor", request, request.floor);
  }
  benchmark::RunSpecifiedBenchmarks();
}
