// The language in which the user reads the page. gettext takes it from the environment variable
// LANGUAGE, so the machine needs no locale of that language.
#ifndef HOST_UI_LANGUAGE_H
#define HOST_UI_LANGUAGE_H

#include <optional>
#include <string>

// Pass this as the locale to get message ids instead of translations.
inline constexpr char kNoLanguage[] = "C";

// Translates texts into the language of `locale`, in the form "ko_KR" or "ko". Changes the locale
// and LANGUAGE of the process. Throws HostError if the machine has no suitable UTF-8 locale.
void UseUiLanguage(const std::string& locale);

// Returns the name of the installed catalogue for `locale`: "ko_KR" if it exists, or else "ko".
// Null if neither exists. Throws HostError as CheckCatalogueFile() does if one of them is damaged,
// because gettext opens both. The provider must be loaded, because it binds the text domain.
std::optional<std::string> FindCatalogue(const std::string& locale);

// Throws HostError if FindCatalogue() finds none or a damaged one.
void CheckCatalogue(const std::string& locale);

#endif
