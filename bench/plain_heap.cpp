// The heap of the benchmark is the C library's own and refuses nothing: in place of the tests'
// failing_allocator.cpp.
#include "failing_allocator.h"

constinit thread_local bool g_refusing = false;
