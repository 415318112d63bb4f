#include "failing_allocator.h"

#include <cstring>

#include <dlfcn.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);

// The heap of the address sanitizer, if the program is built with it.
[[gnu::weak]] void* __interceptor_malloc(std::size_t size);
[[gnu::weak]] void* __interceptor_calloc(std::size_t count, std::size_t size);
}

#define ALLOCATE(function, ...)                                               \
  (Fails(__builtin_return_address(0)) ? nullptr                               \
   : &__interceptor_##function        ? __interceptor_##function(__VA_ARGS__) \
                                      : __libc_##function(__VA_ARGS__))

constinit thread_local bool g_may_fail = false;

namespace {

bool g_counting = false;
std::size_t g_count = 0;
std::size_t g_first_failing = 0;
std::size_t g_end_of_failing = 0;

bool IsGlib(const void* caller) {
  Dl_info library = {};
  dladdr(caller, &library);
  return library.dli_fname != nullptr && std::strstr(library.dli_fname, "/libglib") != nullptr;
}

bool Fails(const void* caller) {
  if (!g_may_fail || !g_counting || IsGlib(caller)) {
    return false;
  }
  const std::size_t index = g_count++;
  return index >= g_first_failing && index < g_end_of_failing;
}

}  // namespace

void FailAllocations(std::size_t first, std::size_t end) {
  g_count = 0;
  g_first_failing = first;
  g_end_of_failing = end;
  g_counting = true;
}

bool EndFailures() {
  g_counting = false;
  return g_count > g_first_failing;
}

extern "C" {

void* malloc(std::size_t size) { return ALLOCATE(malloc, size); }

void* calloc(std::size_t count, std::size_t size) { return ALLOCATE(calloc, count, size); }

}  // extern "C"
