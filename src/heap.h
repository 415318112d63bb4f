// Memory blocks on the C heap, which the library exchanges with its host and with the platform.
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

// Returns `block`; throws std::bad_alloc if it is null.
template <typename T>
T* OrBadAlloc(T* block) {
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

// Returns a zeroed array of `count` elements, or possibly null if `count` is 0. Throws
// std::bad_alloc.
template <typename T>
T* AllocateZeroed(std::size_t count = 1) {
  T* block = static_cast<T*>(std::calloc(count, sizeof(T)));
  return count == 0 ? block : OrBadAlloc(block);  // calloc may return null for a size of 0
}

// Returns a copy that the host frees. Throws std::bad_alloc.
char* CopyForHost(const char* text);

// Returns a copy that the host frees: a zeroed block of 256 bytes with the first
// DATA_PROVIDER_TYPE_LENGTH bytes of the text or value of a type. Throws std::bad_alloc.
char* CopyTypeForHost(const std::string& text);

#endif
