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

#include "data_provider.h"
#include "error.h"
#include "text.h"

namespace fs = std::filesystem;

namespace {

// gettext ignores LANGUAGE in the locale C and, since glibc 2.39, in C.UTF-8. No locale has the
// territory XX, so glibc loads C.UTF-8 for it, but keeps the name C_XX.UTF-8. If that fails, the
// user's locale or a common one is used.
constexpr std::array kLocales = {"C_XX.UTF-8", "", "en_US.UTF-8"};

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

bool HasCatalogue(const fs::path& folder) {
  std::error_code error;
  return fs::is_regular_file(CatalogueOf(folder), error);
}

std::vector<std::string> Catalogues(const fs::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, error)) {
    if (HasCatalogue(entry.path())) {
      names.push_back(entry.path().filename());
    }
  }
  std::ranges::sort(names);
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

std::optional<std::string> FindCatalogue(const std::string& locale) {
  const fs::path directory = bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, nullptr);
  for (const std::string& name : {locale, locale.substr(0, locale.find('_'))}) {
    if (HasCatalogue(directory / name)) {
      return name;
    }
  }
  return std::nullopt;
}

void CheckCatalogue(const std::string& locale) {
  if (!FindCatalogue(locale)) {
    const fs::path directory = bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, nullptr);
    throw HostError("no catalogue for the language " + Quoted(locale) + " in " + Quoted(directory) +
                    "; available: " + Join(Catalogues(directory)));
  }
}
