// A C heap with fault injection. The test program's malloc() replaces the C library's malloc().
#ifndef TESTS_FAILING_ALLOCATOR_H
#define TESTS_FAILING_ALLOCATOR_H

#include <cstddef>
#include <utility>

// From now on, allocations `first` to `end` - 1 fail, counted from 0. Only allocations in a scope
// that allows failures count. Allocations of GLib do not count, because GLib would end the process.
void FailAllocations(std::size_t first, std::size_t end);

// Ends the failures. Returns true if an allocation failed.
bool EndFailures();

// True if allocations of this thread count and can fail.
extern constinit thread_local bool g_may_fail;

// Allows failures while library code runs, or forbids them while a test double runs.
class AllowFailures {
 public:
  explicit AllowFailures(bool allowed) : m_before(std::exchange(g_may_fail, allowed)) {}
  ~AllowFailures() { g_may_fail = m_before; }

 private:
  bool m_before;
};

#endif
