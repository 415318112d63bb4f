// What the registry's stand-in tells of the registry in use, and does to it, beside what a provider
// asks of it.
#ifndef HOST_REGISTRY_ADMIN_H
#define HOST_REGISTRY_ADMIN_H

#include <string>

// Throws HostError, with the reason, if what the registry keeps under `key` cannot be read.
void CheckReadable(const std::string& key);

// Takes what the registry keeps under `key` away. Throws HostError if it cannot.
void Forget(const std::string& key);

#endif
