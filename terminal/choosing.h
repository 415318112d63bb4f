// Finds the user's choice in the list and checks that the provider stored it.
#ifndef TERMINAL_CHOOSING_H
#define TERMINAL_CHOOSING_H

#include <string>

#include "KeyboardPage.h"

// Reads a setting. Throws HostError with the reason if the provider returns no list of choices.
Setting ReadWithList(const KeyboardPage& page, SettingId id);

// Finds the choice `word` in the list of the setting `id` and returns its value. `word` is the full
// value or, for a type, only the type id. Throws HostError if there is no such choice; the message
// suggests similar ones.
std::string FindChoice(const KeyboardPage& page, SettingId id, const std::string& word);

// Checks that the provider stored `value` for the setting `id`, because the result of set_string
// does not say so. `language` and `type` are the settings after the call. Throws HostError if
// the provider stored nothing, another value, or a language without its type. If `forced` is true,
// only prints a warning when the provider stored another language.
void CheckStored(const Setting& language, const Setting& type, SettingId id,
                 const std::string& value, bool forced);

#endif
