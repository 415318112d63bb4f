// Each text of the page measured where it stands, in each language of the device.
#ifndef SCREEN_TEXT_CHECK_H
#define SCREEN_TEXT_CHECK_H

#include <vector>

#include "Canvas.h"
#include "KeyboardPage.h"
#include "finding.h"

// Stores each language in the registry in use, and leaves the interface in another one.
std::vector<Finding> CheckTexts(const KeyboardPage& page, Canvas& canvas);

#endif
