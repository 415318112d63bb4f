// What the user chose, found among the choices and held against what the provider made of it.
#ifndef TERMINAL_CHOOSING_H
#define TERMINAL_CHOOSING_H

#include <string>
#include <vector>

#include "KeyboardPage.h"

// Throws HostError, with the reason, if there is no list.
std::vector<Choice> ReadChoices(const KeyboardPage& page, SettingId id);

// The value of the choice that `word` names: its value, or for a type the part behind the language
// that is stored. Throws HostError, with what may have been meant, if there is none.
std::string FindChoice(const KeyboardPage& page, SettingId id, const std::string& word);

// Holds what is stored now against `value`, which was handed to the provider: its answer does not
// tell. Throws HostError if it stored nothing or something else; for a language that is none of the
// choices (`forced`), the other language that stands in for it is only said.
void CheckStored(const Setting& language, const Setting& type, SettingId id,
                 const std::string& value, bool forced);

#endif
