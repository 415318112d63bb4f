// What a page costs a settings application, step by step, in a process that does nothing else.
// Prints how much of the heap is held after each. Where each begins and ends, tells who counts
// instructions: callgrind, and instruction_counter.c, which sees that nothing is written.
#include <cstdio>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include "platform_setup.h"
#include "requests.h"
#include "ui_language.h"

namespace {

void* g_library = nullptr;

// What the library calls, by one that is empty; it stays, as a settings application has it anyway.
void LoadWhatIsCalled(Library& /*library*/) { dlopen(BENCH_EMPTY, RTLD_NOW | RTLD_LOCAL); }

void LoadAlone(Library& /*library*/) { g_library = dlopen(BENCH_PLUGIN, RTLD_NOW | RTLD_LOCAL); }

void Unload(Library& library) {
  library.reset();
  dlclose(g_library);
}

constexpr struct {
  const char* name;
  Work take;
} kSteps[] = {{"load what it calls", LoadWhatIsCalled},
              {"load", LoadAlone},
              {"create", Load},
              {"first page", AskPage},
              {"later page", AskPage},
              {"unload", Unload}};

}  // namespace

int main() {
  UseUiLanguage("ko_KR");
  UseRoot(BENCH_ROOTS "/shipped");
  Library library;
  const std::size_t before = mallinfo2().uordblks;
  const char* separator = "{";
  for (const auto& step : kSteps) {
    [[maybe_unused]] ssize_t nothing = write(STDOUT_FILENO, "", 0);
    CALLGRIND_ZERO_STATS;
    step.take(library);
    CALLGRIND_DUMP_STATS_AT(step.name);
    nothing = write(STDOUT_FILENO, "", 0);
    std::printf("%s\"%s\": %zu", separator, step.name, mallinfo2().uordblks - before);
    separator = ", ";
  }
  std::puts("}");
}
