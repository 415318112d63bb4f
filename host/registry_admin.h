// Registry maintenance that a provider never needs. This is a separate library, because a host that
// links the registry keeps it loaded after the plug-in is unloaded.
#ifndef HOST_REGISTRY_ADMIN_H
#define HOST_REGISTRY_ADMIN_H

#include <optional>
#include <string>

// Returns why the registry cannot read `key`; null if it can, even if nothing is stored. A provider
// returns no value in both cases.
std::optional<std::string> WhyUnreadable(const std::string& key);

// Removes `key` and its value from the registry. Throws HostError with the reason if it cannot.
void RemoveKey(const std::string& key);

#endif
