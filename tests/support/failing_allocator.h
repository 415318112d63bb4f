// The C heap, made to run out: the test program's malloc stands in front of the C library's.
#ifndef TESTS_FAILING_ALLOCATOR_H
#define TESTS_FAILING_ALLOCATOR_H

#include <cstddef>
#include <utility>

enum class Refusal { kOnce, kFromThenOn };

// From now on this thread, where it allows refusals, is refused allocation number `index`; 0 is the
// next one. Not counted and never refused is what GLib allocates: it ends the process where it is
// refused memory.
void RefuseAllocation(std::size_t index, Refusal refusal);

// Ends this. Returns whether an allocation was refused.
bool EndRefusals();

// Whether allocations of this thread are counted and may be refused.
extern constinit thread_local bool g_may_refuse;

// Allows refusals in a scope, for what the library allocates, or forbids them, for what a fake
// does.
class Refusals {
 public:
  explicit Refusals(bool allowed) : m_before(std::exchange(g_may_refuse, allowed)) {}
  ~Refusals() { g_may_refuse = m_before; }

 private:
  bool m_before;
};

#endif
