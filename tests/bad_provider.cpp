// An incomplete provider: a plug-in that fills no slot.
#include <cstdlib>

#include "data_provider.h"

int create_provider(void** handle) noexcept {
  *handle = std::calloc(1, sizeof(data_provider_cbs));
  return 0;
}

int delete_provider(void** handle) noexcept {
  std::free(*handle);
  return 0;
}
