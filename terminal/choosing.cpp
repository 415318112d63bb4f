#include "choosing.h"

#include <algorithm>
#include <cstdio>

#include "error.h"
#include "suggestion.h"
#include "text.h"

namespace {

std::string WordFor(SettingId id) { return id == SettingId::kLanguage ? "language" : "type"; }

std::string UnknownChoice(const Setting& setting, const std::string& word) {
  return "unknown " + WordFor(setting.id) + " " + Quoted(word) + "; " +
         DidYouMean(word, setting.choices) + "'menu_host list " + WordFor(setting.id) +
         "' lists the choices; --force passes any value to the provider";
}

}  // namespace

Setting ReadWithList(const KeyboardPage& page, SettingId id) {
  Setting setting = page.ReadSetting(id);
  if (setting.has_list) {
    return setting;
  }
  if (id == SettingId::kType) {
    const Setting languages = ReadWithList(page, SettingId::kLanguage);
    const std::string example = languages.choices.empty() ? "" : languages.choices.front().value;
    throw HostError(
        "no keyboard types to choose from: no language is stored; 'menu_host set language " +
        example + "' stores one");
  }
  throw HostError("the provider returned no list of languages");
}

std::string FindChoice(const KeyboardPage& page, SettingId id, const std::string& word) {
  const Setting setting = ReadWithList(page, id);
  const auto found = std::ranges::find_if(setting.choices, [&word](const Choice& choice) {
    return choice.value == word || TypeIdOf(choice.value) == word;
  });
  if (found == setting.choices.end()) {
    throw HostError(UnknownChoice(setting, word));
  }
  return found->value;
}

void CheckStored(const Setting& language, const Setting& type, SettingId id,
                 const std::string& value, bool forced) {
  const bool sets_language = id == SettingId::kLanguage;
  const std::string stored = (sets_language ? language : type).value.value_or("");
  const std::string difference =
      "the provider stored " + Quoted(stored) + " instead of " + Quoted(value);
  const bool may_differ = forced && sets_language && !stored.empty();
  if (stored != value && !may_differ) {
    throw HostError(difference);
  }
  if (sets_language && !type.value.value_or("").starts_with(stored + ".")) {
    throw HostError("the provider stored the language, but not its type");
  }
  if (stored != value) {
    std::fprintf(stderr, "menu_host: %s\n", Printable(difference).c_str());
  }
}
