// A provider that does nothing, with the dependencies of the one that does: what loading costs at
// least.
#include <cstdlib>

#include "data_provider.h"

int create_provider(void** handle) noexcept {
  *handle = std::calloc(1, sizeof(data_provider_cbs));
  init_data_provider_cbs(static_cast<data_provider_cbs*>(*handle));
  return 0;
}

int delete_provider(void** handle) noexcept {
  std::free(*handle);
  return 0;
}
