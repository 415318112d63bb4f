// A data provider, loaded as a plug-in. Each method calls a slot of its callback table, copies the
// result, and frees the provider's memory immediately.
#ifndef HOST_PROVIDER_H
#define HOST_PROVIDER_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data_provider.h"

struct ListItem {
  std::string value;
  std::string display_value;
};

class Provider {
 public:
  // Loads the plug-in. `plugin` is a path, or a file name that the dynamic loader searches for.
  // Throws HostError if it cannot be loaded or does not fill all slots. The destructor unloads it.
  explicit Provider(const std::string& plugin);
  ~Provider();
  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;

  // Null if the provider returns nothing.
  std::optional<std::string> ModuleInfo(const std::string& key) const;
  std::optional<std::string> DisplayName(const std::string& key) const;
  std::optional<std::string> HelpText(const std::string& key) const;
  std::optional<std::string> HelpImagePath(const std::string& key) const;
  std::optional<std::string> Value(const std::string& key) const;
  std::optional<std::vector<ListItem>> ListItems(const std::string& key) const;

  void SetValue(const std::string& key, const std::string& value) const;

  // Copies a list of `count` items made by get_list_items, then frees it with free_list_items.
  std::vector<ListItem> TakeList(void** list, int count) const;

  // Direct access to the table and the exported functions, for tests and benchmarks. Both are valid
  // during the lifetime of this object.
  const data_provider_cbs& table() const { return *m_table; }
  data_provider_entry create_provider() const { return m_create_provider; }
  data_provider_entry delete_provider() const { return m_delete_provider; }

 private:
  struct LibraryDeleter {
    void operator()(void* library) const;
  };
  using StringCallback = int (*)(const char* key, char** value);

  data_provider_entry Entry(const char* name) const;
  void CheckSlots() const;
  std::optional<std::string> Ask(StringCallback callback, const std::string& key) const;

  std::string m_plugin;
  std::unique_ptr<void, LibraryDeleter> m_library;
  data_provider_entry m_create_provider;
  data_provider_entry m_delete_provider;
  data_provider_cbs* m_table = nullptr;
};

#endif
