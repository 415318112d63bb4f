// Times each request and its floor, in random order. The processor's time counts, not the clock's.
#include <benchmark/benchmark.h>
#include <gtest/gtest.h>

#include "requests.h"

namespace {

void Time(benchmark::State& state, const char* configuration, const Request& request, Work work) {
  Device device(configuration, request.start);
  const bool prepares = request.start == Library::kLoaded;
  if (!prepares) {
    work(device);
  }
  for ([[maybe_unused]] auto _ : state) {
    if (prepares) {
      state.PauseTiming();
      device.Prepare();
      state.ResumeTiming();
    }
    work(device);
    if (prepares) {
      state.PauseTiming();
      device.TidyUp();
      state.ResumeTiming();
    }
  }
}

void Register(const char* configuration, const Request& request) {
  const std::string name = std::string(request.name) + "/" + configuration;
  for (const auto& [side, work] : {std::pair("request", request.ask), {"floor", request.floor}}) {
    benchmark::RegisterBenchmark((name + "/" + side).c_str(), Time, configuration, request, work);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  for (const char* configuration : kConfigurations) {
    for (const Request& request : kRequests) {
      Register(configuration, request);
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
