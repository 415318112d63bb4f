// Suggests names for a misspelt word.
#ifndef HOST_SUGGESTION_H
#define HOST_SUGGESTION_H

#include <string>
#include <vector>

#include "KeyboardPage.h"

// Returns "did you mean a or b? " with the values of the choices that are similar to `word`, in the
// order of the list. These are the choices that contain its words ("ko", "ko-KR", "korean"), or
// else the choices with the fewest different letters ("kr_KR", "koraen"). Returns "" if no choice
// or too many choices are similar.
std::string DidYouMean(const std::string& word, const std::vector<Choice>& choices);

#endif
