#include "KeyboardPage.h"

#include <libintl.h>

namespace {

// The display value of a language is a message id, which the host translates.
std::string UserText(SettingId id, const std::string& display_value) {
  return id == SettingId::kLanguage ? dgettext(DATA_PROVIDER_TEXT_DOMAIN, display_value.c_str())
                                    : display_value;
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
  const std::optional<std::vector<ListItem>> items = ReadList(id);
  setting.has_list = items.has_value();
  for (const ListItem& item : items.value_or(std::vector<ListItem>())) {
    if (!setting.current && item.value == setting.value) {
      setting.current = setting.choices.size();
    }
    setting.choices.push_back({item.value, UserText(id, item.display_value)});
  }
  return setting;
}

// The provider lists the types of the stored language, and logs an error if there is none.
std::optional<std::vector<ListItem>> KeyboardPage::ReadList(SettingId id) const {
  const bool can_list = id == SettingId::kLanguage || m_provider.Value(DATA_PROVIDER_LANGUAGE);
  return can_list ? m_provider.ListItems(KeyOf(id)) : std::nullopt;
}

void KeyboardPage::Store(SettingId id, const std::string& value) {
  m_provider.SetValue(KeyOf(id), value);
}

std::map<std::string, std::string> KeyboardPage::StoreEachLanguageToReadTypes() {
  std::map<std::string, std::string> types;
  for (const Choice& language : ReadSetting(SettingId::kLanguage).choices) {
    Store(SettingId::kLanguage, language.value);
    for (const Choice& type : ReadSetting(SettingId::kType).choices) {
      types.emplace(TypeIdOf(type.value), type.text);
    }
  }
  return types;
}
