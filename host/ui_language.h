// The language in which the viewer reads the page. gettext reads it from the environment variable
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

// Returns `message_id` itself if it is not translated.
std::string Translate(const std::string& message_id);

// Adds the territory of `locale` to the translated name of its language, in the viewer's language:
// "Englisch (Vereinigtes Königreich)" for "Englisch" and "en_GB". The names of territories and the
// pattern come from the Unicode CLDR.
std::string WithTerritory(const std::string& language, const std::string& locale);

// Returns the name of the installed catalogue for `locale`: "ko_KR" if it exists, or else "ko".
// Null if neither exists. Throws HostError as CheckCatalogueFile() does if one of them is damaged,
// because gettext opens both.
std::optional<std::string> FindCatalogue(const std::string& locale);

struct UiLanguage {
  std::string locale;
  std::string reason;  // source of the locale: an option, an environment variable, or "default"
};

// Returns `wanted`. If `wanted` is empty, returns the user's locale (LC_ALL, LC_MESSAGES or LANG).
// Returns "en_US" if that locale is not set or has no catalogue.
UiLanguage ChooseUiLanguage(const std::string& wanted);

// Throws HostError if FindCatalogue() finds none or a damaged one.
void CheckCatalogue(const std::string& locale);

#endif
