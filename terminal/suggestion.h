// Suggests choices for a misspelt value.
#ifndef TERMINAL_SUGGESTION_H
#define TERMINAL_SUGGESTION_H

#include <string>
#include <vector>

#include "KeyboardPage.h"

// Returns the values of the choices that are similar to `word`, in the order of the list. These are
// the choices that contain its words ("ko", "ko-KR", "korean"), or else the choices with the
// fewest different letters ("kr_KR", "koraen"). Returns nothing if too many choices are similar.
std::vector<std::string> Suggest(const std::string& word, const std::vector<Choice>& choices);

#endif
