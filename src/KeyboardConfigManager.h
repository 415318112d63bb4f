// The keyboard configuration: the keyboard types of each locale and the name of each type.
#ifndef MORVITH_KEYBOARD_CONFIG_MANAGER_H
#define MORVITH_KEYBOARD_CONFIG_MANAGER_H

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

// The standard hash under another name. libstdc++ does not cache the result of a user-defined hash,
// so an entry of two strings takes 80 bytes of the heap instead of 96.
struct TextHash {
  std::size_t operator()(const std::string& text) const noexcept {
    return std::hash<std::string>()(text);
  }
};

// Reads the installed JSON file once, on first use, and never changes afterwards, so all threads
// may read it. If the file cannot be parsed, an error is logged and both tables stay empty. A bad
// element is skipped with a warning. A table or a list that is not an array counts as empty.
class KeyboardConfigManager {
 public:
  // Never null. Throws std::bad_alloc if memory runs out during the first use; the next call tries
  // again. If an allocation of GLib fails while it parses the file, GLib ends the process.
  static KeyboardConfigManager* GetInstance();

  virtual ~KeyboardConfigManager();
  KeyboardConfigManager(const KeyboardConfigManager&) = delete;
  KeyboardConfigManager& operator=(const KeyboardConfigManager&) = delete;

  // Replaces `keyboards` with the type ids of the locale, the preferred one first. Returns false
  // and leaves `keyboards` unchanged if the configuration does not have the locale.
  bool GetLangLocalKeyboards(const std::string& lang_local,
                             std::vector<std::string>& keyboards) const;

  // Returns the display name of a type id, or the id if the configuration has no name for it.
  std::string GetKeyboardDisplayName(const std::string& keyboard_type) const;

 private:
  KeyboardConfigManager();
  void LoadKeyboardConfig(const std::string& path);

  std::unordered_map<std::string, std::string, TextHash> m_keyboard_name_map;
  std::unordered_map<std::string, std::vector<std::string>> m_langlocal2keyboard_map;
};

#endif
