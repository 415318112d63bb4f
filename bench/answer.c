#include "answer.h"

#include <stdio.h>
#include <time.h>
#include <valgrind/callgrind.h>

// Nanoseconds of the processor that this process has used.
static double processor_time(void) {
  struct timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return (double)now.tv_sec * 1e9 + (double)now.tv_nsec;
}

static long peak_memory_kib(void) {
  char line[256];
  long peak = 0;
  FILE* status = fopen("/proc/self/status", "r");
  while (fgets(line, sizeof(line), status) != NULL) {
    sscanf(line, "VmHWM: %ld", &peak);
  }
  fclose(status);
  return peak;
}

int measure_answers(int (*answer)(void), int repetitions) {
  const double loaded = processor_time();
  CALLGRIND_ZERO_STATS;
  const int types = answer();
  CALLGRIND_DUMP_STATS_AT("first answer");
  const double answered = processor_time();
  const long peak = peak_memory_kib();
  for (int i = 0; i < repetitions; ++i) {
    answer();  // one of them tidies up the heap after the first
  }
  const double begin = processor_time();
  for (int i = 0; i < repetitions; ++i) {
    answer();
  }
  const double repeated = (processor_time() - begin) / repetitions;
  printf("{\"types\": %d, \"first\": %.0f, \"since_start\": %.0f, ", types, answered - loaded,
         answered);
  return printf("\"repeated\": %.1f, \"peak\": %ld}\n", repeated, peak) < 0;
}
