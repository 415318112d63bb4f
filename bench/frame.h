// Shared code of the benchmark programs: runs each step and prints its cost.
#ifndef BENCH_FRAME_H
#define BENCH_FRAME_H

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

struct Step {
  const char* name;
  int (*take)();  // returns the number of things found; 0 is a failure
  int rounds = 1;
};

// For a step that takes microseconds.
constexpr int kManyRounds = 1000;

// Returns the peak memory of this process, in KiB, or 0 if it is unknown. getrusage() would
// include the memory of the program that started this one. A stream would use the heap.
inline long PeakMemory() {
  char status[4096] = {};
  const int file = open("/proc/self/status", O_RDONLY);
  const bool is_read = read(file, status, sizeof(status) - 1) > 0;
  close(file);
  const char* peak = is_read ? std::strstr(status, "VmHWM:") : nullptr;
  return peak == nullptr ? 0 : std::strtol(peak + std::strlen("VmHWM:"), nullptr, 10);
}

// Runs the steps and prints one JSON object for each. "time" is the mean processor time of a round,
// in microseconds. Under callgrind, also dumps the instructions of the last round, with the name of
// the step. Returns the exit status of the program.
inline int TakeSteps(std::initializer_list<Step> steps) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // a buffer would be in the heap
  const std::size_t heap_before = mallinfo2().uordblks;
  for (const Step& step : steps) {
    int found = 0;
    const std::clock_t begin = std::clock();
    for (int round = 0; round < step.rounds; ++round) {
      CALLGRIND_ZERO_STATS;
      found = step.take();
    }
    CALLGRIND_DUMP_STATS_AT(step.name);
    const std::clock_t end = std::clock();
    if (found == 0) {
      std::fprintf(stderr, "error: the step '%s' failed\n", step.name);
      return EXIT_FAILURE;
    }
    std::printf(
        "{\"step\": \"%s\", \"found\": %d, \"time\": %g, \"since start\": %ld, "
        "\"heap\": %zu, \"peak memory\": %ld}\n",
        step.name, found, static_cast<double>(end - begin) / step.rounds, end,
        mallinfo2().uordblks - heap_before, PeakMemory());
  }
  return EXIT_SUCCESS;
}

// Runs the two steps that are compared between libraries. `answer` returns the number of keyboard
// types that suit Korean and have a name.
inline int TakeAnswers(int (*answer)()) {
  return TakeSteps({{"first answer", answer}, {"repeated answer", answer, kManyRounds}});
}

#endif
