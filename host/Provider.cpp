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

// A slot that the provider left out still has what the host put there.
void Provider::CheckSlots() const {
  data_provider_cbs defaults = {};
  init_data_provider_cbs(&defaults);
  const auto check = [this](const char* name, auto slot, auto default_slot) {
    if (slot == default_slot) {
      throw HostError("'" + m_plugin + "' is not a complete provider: it left the slot " + name +
                      " empty");
    }
  };
  check("set_int", m_table->set_int, defaults.set_int);
  check("set_string", m_table->set_string, defaults.set_string);
  check("get_int", m_table->get_int, defaults.get_int);
  check("get_string", m_table->get_string, defaults.get_string);
  check("release_string", m_table->release_string, defaults.release_string);
  check("get_display_name", m_table->get_display_name, defaults.get_display_name);
  check("get_help_text", m_table->get_help_text, defaults.get_help_text);
  check("get_list_items", m_table->get_list_items, defaults.get_list_items);
  check("get_list_item_display_value", m_table->get_list_item_display_value,
        defaults.get_list_item_display_value);
  check("get_list_item_string_value", m_table->get_list_item_string_value,
        defaults.get_list_item_string_value);
  check("get_list_item_int_value", m_table->get_list_item_int_value,
        defaults.get_list_item_int_value);
  check("free_list_items", m_table->free_list_items, defaults.free_list_items);
  check("get_module_info", m_table->get_module_info, defaults.get_module_info);
  check("get_help_image_path", m_table->get_help_image_path, defaults.get_help_image_path);
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
