// A plug-in that is no complete provider: what it lacks is said by $BAD_PROVIDER.
#include <cstdlib>
#include <cstring>

#include "data_provider.h"

int create_provider(void** handle) noexcept {
  *handle = std::calloc(1, sizeof(data_provider_cbs));
  const char* lack = std::getenv("BAD_PROVIDER");
  return lack != nullptr && std::strcmp(lack, "fails") == 0 ? 1 : 0;
}

int delete_provider(void** handle) noexcept {
  std::free(*handle);
  return 0;
}
