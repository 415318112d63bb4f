// Checks the whole page in every language for problems that a viewer would see.
#ifndef TERMINAL_PAGE_CHECK_H
#define TERMINAL_PAGE_CHECK_H

#include <vector>

#include "KeyboardPage.h"
#include "finding.h"

// Stores each choice, so use a TemporaryRegistry. Changes the interface language.
std::vector<Finding> CheckPage(KeyboardPage& page);

#endif
