// Measures each text of the page at its place on the screen, in each language of the device.
#ifndef SCREEN_TEXT_CHECK_H
#define SCREEN_TEXT_CHECK_H

#include <vector>

#include "Canvas.h"
#include "KeyboardPage.h"
#include "finding.h"

// Stores each language, so use a TemporaryRegistry. Changes the interface language.
std::vector<Finding> CheckTexts(KeyboardPage& page, Canvas& canvas);

#endif
