// Ownership of blocks of the C heap: what the platform hands to the library, or is handed to fill.
#ifndef MORVITH_HEAP_H
#define MORVITH_HEAP_H

#include <cstdlib>
#include <memory>

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};

template <typename T>
using HeapPtr = std::unique_ptr<T, FreeDeleter>;

#endif
