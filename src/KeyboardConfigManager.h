// The keyboard configuration: which keyboard types suit a locale, and how a type is named.
#ifndef MORVITH_KEYBOARD_CONFIG_MANAGER_H
#define MORVITH_KEYBOARD_CONFIG_MANAGER_H

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

// The standard's hash. Under a name of its own, GCC's library takes it for quick, and does not keep
// its result in each entry: an entry of two strings then takes 80 bytes of the heap, and not 96.
struct TextHash {
  std::size_t operator()(const std::string& text) const noexcept {
    return std::hash<std::string>()(text);
  }
};

// Reads the installed JSON file once, when first used, and never changes afterwards: it may be read
// from any thread. A file that cannot be read leaves it empty, with an error in the log; a bad
// element of it is skipped, with a warning, and so is a table or a list that is no array.
class KeyboardConfigManager {
 public:
  // Never null. Throws std::bad_alloc when memory is exhausted during the first use; the next call
  // starts anew. (GLib, refused memory while it reads the file, ends the process.)
  static KeyboardConfigManager* GetInstance();

  virtual ~KeyboardConfigManager();
  KeyboardConfigManager(const KeyboardConfigManager&) = delete;
  KeyboardConfigManager& operator=(const KeyboardConfigManager&) = delete;

  // Replaces `keyboards` with the type ids of the locale, the preferred one first. Returns false
  // and leaves `keyboards` as it was when the configuration does not know the locale.
  bool GetLangLocalKeyboards(const std::string& lang_local,
                             std::vector<std::string>& keyboards) const;

  // The name to show for a type id: the id itself when the configuration has no name for it.
  std::string GetKeyboardDisplayName(const std::string& keyboard_type) const;

 private:
  KeyboardConfigManager();
  void LoadKeyboardConfig(const std::string& path);

  std::unordered_map<std::string, std::string, TextHash> m_keyboard_name_map;
  std::unordered_map<std::string, std::vector<std::string>> m_langlocal2keyboard_map;
};

#endif
