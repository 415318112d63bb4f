#include "heap.h"

#include <cstring>

#include "data_provider.h"

namespace {

constexpr std::size_t kTypeBlockSize = 256;
static_assert(DATA_PROVIDER_TYPE_LENGTH < kTypeBlockSize);

}  // namespace

char* CopyForHost(const char* text) { return OrBadAlloc(strdup(text)); }

char* CopyTypeForHost(const std::string& text) {
  char* copy = AllocateZeroed<char>(kTypeBlockSize);
  text.copy(copy, DATA_PROVIDER_TYPE_LENGTH);
  return copy;
}
