#include "registry_admin.h"

#include <array>

#include "error.h"
#include "kvreg_admin.h"
#include "platform_setup.h"

namespace {

std::string RegistryProblem(const char* action, const std::string& key, const char* reason) {
  return std::string("cannot ") + action + " '" + key + "' in the registry '" + FindRegistry("") +
         "': " + reason +
         ". 'menu_host reset' empties one that is whole; otherwise take the file away.";
}

}  // namespace

void CheckReadable(const std::string& key) {
  std::array<char, 256> reason;
  if (kvreg_try(key.c_str(), reason.data(), reason.size()) != 0) {
    throw HostError(RegistryProblem("read", key, reason.data()));
  }
}

void Forget(const std::string& key) {
  std::array<char, 256> reason;
  if (kvreg_unset(key.c_str(), reason.data(), reason.size()) != 0) {
    throw HostError(RegistryProblem("forget", key, reason.data()));
  }
}
