// The plug-in as the host has it: loaded when constructed, gone when destroyed.
#ifndef TESTS_PLUGIN_H
#define TESTS_PLUGIN_H

#include "data_provider.h"

// Keys of its menu items.
inline constexpr char kPageKey[] = "menu/system/external_device_manager/keyboard-settings";
inline constexpr char kLanguageKey[] = "db/ime/keyboard_language_name";
inline constexpr char kTypeKey[] = "db/ime/hardware_keyboard_name";

class Plugin {
 public:
  Plugin();  // the library under test
  explicit Plugin(const char* file);
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  int (*create_provider)(void** handle);
  int (*delete_provider)(void** handle);
  data_provider_cbs* cbs;

 private:
  const char* m_file;
  void* m_library;
};

#endif
