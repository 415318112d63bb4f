// The language in which the user reads the page. Independent of the machine's locales: gettext
// takes it from LANGUAGE, over the C library's own UTF-8 locale.
#ifndef HOST_UI_LANGUAGE_H
#define HOST_UI_LANGUAGE_H

#include <optional>
#include <string>

// In place of a locale: texts stay message ids.
inline constexpr char kNoLanguage[] = "C";

// What is translated from now on is in the language of `locale`, of the form "ko_KR" or "ko".
void UseUiLanguage(const std::string& locale);

// The name of the catalogue that the provider, which has bound the text domain, has for `locale`:
// its own, or else its language's.
std::optional<std::string> FindCatalogue(const std::string& locale);

// Throws HostError if there is none.
void CheckCatalogue(const std::string& locale);

#endif
