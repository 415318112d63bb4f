#include "KeyboardPage.h"

#include <algorithm>

#include <libintl.h>

namespace {

const char* KeyOf(SettingId id) {
  return id == SettingId::kLanguage ? DATA_PROVIDER_LANGUAGE : DATA_PROVIDER_TYPE;
}

// A language's display value is a message id, which is left to the host to translate.
std::string UserText(SettingId id, const std::string& display_value) {
  return id == SettingId::kLanguage ? dgettext(DATA_PROVIDER_TEXT_DOMAIN, display_value.c_str())
                                    : display_value;
}

}  // namespace

std::string TypeOf(const std::string& value) { return value.substr(value.find('.') + 1); }

PageHead KeyboardPage::ReadHead() const {
  return {m_provider.DisplayName(DATA_PROVIDER_PAGE).value_or(""),
          m_provider.HelpText(DATA_PROVIDER_PAGE).value_or(""),
          m_provider.HelpImagePath(DATA_PROVIDER_PAGE).value_or("")};
}

std::vector<std::string> KeyboardPage::ReadTexts() const {
  std::vector<std::string> texts;
  for (const char* key : {DATA_PROVIDER_PAGE, DATA_PROVIDER_LANGUAGE, DATA_PROVIDER_TYPE}) {
    texts.push_back(m_provider.DisplayName(key).value_or(""));
    texts.push_back(m_provider.HelpText(key).value_or(""));
  }
  return texts;
}

Setting KeyboardPage::ReadSetting(SettingId id) const {
  const std::string key = KeyOf(id);
  Setting setting = {key, m_provider.DisplayName(key).value_or(""),
                     m_provider.HelpText(key).value_or(""), m_provider.Value(key), std::nullopt};
  if (!setting.value) {
    return setting;
  }
  const std::vector<Choice> choices = ReadChoicesIfAny(id);
  const auto current = std::ranges::find(choices, *setting.value, &Choice::value);
  if (current != choices.end()) {
    setting.text = current->text;
  }
  return setting;
}

std::optional<std::vector<Choice>> KeyboardPage::ReadChoices(SettingId id) const {
  const std::optional<std::vector<ListItem>> items = m_provider.ListItems(KeyOf(id));
  if (!items) {
    return std::nullopt;
  }
  std::vector<Choice> choices;
  for (const ListItem& item : *items) {
    choices.push_back({item.value, UserText(id, item.display_value)});
  }
  return choices;
}

std::vector<Choice> KeyboardPage::ReadChoicesIfAny(SettingId id) const {
  return ReadChoices(id).value_or(std::vector<Choice>());
}

std::map<std::string, Choice> KeyboardPage::ReadAllTypes() const {
  std::map<std::string, Choice> types;
  for (const Choice& language : ReadChoicesIfAny(SettingId::kLanguage)) {
    Store(SettingId::kLanguage, language.value);
    for (const Choice& type : ReadChoicesIfAny(SettingId::kType)) {
      types.emplace(TypeOf(type.value), type);
    }
  }
  return types;
}

void KeyboardPage::Store(SettingId id, const std::string& value) const {
  m_provider.SetValue(KeyOf(id), value);
}
