#include "choosing.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "error.h"
#include "finding.h"
#include "suggestion.h"
#include "terminal_text.h"

namespace {

const char* WordFor(SettingId id) { return id == SettingId::kLanguage ? "language" : "type"; }

std::string Alternatives(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) {
    text += text.empty() ? "" : &value == &values.back() ? " or " : ", ";
    text += Printable(value);
  }
  return text;
}

std::string NoChoice(SettingId id, const std::string& word, const std::vector<Choice>& choices) {
  const std::vector<std::string> meant = Suggest(word, choices);
  return Quoted(Printable(word)) + " is none of the choices. " +
         (meant.empty() ? "" : "Did you mean " + Alternatives(meant) + "? ") + "'menu_host list " +
         WordFor(id) + "' shows all.\nWith --force it is handed to the provider as it is.";
}

}  // namespace

std::vector<Choice> ReadChoices(const KeyboardPage& page, SettingId id) {
  std::optional<std::vector<Choice>> choices = page.ReadChoices(id);
  if (!choices) {
    throw HostError(id == SettingId::kType
                        ? "no keyboard types to choose from: no language is stored (store one with "
                          "'menu_host set language en_US')"
                        : "the provider gave no list of languages");
  }
  return *std::move(choices);
}

std::string FindChoice(const KeyboardPage& page, SettingId id, const std::string& word) {
  const std::vector<Choice> choices = ReadChoices(page, id);
  std::vector<std::string> names = {word};
  if (id == SettingId::kType) {
    names.push_back(page.ReadSetting(SettingId::kLanguage).value.value_or("") + "." + word);
  }
  for (const std::string& name : names) {
    if (std::ranges::find(choices, name, &Choice::value) != choices.end()) {
      return name;
    }
  }
  throw HostError(NoChoice(id, word, choices));
}

void CheckStored(const Setting& language, const Setting& type, SettingId id,
                 const std::string& value, bool forced) {
  const bool sets_language = id == SettingId::kLanguage;
  const std::string stored = (sets_language ? language : type).value.value_or("");
  const std::string difference = Quoted(Printable(value)) +
                                 " was handed to the provider; stored is " +
                                 Quoted(Printable(stored));
  const bool may_differ = forced && sets_language && !stored.empty();
  if (stored != value && !may_differ) {
    throw HostError(difference);
  }
  if (sets_language && !type.value.value_or("").starts_with(stored + ".")) {
    throw HostError("the language was stored, but not the type that goes with it");
  }
  if (stored != value) {
    std::fprintf(stderr, "menu_host: %s\n", difference.c_str());
  }
}
