// The main function of a host program: error messages and the exit status.
#ifndef HOST_PROGRAM_H
#define HOST_PROGRAM_H

#include <functional>

#include "error.h"

// The command line or an environment variable is invalid.
class UsageError : public HostError {
  using HostError::HostError;
};

// Calls `body` and returns the exit status: 0 on success, 2 if `body` throws UsageError, 1 if it
// throws another exception or its output cannot be written. Prints the exception's message to
// standard error, as printable text after `name`, the name of the program.
int RunProgram(const char* name, const std::function<void()>& body);

#endif
