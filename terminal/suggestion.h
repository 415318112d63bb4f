// What was meant by a value that is none of the choices.
#ifndef TERMINAL_SUGGESTION_H
#define TERMINAL_SUGGESTION_H

#include <string>
#include <vector>

#include "KeyboardPage.h"

// The values of the choices that `word` may mean, in the order of the list: those that have its
// words ("ko", "ko-KR", "korean"), or else those that it is closest to ("kr_KR", "koraen"). None
// when it says too little to tell a few from the rest.
std::vector<std::string> Suggest(const std::string& word, const std::vector<Choice>& choices);

#endif
