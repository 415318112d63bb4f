#include "Provider.h"

#include <array>

#include <dlfcn.h>

#include "error.h"

// The host's defaults: empty slots, so that a slot which the provider left out can be told.
void init_data_provider_cbs(data_provider_cbs* table) { *table = {}; }

namespace {

std::string OrEmpty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

void Provider::LibraryDeleter::operator()(void* library) const { dlclose(library); }

Provider::Provider(const std::string& plugin)
    : m_plugin(plugin), m_library(dlopen(plugin.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (!m_library) {
    throw HostError("cannot load the plug-in: " + OrEmpty(dlerror()) +
                    "\nInstall libmorvith-dataprovider, or name the file with --plugin.");
  }
  const auto create = Symbol<int (*)(void**)>("create_provider");
  m_delete_provider = Symbol<int (*)(void**)>("delete_provider");

  void* handle = nullptr;
  const int result = create(&handle);
  if (result != 0 || handle == nullptr) {
    throw HostError("'" + plugin + "' made no provider: create_provider returned " +
                    std::to_string(result));
  }
  m_callbacks = static_cast<data_provider_cbs*>(handle);
  try {
    CheckSlots();
  } catch (...) {
    m_delete_provider(&handle);
    throw;
  }
}

Provider::~Provider() {
  void* handle = m_callbacks;
  m_delete_provider(&handle);
}

template <typename Function>
Function Provider::Symbol(const char* name) const {
  void* symbol = dlsym(m_library.get(), name);
  if (symbol == nullptr) {
    throw HostError("'" + m_plugin + "' is not a data provider: it does not export " + name);
  }
  return reinterpret_cast<Function>(symbol);
}

void Provider::CheckSlots() const {
  struct Slot {
    const char* name;
    bool filled;
  };
  const data_provider_cbs& callbacks = *m_callbacks;
  const std::array<Slot, 14> slots = {{
      {"set_int", callbacks.set_int != nullptr},
      {"set_string", callbacks.set_string != nullptr},
      {"get_int", callbacks.get_int != nullptr},
      {"get_string", callbacks.get_string != nullptr},
      {"release_string", callbacks.release_string != nullptr},
      {"get_display_name", callbacks.get_display_name != nullptr},
      {"get_help_text", callbacks.get_help_text != nullptr},
      {"get_list_items", callbacks.get_list_items != nullptr},
      {"get_list_item_display_value", callbacks.get_list_item_display_value != nullptr},
      {"get_list_item_string_value", callbacks.get_list_item_string_value != nullptr},
      {"get_list_item_int_value", callbacks.get_list_item_int_value != nullptr},
      {"free_list_items", callbacks.free_list_items != nullptr},
      {"get_module_info", callbacks.get_module_info != nullptr},
      {"get_help_image_path", callbacks.get_help_image_path != nullptr},
  }};
  for (const Slot& slot : slots) {
    if (!slot.filled) {
      throw HostError("'" + m_plugin + "' is not a complete provider: it left the slot " +
                      slot.name + " empty");
    }
  }
}

std::optional<std::string> Provider::Ask(StringCallback callback, const std::string& key) const {
  char* handed_out = nullptr;
  callback(key.c_str(), &handed_out);
  if (handed_out == nullptr) {
    return std::nullopt;
  }
  const std::unique_ptr<char, int (*)(char*)> owned(handed_out, m_callbacks->release_string);
  return std::string(owned.get());
}

std::optional<std::string> Provider::ModuleInfo(const std::string& key) const {
  return Ask(m_callbacks->get_module_info, key);
}

std::optional<std::string> Provider::DisplayName(const std::string& key) const {
  return Ask(m_callbacks->get_display_name, key);
}

std::optional<std::string> Provider::HelpText(const std::string& key) const {
  return Ask(m_callbacks->get_help_text, key);
}

std::optional<std::string> Provider::HelpImagePath(const std::string& key) const {
  return Ask(m_callbacks->get_help_image_path, key);
}

std::optional<std::string> Provider::Value(const std::string& key) const {
  return Ask(m_callbacks->get_string, key);
}

std::optional<std::vector<ListItem>> Provider::ListItems(const std::string& key) const {
  int count = 0;
  void** list = m_callbacks->get_list_items(key.c_str(), &count);
  if (list == nullptr) {
    return std::nullopt;
  }
  std::vector<ListItem> items;
  for (int i = 0; i < count; ++i) {
    char* value = nullptr;
    char* display_value = nullptr;
    m_callbacks->get_list_item_string_value(list[i], &value);
    m_callbacks->get_list_item_display_value(list[i], &display_value);
    items.push_back({OrEmpty(value), OrEmpty(display_value)});
  }
  m_callbacks->free_list_items(list, count);
  return items;
}

void Provider::SetValue(const std::string& key, const std::string& value) const {
  m_callbacks->set_string(key.c_str(), value.c_str());
}
