// What a person did or has set up in a way that cannot work: said to them as it stands.
#ifndef HOST_ERROR_H
#define HOST_ERROR_H

#include <stdexcept>

class HostError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

#endif
