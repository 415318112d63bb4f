// What a settings page asks of the library, each beside its floor: the work that no implementation
// can avoid, done bare. A floor works on the same platform and heap as the library.
#ifndef BENCH_REQUESTS_H
#define BENCH_REQUESTS_H

#include "device.h"

using Work = void (*)(const Device& device);

struct Request {
  const char* name;
  Library start;  // how far the library is when the request comes
  Work ask;
  Work floor;
};

inline constexpr const char* kConfigurations[] = {"shipped", "real_x1", "real_x10", "real_x100"};

extern const Request kRequests[9];

#endif
