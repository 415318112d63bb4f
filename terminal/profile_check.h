// Checks a device profile for entries that have no effect on the page.
#ifndef TERMINAL_PROFILE_CHECK_H
#define TERMINAL_PROFILE_CHECK_H

#include <string>
#include <vector>

#include "finding.h"

// Checks the profile at the path `profile`. Loads `plugin` once and learns from its log what it
// reads. The plug-in reads the languages once, so it must not be loaded yet. Nothing is printed to
// standard error meanwhile. A plug-in that cannot be loaded is a finding. Throws HostError if the
// profile cannot be read.
std::vector<Finding> CheckProfile(const std::string& profile, const std::string& plugin);

#endif
