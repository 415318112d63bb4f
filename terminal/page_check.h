// The whole page in every language of the device, gone through for what would trip a viewer up.
#ifndef TERMINAL_PAGE_CHECK_H
#define TERMINAL_PAGE_CHECK_H

#include <string>
#include <vector>

#include "KeyboardPage.h"

// Reads as a sentence: "keyboard ko_KR: type list has no choices; add keyboard_types for 'ko_KR'".
struct Finding {
  std::string where;  // "page", or the language of the "interface" or the "keyboard"
  std::string item;
  std::string problem;
  std::string remedy;
};

// Stores each choice and leaves the interface in another language: to be called over a registry
// that nobody else uses, as the last thing that is asked of the page.
std::vector<Finding> CheckPage(const KeyboardPage& page);

#endif
