#include "program.h"

#include <cstdio>
#include <exception>
#include <iostream>

#include "text.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

}  // namespace

int RunProgram(const char* name, const std::function<void()>& body) {
  const auto fail = [name](const std::exception& error, int status) {
    std::fprintf(stderr, "%s: %s\n", name, Printable(error.what()).c_str());
    return status;
  };
  try {
    body();
    if (std::fflush(stdout) != 0 || !std::cout.flush()) {
      throw HostError("cannot write to standard output");
    }
    return 0;
  } catch (const UsageError& error) {
    return fail(error, kUsage);
  } catch (const std::exception& error) {
    return fail(error, kFailed);
  }
}
