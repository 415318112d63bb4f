// The C heap, made to run out: the test program's malloc stands in front of the C library's.
#ifndef TESTS_FAILING_ALLOCATOR_H
#define TESTS_FAILING_ALLOCATOR_H

#include <cstddef>

enum class Refusal { kOnce, kFromThenOn };

// From now on allocation number `index` (0 is the next one) is refused. Not counted and never
// refused is what GLib allocates: it ends the process where it is refused memory.
void RefuseAllocation(std::size_t index, Refusal refusal);

// Ends this. Returns whether an allocation was refused.
bool EndRefusals();

// No refusals in a scope, for the fakes' own allocations.
class NoRefusals {
 public:
  NoRefusals();
  ~NoRefusals();

 private:
  bool m_before;
};

// Blocks allocated and not freed.
long LiveBlocks();

// Calls `request` with its first, second, ... allocation refused, until it needs no more.
template <typename Request>
void RefuseEachAllocation(Request request) {
  for (const Refusal refusal : {Refusal::kOnce, Refusal::kFromThenOn}) {
    std::size_t index = 0;
    do {
      RefuseAllocation(index++, refusal);
      request();
    } while (EndRefusals());
  }
}

#endif
