// What a person did or has set up in a way that cannot work: said to them as it stands.
#ifndef MENU_HOST_ERROR_H
#define MENU_HOST_ERROR_H

#include <stdexcept>

class HostError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

#endif
