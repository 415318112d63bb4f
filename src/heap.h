// Blocks of the C heap: what the library hands to its host, and what the platform hands to it.
#ifndef MORVITH_HEAP_H
#define MORVITH_HEAP_H

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};

template <typename T>
using HeapPtr = std::unique_ptr<T, FreeDeleter>;

// A new block, once it is known that there is one. Throws std::bad_alloc, as all that follows.
template <typename T>
T* OrBadAlloc(T* block) {
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

template <typename T>
T* AllocateZeroed(std::size_t count = 1) {
  return OrBadAlloc(static_cast<T*>(std::calloc(count, sizeof(T))));
}

// Copies that the host frees: a text whole, or a type's text or value in a zero-filled block of 256
// bytes, cut after DATA_PROVIDER_TYPE_LENGTH.
char* CopyForHost(const char* text);
char* CopyTypeForHost(const std::string& text);

#endif
