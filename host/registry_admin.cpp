#include "registry_admin.h"

#include <array>
#include <cstdlib>

#include "error.h"
#include "kvreg_admin.h"
#include "platform_setup.h"
#include "text.h"

namespace {

using Reason = std::array<char, 256>;

std::string Problem(const char* action, const std::string& key, const Reason& reason) {
  const char* file = std::getenv(kRegistryVariable);
  return std::string("cannot ") + action + " " + Quoted(key) + " in the registry " +
         Quoted(file == nullptr ? "" : file) + ": " + reason.data() +
         "; fix this, or pass another file with --registry";
}

}  // namespace

std::optional<std::string> WhyUnreadable(const std::string& key) {
  Reason reason;
  const bool is_readable = kvreg_try(key.c_str(), reason.data(), reason.size()) == 0;
  return is_readable ? std::nullopt : std::optional(Problem("read", key, reason));
}

void RemoveKey(const std::string& key) {
  Reason reason;
  if (kvreg_unset(key.c_str(), reason.data(), reason.size()) != 0) {
    throw HostError(Problem("remove", key, reason));
  }
}
