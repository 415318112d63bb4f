#include "registry_admin.h"

#include <array>
#include <cstdlib>

#include "error.h"
#include "kvreg_admin.h"
#include "platform_setup.h"
#include "text.h"

namespace {

constexpr char kOtherFile[] = "pass another file for the registry or delete this one";

using Reason = std::array<char, 256>;

std::string Problem(const char* action, const std::string& key, const Reason& reason) {
  const char* file = std::getenv(kRegistryVariable);
  return std::string("cannot ") + action + " " + Quoted(key) + " in the registry " +
         Quoted(file == nullptr ? "" : file) + ": " + reason.data();
}

}  // namespace

std::optional<std::string> WhyUnreadable(const std::string& key) {
  Reason reason;
  if (kvreg_try(key.c_str(), reason.data(), reason.size()) == 0) {
    return std::nullopt;
  }
  return Problem("read", key, reason) + "; try 'menu_host reset', or " + kOtherFile;
}

void RemoveKey(const std::string& key) {
  Reason reason;
  if (kvreg_unset(key.c_str(), reason.data(), reason.size()) != 0) {
    throw HostError(Problem("remove", key, reason) + "; " + kOtherFile);
  }
}
