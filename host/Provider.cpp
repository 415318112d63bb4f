#include "Provider.h"

#include <dlfcn.h>

#include "error.h"
#include "text.h"

namespace {

std::string OrEmpty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

void Provider::LibraryDeleter::operator()(void* library) const { dlclose(library); }

Provider::Provider(const std::string& plugin)
    : m_plugin(plugin), m_library(dlopen(plugin.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (!m_library) {
    throw HostError("cannot load the plug-in: " + OrEmpty(dlerror()));
  }
  m_create_provider = Entry("create_provider");
  m_delete_provider = Entry("delete_provider");

  void* handle = nullptr;
  const int result = m_create_provider(&handle);
  if (result != 0 || handle == nullptr) {
    throw HostError("cannot create a provider of " + Quoted(plugin) +
                    ": create_provider returned " + std::to_string(result));
  }
  m_table = static_cast<data_provider_cbs*>(handle);
  try {
    CheckSlots();
  } catch (...) {
    m_delete_provider(&handle);
    throw;
  }
}

Provider::~Provider() {
  void* handle = m_table;
  m_delete_provider(&handle);
}

data_provider_entry Provider::Entry(const char* name) const {
  void* symbol = dlsym(m_library.get(), name);
  if (symbol == nullptr) {
    throw HostError(Quoted(m_plugin) + " is not a data provider: it does not export " + name);
  }
  return reinterpret_cast<data_provider_entry>(symbol);
}

// A slot that the provider did not write still has the host's default.
void Provider::CheckSlots() const {
  data_provider_cbs defaults = {};
  init_data_provider_cbs(&defaults);
  const auto check = [this](const char* name, auto slot, auto default_slot) {
    if (slot == default_slot) {
      throw HostError("'" + m_plugin + "' is not a complete provider: it left the slot " + name +
                      " empty");
    }
  };
#define CHECK_SLOT(member, index) check(#member, m_table->member, defaults.member);
  DATA_PROVIDER_SLOTS(CHECK_SLOT)
#undef CHECK_SLOT
}

std::optional<std::string> Provider::Ask(StringCallback callback, const std::string& key) const {
  char* text = nullptr;
  callback(key.c_str(), &text);
  if (text == nullptr) {
    return std::nullopt;
  }
  // Copying may throw.
  const std::unique_ptr<char, int (*)(char*)> owned(text, m_table->release_string);
  return std::string(owned.get());
}

std::optional<std::string> Provider::ModuleInfo(const std::string& key) const {
  return Ask(m_table->get_module_info, key);
}

std::optional<std::string> Provider::DisplayName(const std::string& key) const {
  return Ask(m_table->get_display_name, key);
}

std::optional<std::string> Provider::HelpText(const std::string& key) const {
  return Ask(m_table->get_help_text, key);
}

std::optional<std::string> Provider::HelpImagePath(const std::string& key) const {
  return Ask(m_table->get_help_image_path, key);
}

std::optional<std::string> Provider::Value(const std::string& key) const {
  return Ask(m_table->get_string, key);
}

std::optional<std::vector<ListItem>> Provider::ListItems(const std::string& key) const {
  int count = 0;
  void** list = m_table->get_list_items(key.c_str(), &count);
  return list == nullptr ? std::nullopt : std::optional(TakeList(list, count));
}

std::vector<ListItem> Provider::TakeList(void** list, int count) const {
  std::vector<ListItem> items;
  for (int i = 0; i < count; ++i) {
    char* value = nullptr;
    char* display_value = nullptr;
    m_table->get_list_item_string_value(list[i], &value);
    m_table->get_list_item_display_value(list[i], &display_value);
    items.push_back({OrEmpty(value), OrEmpty(display_value)});
  }
  m_table->free_list_items(list, count);
  return items;
}

void Provider::SetValue(const std::string& key, const std::string& value) const {
  m_table->set_string(key.c_str(), value.c_str());
}
