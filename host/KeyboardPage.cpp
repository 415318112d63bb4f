#include "KeyboardPage.h"

#include <algorithm>

#include "ui_language.h"

namespace {

// Languages can share a name, such as "English". Adds the territory to each of these.
void AddTerritories(const std::vector<ListItem>& languages, std::vector<Choice>& choices) {
  const std::vector<Choice> named = choices;
  for (std::size_t i = 0; i < choices.size(); ++i) {
    const bool is_translated = choices[i].text != languages[i].display_value;
    if (is_translated && std::ranges::count(named, named[i].text, &Choice::text) > 1) {
      choices[i].text = WithTerritory(named[i].text, named[i].value);
    }
  }
}

}  // namespace

const char* KeyOf(SettingId id) {
  return id == SettingId::kLanguage ? DATA_PROVIDER_LANGUAGE : DATA_PROVIDER_TYPE;
}

std::string TypeIdOf(const std::string& value) { return value.substr(value.find('.') + 1); }

std::optional<std::string> Setting::CurrentText() const {
  return current ? std::optional(choices[*current].text) : std::nullopt;
}

PageHead KeyboardPage::ReadHead() const {
  return {m_provider.DisplayName(DATA_PROVIDER_PAGE).value_or(""),
          m_provider.HelpText(DATA_PROVIDER_PAGE).value_or("")};
}

std::string KeyboardPage::ReadHelpImage() const {
  return m_provider.HelpImagePath(DATA_PROVIDER_PAGE).value_or("");
}

Setting KeyboardPage::ReadSetting(SettingId id) const {
  const std::string key = KeyOf(id);
  Setting setting;
  setting.id = id;
  setting.name = m_provider.DisplayName(key).value_or("");
  setting.help = m_provider.HelpText(key).value_or("");
  setting.value = m_provider.Value(key);
  const std::optional<std::vector<ListItem>> list = ReadList(id);
  setting.has_list = list.has_value();
  const std::vector<ListItem> items = list.value_or(std::vector<ListItem>());
  for (const ListItem& item : items) {
    if (!setting.current && item.value == setting.value) {
      setting.current = setting.choices.size();
    }
    setting.choices.push_back({item.value, Translate(item.display_value)});
  }
  if (id == SettingId::kLanguage) {
    AddTerritories(items, setting.choices);
  }
  return setting;
}

// The provider lists the types of the stored language, and logs an error if none is stored.
std::optional<std::vector<ListItem>> KeyboardPage::ReadList(SettingId id) const {
  const bool can_list = id == SettingId::kLanguage || m_provider.Value(DATA_PROVIDER_LANGUAGE);
  return can_list ? m_provider.ListItems(KeyOf(id)) : std::nullopt;
}

void KeyboardPage::Store(SettingId id, const std::string& value) {
  m_provider.SetValue(KeyOf(id), value);
}

std::map<std::string, std::string> KeyboardPage::StoreEachLanguageToReadTypes() {
  std::map<std::string, std::string> texts;
  const Setting languages = ReadSetting(SettingId::kLanguage);
  for (const Choice& language : languages.choices) {
    Store(SettingId::kLanguage, language.value);
    const Setting types = ReadSetting(SettingId::kType);
    for (const Choice& type : types.choices) {
      texts.emplace(TypeIdOf(type.value), type.text);
    }
  }
  return texts;
}
