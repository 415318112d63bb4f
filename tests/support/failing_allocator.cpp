#include "failing_allocator.h"

#include <cstring>

#include <dlfcn.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);

// The address sanitizer's heap, where there is one.
[[gnu::weak]] void* __interceptor_malloc(std::size_t size);
[[gnu::weak]] void* __interceptor_calloc(std::size_t count, std::size_t size);
}

#define ALLOCATE(function, ...)                                                   \
  (IsRefused(__builtin_return_address(0)) ? nullptr                               \
   : &__interceptor_##function            ? __interceptor_##function(__VA_ARGS__) \
                                          : __libc_##function(__VA_ARGS__))

constinit thread_local bool g_may_refuse = false;

namespace {

bool g_refusing = false;
bool g_refused = false;
std::size_t g_allocations_left = 0;
Refusal g_refusal = Refusal::kOnce;

bool IsGlib(const void* caller) {
  Dl_info library = {};
  dladdr(caller, &library);
  const char* file = library.dli_fname == nullptr ? "" : library.dli_fname;
  return std::strstr(file, "/libg") != nullptr || std::strstr(file, "/libjson") != nullptr;
}

bool IsRefused(const void* caller) {
  if (!g_may_refuse || !g_refusing || IsGlib(caller) || g_allocations_left-- > 0) {
    return false;
  }
  g_allocations_left = 0;
  g_refusing = g_refusal == Refusal::kFromThenOn;
  g_refused = true;
  return true;
}

}  // namespace

void RefuseAllocation(std::size_t index, Refusal refusal) {
  g_allocations_left = index;
  g_refusal = refusal;
  g_refused = false;
  g_refusing = true;
}

bool EndRefusals() {
  g_refusing = false;
  return g_refused;
}

extern "C" {

void* malloc(std::size_t size) { return ALLOCATE(malloc, size); }

void* calloc(std::size_t count, std::size_t size) { return ALLOCATE(calloc, count, size); }

// The sanitizer's own would go past malloc.
char* strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* copy = malloc(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

}  // extern "C"
