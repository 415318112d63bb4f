// What a settings page asks of the library, each beside its floor: the work that no implementation
// can avoid, done bare, on the same device and heap.
#ifndef BENCH_REQUESTS_H
#define BENCH_REQUESTS_H

#include <memory>

#include "Provider.h"

using Library = std::unique_ptr<Provider>;
using Work = void (*)(Library& library);

struct Request {
  const char* name;
  Work ask;
  Work floor;
  const char* root = BENCH_ROOTS "/shipped";
  Work prepare = nullptr;  // before each time, and not measured
};

extern const Request kRequests[11];

// Anew, if it is loaded: it has not read its configuration.
void Load(Library& library);

#endif
