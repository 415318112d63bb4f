// The keyboard settings page as the settings application shows it.
#ifndef HOST_KEYBOARD_PAGE_H
#define HOST_KEYBOARD_PAGE_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Provider.h"

enum class SettingId { kLanguage, kType };

struct Choice {
  std::string value;  // as it is stored
  std::string text;   // as the user reads it
};

struct Setting {
  std::string key;
  std::string name;
  std::string help;
  std::optional<std::string> value;  // what is stored
  std::optional<std::string> text;   // how the user reads it; null if it is none of the choices
};

struct PageHead {
  std::string title;
  std::string help;
  std::string help_image;
};

// The value of a type is its language, a full stop and the id of the type: the id; any other value
// as it is.
std::string TypeOf(const std::string& value);

class KeyboardPage {
 public:
  explicit KeyboardPage(const Provider& provider) : m_provider(provider) {}

  PageHead ReadHead() const;
  Setting ReadSetting(SettingId id) const;

  // The name and the help text of each item, in the language of the user.
  std::vector<std::string> ReadTexts() const;

  // Null when the provider gives no list: types are listed for a stored language.
  std::optional<std::vector<Choice>> ReadChoices(SettingId id) const;

  // The same, with none where there is no list.
  std::vector<Choice> ReadChoicesIfAny(SettingId id) const;

  // The types of all languages, in the order of their ids. Stores each language in turn.
  std::map<std::string, Choice> ReadAllTypes() const;

  void Store(SettingId id, const std::string& value) const;

 private:
  const Provider& m_provider;
};

#endif
