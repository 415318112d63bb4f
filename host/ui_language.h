// The language in which the user reads the page. Independent of the machine's locales: gettext
// takes it from LANGUAGE, over the C library's own UTF-8 locale.
#ifndef MENU_HOST_UI_LANGUAGE_H
#define MENU_HOST_UI_LANGUAGE_H

#include <string>

// The provider's text domain, in which the host translates what the provider leaves to it.
inline constexpr char kTextDomain[] = "lib-morvith-tv";

// To be called before anything is translated. `locale` has the form "ko_KR".
void UseUiLanguage(const std::string& locale);

// Throws HostError unless the provider, which has bound the text domain, has a catalogue for
// `locale`.
void CheckCatalogue(const std::string& locale);

#endif
