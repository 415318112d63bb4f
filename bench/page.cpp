// What a page costs a settings application, step by step, in a process that does nothing else and
// has nothing of what the library calls. Prints how much of the heap is held after each step.
#include <clocale>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include "data_provider.h"

void init_data_provider_cbs(data_provider_cbs* table) { *table = {}; }

namespace {

void* g_library = nullptr;
void* g_handle = nullptr;

// By a library that is empty and calls the same. It stays loaded.
void LoadWhatItCalls() { dlopen(BENCH_EMPTY, RTLD_NOW | RTLD_LOCAL); }

void Load() { g_library = dlopen(BENCH_PLUGIN, RTLD_NOW | RTLD_LOCAL); }

void CallEntry(const char* name) {
  reinterpret_cast<data_provider_entry>(dlsym(g_library, name))(&g_handle);
}

void Create() { CallEntry("create_provider"); }

void Unload() {
  CallEntry("delete_provider");
  dlclose(g_library);
}

void AskText(int (*get)(const char* key, char** text), const char* key) {
  char* text = nullptr;
  get(key, &text);
  static_cast<data_provider_cbs*>(g_handle)->release_string(text);
}

void AskPage() {
  const auto& provider = *static_cast<data_provider_cbs*>(g_handle);
  int choices = 0;
  AskText(provider.get_help_image_path, DATA_PROVIDER_PAGE);
  for (const char* key : {DATA_PROVIDER_PAGE, DATA_PROVIDER_LANGUAGE, DATA_PROVIDER_TYPE}) {
    AskText(provider.get_display_name, key);
    AskText(provider.get_help_text, key);
    AskText(provider.get_string, key);
    choices = 0;
    void** list = provider.get_list_items(key, &choices);
    provider.free_list_items(list, choices);
  }
  if (choices == 0) {
    std::abort();  // no types: another configuration was read, or none
  }
}

struct Step {
  const char* name;
  void (*take)();
  void (*prepare)() = [] {};
  std::size_t held = 0;
};

// An empty write marks for instruction_counter.c where a step begins and where it ends.
void Mark() {
  if (write(STDOUT_FILENO, "", 0) != 0) {
    std::abort();
  }
}

}  // namespace

int main() {
  // Relative, as the length of a path counts.
  if (chdir(BENCH_ROOT) != 0 || setenv("ROOTFS_DIR", ".", 1) != 0 ||
      setenv("LANGUAGE", "ko", 1) != 0 || std::setlocale(LC_ALL, "C_XX.UTF-8") == nullptr) {
    return EXIT_FAILURE;
  }
  Step steps[] = {
      {"load what it calls", LoadWhatItCalls},
      {"load", Load},
      {"create", Create},
      {"first page", AskPage},
      {"later page", AskPage, AskPage},  // the second tidies up the heap after the first
      {"unload", Unload}};
  const std::size_t before = mallinfo2().uordblks;
  for (Step& step : steps) {
    step.prepare();
    Mark();
    CALLGRIND_ZERO_STATS;
    step.take();
    CALLGRIND_DUMP_STATS_AT(step.name);
    Mark();
    step.held = mallinfo2().uordblks - before;
  }
  const char* separator = "{";
  for (const Step& step : steps) {
    std::printf("%s\"%s\": %zu", separator, step.name, step.held);
    separator = ", ";
  }
  return std::puts("}") < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
