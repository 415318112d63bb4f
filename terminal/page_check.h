// The whole page in every language of the device, gone through for what would trip a viewer up.
#ifndef TERMINAL_PAGE_CHECK_H
#define TERMINAL_PAGE_CHECK_H

#include <vector>

#include "KeyboardPage.h"
#include "finding.h"

// Stores each choice and leaves the interface in another language: to be called over a registry
// that nobody else uses, as the last thing that is asked of the page.
std::vector<Finding> CheckPage(const KeyboardPage& page);

#endif
