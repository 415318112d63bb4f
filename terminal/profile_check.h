// A device profile, gone through for what is not on the page although it was meant to be.
#ifndef TERMINAL_PROFILE_CHECK_H
#define TERMINAL_PROFILE_CHECK_H

#include <string>
#include <vector>

#include "finding.h"

// Tries with temporary profiles what `plugin` knows, which must not be loaded yet, and logs nothing
// of it: to be called when the profile and the log are no longer needed. That it cannot be
// asked is a finding. Throws HostError if there is no key file `profile`.
std::vector<Finding> CheckProfile(const std::string& profile, const std::string& plugin);

#endif
