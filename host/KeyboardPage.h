// The model of the keyboard settings page. It gets the texts, the stored values and the choices
// from a provider, and translates the names of the choices.
#ifndef HOST_KEYBOARD_PAGE_H
#define HOST_KEYBOARD_PAGE_H

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Provider.h"

enum class SettingId { kLanguage, kType };

inline constexpr std::array kSettingIds = {SettingId::kLanguage, SettingId::kType};

// Returns the key of a setting, for the provider and for the registry.
const char* KeyOf(SettingId id);

struct Choice {
  std::string value;  // as stored in the registry: "ko_KR", or for a type "ko_KR.kr_ibm106"
  std::string text;   // as the viewer reads it
};

struct Setting {
  SettingId id = SettingId::kLanguage;
  std::string name;
  std::string help;
  std::optional<std::string> value;  // null if nothing is stored
  bool has_list = false;             // false for a type if no language is stored
  std::vector<Choice> choices;
  std::optional<std::size_t> current;  // position in `choices` of the stored value

  // Returns the text of the stored value; null if it is not one of the choices.
  std::optional<std::string> CurrentText() const;
};

struct PageHead {
  std::string title;
  std::string help;
};

// Returns the type id of a type's value: "kr_ibm106" for "ko_KR.kr_ibm106". Returns a value without
// a full stop, such as a language, unchanged.
std::string TypeIdOf(const std::string& value);

class KeyboardPage {
 public:
  // `provider` must live longer than the page.
  explicit KeyboardPage(const Provider& provider) : m_provider(provider) {}

  // If the provider does not return a text or a list, it is empty.
  PageHead ReadHead() const;
  std::string ReadHelpImage() const;  // its path on the device
  Setting ReadSetting(SettingId id) const;

  // Returns the stored value without reading the list; null if nothing is stored.
  std::optional<std::string> ReadValue(SettingId id) const { return m_provider.Value(KeyOf(id)); }

  // Stores a choice. Read the setting again to see what the provider stored.
  void Store(SettingId id, const std::string& value);

  // Returns the text of each type of each language, by type id. The provider lists the types of the
  // stored language only, so this stores each language in turn: use a TemporaryRegistry.
  std::map<std::string, std::string> StoreEachLanguageToReadTypes();

 private:
  std::optional<std::vector<ListItem>> ReadList(SettingId id) const;

  const Provider& m_provider;
};

#endif
