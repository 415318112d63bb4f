// The language in which the user reads the page. gettext takes it from the environment variable
// LANGUAGE, so the machine needs no locale of that language.
#ifndef HOST_UI_LANGUAGE_H
#define HOST_UI_LANGUAGE_H

#include <optional>
#include <string>

// In place of a locale: texts stay message ids.
inline constexpr char kNoLanguage[] = "C";

// Translates texts into the language of `locale`, of the form "ko_KR" or "ko", from now on. Changes
// the locale of the process. Throws HostError if the C library has no UTF-8 locale to do this in.
void UseUiLanguage(const std::string& locale);

// The name of the catalogue that the provider, which has bound the text domain, has for `locale`:
// its own, or else its language's.
std::optional<std::string> FindCatalogue(const std::string& locale);

// Throws HostError if there is none.
void CheckCatalogue(const std::string& locale);

#endif
