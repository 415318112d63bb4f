// Linked into the library under the fuzzers, to keep its coverage counters from libFuzzer, which
// would read them after the library is unloaded, and to hand them over just before.
#include <cstddef>
#include <cstdint>

extern "C" {

void fuzz_take_coverage(const std::uint8_t* counters, std::size_t count);  // fuzz_host.cpp

static const std::uint8_t* g_begin;
static const std::uint8_t* g_end;

// What the instrumentation calls. The library's export map keeps both to the library.
void __sanitizer_cov_8bit_counters_init(const std::uint8_t* begin, const std::uint8_t* end) {
  g_begin = begin;
  g_end = end;
}
void __sanitizer_cov_pcs_init(const std::uintptr_t* /*begin*/, const std::uintptr_t* /*end*/) {}

[[gnu::destructor]] static void HandOverCoverage() {
  fuzz_take_coverage(g_begin, static_cast<std::size_t>(g_end - g_begin));
}

}  // extern "C"
