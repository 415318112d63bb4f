#include "KeyboardPage.h"

#include <algorithm>

#include <libintl.h>

#include "error.h"
#include "ui_language.h"

namespace {

constexpr char kPageKey[] = "menu/system/external_device_manager/keyboard-settings";

std::string KeyOf(SettingId id) {
  return id == SettingId::kLanguage ? "db/ime/keyboard_language_name"
                                    : "db/ime/hardware_keyboard_name";
}

// A language's display value is a message id, which is left to the host to translate.
std::string UserText(SettingId id, const std::string& display_value) {
  return id == SettingId::kLanguage ? dgettext(kTextDomain, display_value.c_str()) : display_value;
}

}  // namespace

PageHead KeyboardPage::ReadHead() const {
  return {m_provider.DisplayName(kPageKey).value_or(""), m_provider.HelpText(kPageKey).value_or(""),
          m_provider.HelpImagePath(kPageKey).value_or("")};
}

std::vector<std::string> KeyboardPage::ReadTexts() const {
  std::vector<std::string> texts;
  for (const std::string& key :
       {std::string(kPageKey), KeyOf(SettingId::kLanguage), KeyOf(SettingId::kType)}) {
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
  const std::vector<Choice> choices = FindChoices(id).value_or(std::vector<Choice>());
  const auto current =
      std::find_if(choices.begin(), choices.end(),
                   [&setting](const Choice& choice) { return choice.value == setting.value; });
  if (current != choices.end()) {
    setting.text = current->text;
  }
  return setting;
}

std::optional<std::vector<Choice>> KeyboardPage::FindChoices(SettingId id) const {
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

std::vector<Choice> KeyboardPage::ReadChoices(SettingId id) const {
  std::optional<std::vector<Choice>> choices = FindChoices(id);
  if (!choices) {
    throw HostError(id == SettingId::kType
                        ? "no keyboard types to choose from: no language is stored (store one with "
                          "'menu_host set language en_US'), or the registry cannot be read"
                        : "the provider gave no list of languages");
  }
  return *std::move(choices);
}

void KeyboardPage::Store(SettingId id, const std::string& value) const {
  m_provider.SetValue(KeyOf(id), value);
}
