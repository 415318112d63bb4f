#include "ui_language.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include <langinfo.h>
#include <libintl.h>
#include <unicode/locid.h>
#include <unicode/simpleformatter.h>
#include <unicode/ulocdata.h>

#include "catalogue.h"
#include "data_provider.h"
#include "error.h"
#include "platform_setup.h"
#include "text.h"

namespace fs = std::filesystem;

namespace {

// gettext ignores LANGUAGE in the locale C and, since glibc 2.39, in C.UTF-8. The locale C_XX.UTF-8
// does not exist, so glibc loads C.UTF-8 instead, but keeps the name C_XX.UTF-8. If setlocale()
// fails, the user's locale or en_US.UTF-8 is used.
constexpr std::array kLocales = {"C_XX.UTF-8", "", "en_US.UTF-8"};

// The pattern of most languages. Recent versions of ICU do not find an inherited pattern.
constexpr char16_t kInheritedPattern[] = u"{0} ({1})";

constexpr char kCatalogues[] = "/usr/share/lib-morvith-tv/res/locale";

bool Translates(const char* locale) {
  if (std::setlocale(LC_ALL, locale) == nullptr) {
    return false;
  }
  const std::string name = std::setlocale(LC_MESSAGES, nullptr);
  return name != "C" && name != "POSIX" && !name.starts_with("C.") &&
         std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

fs::path CatalogueOf(const fs::path& folder) {
  return folder / "LC_MESSAGES" / (DATA_PROVIDER_TEXT_DOMAIN ".mo");
}

std::vector<std::string> Catalogues(const fs::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, error)) {
    if (fs::exists(CatalogueOf(entry.path()), error)) {
      names.push_back(entry.path().filename());
    }
  }
  std::ranges::sort(names);
  return names;
}

// The catalogues that gettext opens for a locale: that of its language, then that of the locale.
std::vector<std::string> CataloguesFor(const std::string& locale) {
  std::vector<std::string> names = {locale.substr(0, locale.find('_')), locale};
  std::erase_if(names, [](const std::string& name) {
    std::error_code error;
    return !fs::exists(CatalogueOf(LocateFile(kCatalogues) / fs::path(name)), error);
  });
  return names;
}

}  // namespace

void UseUiLanguage(const std::string& locale) {
  setenv("LANGUAGE", locale.c_str(), 1);
  std::setlocale(LC_ALL, "C");  // gettext reads LANGUAGE again only after a change of the locale
  if (std::ranges::none_of(kLocales, Translates)) {
    throw HostError(
        "no UTF-8 locale found in which gettext translates; install one, such as en_US.UTF-8");
  }
}

// gettext would return the header of the catalogue for an empty message id.
std::string Translate(const std::string& message_id) {
  return message_id.empty() ? "" : dgettext(DATA_PROVIDER_TEXT_DOMAIN, message_id.c_str());
}

std::string WithTerritory(const std::string& language, const std::string& locale) {
  const icu::Locale viewer(std::getenv("LANGUAGE"));
  icu::UnicodeString territory;
  icu::Locale(locale.c_str()).getDisplayCountry(viewer, territory);

  UErrorCode status = U_ZERO_ERROR;
  const icu::LocalULocaleDataPointer data(ulocdata_open(viewer.getName(), &status));
  std::array<UChar, 64> pattern = {};
  ulocdata_getLocaleDisplayPattern(data.getAlias(), pattern.data(), pattern.size(), &status);
  const bool is_inherited = U_FAILURE(status) != 0;
  status = U_ZERO_ERROR;
  icu::UnicodeString text;
  icu::SimpleFormatter(is_inherited ? kInheritedPattern : pattern.data(), 2, 2, status)
      .format(icu::UnicodeString::fromUTF8(language), territory, text, status);
  std::string utf8;
  return text.toUTF8String(utf8);
}

std::optional<std::string> FindCatalogue(const std::string& locale) {
  const std::vector<std::string> names = CataloguesFor(locale);
  for (const std::string& name : names) {
    CheckCatalogueFile(CatalogueOf(LocateFile(kCatalogues) / fs::path(name)));
  }
  return names.empty() ? std::nullopt : std::optional(names.back());
}

UiLanguage ChooseUiLanguage(const std::string& wanted) {
  UiLanguage default_language = {"en_US", "default"};
  if (!wanted.empty()) {
    return {wanted, "--ui-language"};
  }
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == '\0') {
      continue;
    }
    const std::string locale = std::string(value).substr(0, std::strcspn(value, ".@"));
    const bool is_translated = !CataloguesFor(locale).empty();
    return is_translated ? UiLanguage{locale, variable} : default_language;
  }
  return default_language;
}

void CheckCatalogue(const std::string& locale) {
  if (!FindCatalogue(locale)) {
    const fs::path directory = LocateFile(kCatalogues);
    throw HostError("no catalogue for the language " + Quoted(locale) + " in " + Quoted(directory) +
                    "; available: " + Join(Catalogues(directory)));
  }
}
