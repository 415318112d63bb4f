// The plug-in as the host has it: loaded when constructed, gone when destroyed.
#ifndef TESTS_PLUGIN_H
#define TESTS_PLUGIN_H

#include "data_provider.h"

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
