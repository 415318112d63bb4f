// A user or set-up error. The message is shown to the user verbatim.
#ifndef HOST_ERROR_H
#define HOST_ERROR_H

#include <stdexcept>

class HostError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

#endif
