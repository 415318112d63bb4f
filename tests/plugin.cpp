#include "plugin.h"

#include <dlfcn.h>

#include "fake_platform.h"

namespace {

template <typename Function>
void Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
}

}  // namespace

Plugin::Plugin() : m_library(dlopen(TEST_PLUGIN, RTLD_NOW | RTLD_LOCAL)) {
  if (m_library == nullptr) {
    throw std::runtime_error(dlerror());
  }
  Find(m_library, "create_provider", create_provider);
  Find(m_library, "delete_provider", delete_provider);
  void* handle = nullptr;
  EXPECT_EQ(create_provider(&handle), 0);
  cbs = static_cast<data_provider_cbs*>(handle);
}

Plugin::~Plugin() {
  void* handle = cbs;
  EXPECT_EQ(delete_provider(&handle), 0);
  EXPECT_EQ(dlclose(m_library), 0);
  EXPECT_EQ(dlopen(TEST_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

std::string Plugin::Ask(int (*callback)(const char*, char**), const char* key) const {
  char untouched = '\0';
  char* text = &untouched;
  callback(key, &text);
  if (text == &untouched || text == nullptr) {
    return text == nullptr ? "(null)" : "(untouched)";
  }
  std::string copy = text;
  EXPECT_EQ(cbs->release_string(text), 0);
  return copy;
}

Items Plugin::List(const char* key) const {
  int count = -1;
  void** list = cbs->get_list_items(key, &count);
  EXPECT_NE(list, nullptr);
  EXPECT_GE(count, 0);
  Items items;
  for (int i = 0; list != nullptr && i < count; ++i) {
    char* value = nullptr;
    char* text = nullptr;
    EXPECT_EQ(cbs->get_list_item_string_value(list[i], &value), 0);
    EXPECT_EQ(cbs->get_list_item_display_value(list[i], &text), 0);
    items.emplace_back(value, text);
  }
  EXPECT_EQ(cbs->free_list_items(list, count), 0);
  return items;
}

std::vector<std::string> Plugin::Values(const char* key) const {
  std::vector<std::string> values;
  for (const auto& item : List(key)) {
    values.push_back(item.first);
  }
  return values;
}

PluginTest::PluginTest() {
  ResetPlatform();
  Platform().language_ids = {0, 1};
  InstallKeyboardConfig(kKeyboardConfig);
}
