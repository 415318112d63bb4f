#include "ui_language.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include <libintl.h>

#include "data_provider.h"
#include "error.h"
#include "join.h"

namespace fs = std::filesystem;

// gettext's own count of changes: what it has looked up holds until it changes.
extern "C" int _nl_msg_cat_cntr;

namespace {

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
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

void UseUiLanguage(const std::string& locale) {
  if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) {
    throw HostError("the C library has no locale C.UTF-8");
  }
  setenv("LANGUAGE", locale.c_str(), 1);
  ++_nl_msg_cat_cntr;
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
    throw HostError("no catalogue for the language '" + locale + "' in " + directory.string() +
                    ". There are: " + Join(Catalogues(directory)) + ".");
  }
}
