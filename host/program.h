// The frame of a program: what goes wrong in it is said to the person, and becomes its exit status.
#ifndef HOST_PROGRAM_H
#define HOST_PROGRAM_H

#include <functional>

// Calls `body`, and returns the exit status: 0 when it is done; 2 when it throws UsageError; 1 when
// it throws another exception, or what it printed cannot be written. The program's `name` stands
// before what is said on standard error.
int RunProgram(const char* name, const std::function<void()>& body);

#endif
