// A data provider, loaded as a plug-in: its callback table as C++ calls. What the provider hands
// out is copied and given back at once.
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
  // Loads `plugin`, a path, or a file name for the dynamic loader to find. Throws HostError if it
  // cannot be loaded or is no complete provider.
  explicit Provider(const std::string& plugin);
  ~Provider();
  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;

  // Null where the provider hands out nothing.
  std::optional<std::string> ModuleInfo(const std::string& key) const;
  std::optional<std::string> DisplayName(const std::string& key) const;
  std::optional<std::string> HelpText(const std::string& key) const;
  std::optional<std::string> HelpImagePath(const std::string& key) const;
  std::optional<std::string> Value(const std::string& key) const;
  std::optional<std::vector<ListItem>> ListItems(const std::string& key) const;

  void SetValue(const std::string& key, const std::string& value) const;

  // Reads a list of the table's and gives it back.
  std::vector<ListItem> TakeList(void** list, int count) const;

  // As they are, for what the calls above do not let through.
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
