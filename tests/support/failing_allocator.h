// A C heap with fault injection. The test program's malloc replaces that of the C library.
#ifndef TESTS_FAILING_ALLOCATOR_H
#define TESTS_FAILING_ALLOCATOR_H

#include <cstddef>
#include <utility>

// From now on, the allocations number `first` to `end` - 1 fail, counted from 0. Only those in a
// scope that allows refusals count, and not those of GLib, which would end the process.
void RefuseAllocations(std::size_t first, std::size_t end);

// Ends the refusals. Returns true if an allocation was refused.
bool EndRefusals();

// True if allocations of this thread count and may be refused.
extern constinit thread_local bool g_may_refuse;

// Allows refusals in a scope, for the library, or forbids them, for a fake.
class Refusals {
 public:
  explicit Refusals(bool allowed) : m_before(std::exchange(g_may_refuse, allowed)) {}
  ~Refusals() { g_may_refuse = m_before; }

 private:
  bool m_before;
};

#endif
