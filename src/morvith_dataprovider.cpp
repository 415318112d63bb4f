// The interface to the host: the two exported functions and the callbacks that the host calls.

#include <array>
#include <cstdlib>
#include <cstring>
#include <exception>

#include <libintl.h>

#include "MenuList.h"
#include "data_provider.h"
#include "devinfo.h"
#include "heap.h"
#include "log.h"
#include "morvith_wrap.h"

namespace {

constexpr char kLocaleDirectory[] = "/usr/share/lib-morvith-tv/res/locale";

constexpr char kBluetoothHelpImage[] = "/usr/share/lib-morvith-tv/res/edje/help_morvith.edj";
constexpr char kHelpImage[] =
    "/usr/share/lib-morvith-tv/res/image/setting_device_manager_ta_non_bt.webp";
constexpr char kSmartControlCapability[] = "com.velmora/featureconf/bt_profile_bt_smart_control";

struct ModuleInfo {
  const char* key;
  const char* value;
};

constexpr std::array<ModuleInfo, 3> kModuleInfo = {{
    {DATA_PROVIDER_OWNER, "rask.ovnel"},
    {DATA_PROVIDER_MAIN_COMPONENT, "TP_OnScreenUI"},
    {DATA_PROVIDER_SUB_COMPONENT, "TP_IME"},
}};

struct MenuItem {
  const char* key;
  const char* display_name_id;
  const char* help_text_id;
  void (*getter)(char** value);
  void (*setter)(const char* value);
  void** (*list_builder)(const char* key, int* count);
};

using MessageId = const char* MenuItem::*;

constexpr std::array<MenuItem, 3> menu_item_list = {{
    {DATA_PROVIDER_PAGE, "COM_TV_KEYBOARD_SETTINGS_SPAUS_SETTINGS",
     "COM_SID_SETTINGS_GNP_CEJUL_CONFIGURE_CONNECTED_KEYBOARD_SETTINGS", nullptr, nullptr, nullptr},
    {DATA_PROVIDER_LANGUAGE, "COM_TV_KEYBOARD_LANGUAGE",
     "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_LANGUAGE", get_kvreg_lang_string,
     set_kvreg_lang_string, get_qel_languagelist},
    {DATA_PROVIDER_TYPE, "COM_TV_KEYBOARD_TYPE", "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_TYPE",
     get_kvreg_type_string, set_kvreg_type_string, get_qel_typelist},
}};

template <typename Rows>
auto FindRow(const Rows& rows, const char* key) -> decltype(rows.data()) {
  for (const auto& row : rows) {
    if (key != nullptr && std::strcmp(row.key, key) == 0) {
      return &row;
    }
  }
  return nullptr;
}

void LogException(const char* key, const char* failure) noexcept {
  try {
    throw;
  } catch (const std::exception& exception) {
    QEL_ERROR("%s: %s: %s", key, failure, exception.what());
  } catch (...) {
    QEL_ERROR("%s: %s: an exception of an unknown type", key, failure);
  }
}

// Runs a request. Logs any exception and stops it here, because no exception may reach the host.
// Returns false if there was an exception.
template <typename Request>
bool CatchAll(const char* key, const char* failure, Request request) noexcept {
  try {
    request();
    return true;
  } catch (...) {
    LogException(key, failure);
    return false;
  }
}

// Sets `*copy` to a copy of the text that `text` returns, or to null on failure.
template <typename Text>
void HandOut(const char* key, char** copy, Text text) noexcept {
  *copy = nullptr;
  CatchAll(key, "cannot answer", [&] { *copy = CopyForHost(text()); });
}

bool GetInforSupportBTSmartControl() {
  bool supported = false;
  if (devinfo_get_custom_bool(kSmartControlCapability, &supported) != 0) {
    QEL_ERROR("get key value failed");
    supported = false;
  }
  QEL_INFO("%d", supported ? 1 : 0);
  return supported;
}

// The callbacks, in the order of their slots. Their names and results are defined by the host; see
// data_provider.h.

int set_int(const char* /*key*/, int /*value*/) noexcept { return 0; }

int set_string(const char* key, const char* value) noexcept {
  const MenuItem* item = FindRow(menu_item_list, key);
  if (item == nullptr || item->setter == nullptr) {
    return 1;
  }
  CatchAll(key, "not stored completely", [&] { item->setter(value); });
  return 1;
}

int get_int(const char* /*key*/, int* /*value*/) noexcept { return 0; }

int get_string(const char* key, char** value) noexcept {
  const MenuItem* item = FindRow(menu_item_list, key);
  if (item != nullptr && item->getter != nullptr && value != nullptr) {
    *value = nullptr;
    CatchAll(key, "cannot read the value", [&] { item->getter(value); });
  }
  return 1;
}

int release_string(char* string) noexcept {
  if (string == nullptr) {
    return 1;
  }
  std::free(string);
  return 0;
}

// Returns the name or the help text of an item in `*text`. `word` is "display name" or "help text",
// for the log.
int GetText(const char* key, MessageId message_id, const char* word, char** text) noexcept {
  const MenuItem* item = FindRow(menu_item_list, key);
  if (item == nullptr || text == nullptr) {
    return 0;
  }
  if (item->*message_id == nullptr) {  // today every row has both ids
    QEL_ERROR("The %s of key %s is NULL", word, item->key);
    *text = nullptr;
    return 0;
  }
  HandOut(key, text, [&] { return dgettext(DATA_PROVIDER_TEXT_DOMAIN, item->*message_id); });
  return 0;
}

int get_display_name(const char* key, char** name) noexcept {
  return GetText(key, &MenuItem::display_name_id, "display name", name);
}

int get_help_text(const char* key, char** text) noexcept {
  return GetText(key, &MenuItem::help_text_id, "help text", text);
}

void** get_list_items(const char* key, int* count) noexcept {
  const MenuItem* item = FindRow(menu_item_list, key);
  if (item == nullptr || item->list_builder == nullptr || count == nullptr) {
    return nullptr;
  }
  void** list = nullptr;
  if (!CatchAll(key, "cannot list the choices", [&] { list = item->list_builder(key, count); })) {
    *count = 0;  // the builder may have failed at any point
  }
  return list;
}

int get_list_item_display_value(void* item, char** value) noexcept {
  if (value != nullptr) {
    *value = item == nullptr ? nullptr : static_cast<MenuListItem*>(item)->display_value;
  }
  return 0;
}

int get_list_item_string_value(void* item, char** value) noexcept {
  if (value != nullptr) {
    *value = item == nullptr ? nullptr : static_cast<MenuListItem*>(item)->string_value;
  }
  return 0;
}

int get_list_item_int_value(void* /*item*/, int* /*value*/) noexcept { return 0; }

int free_list_items(void** list, int count) noexcept {
  FreeMenuList(list, count);
  return 0;
}

int get_module_info(const char* key, char** value) noexcept {
  const ModuleInfo* info = FindRow(kModuleInfo, key);
  if (info != nullptr && value != nullptr) {
    HandOut(key, value, [&] { return info->value; });
  }
  return 0;
}

int get_help_image_path(const char* key, char** path) noexcept {
  const MenuItem* item = FindRow(menu_item_list, key);
  if (item != &menu_item_list.front()) {
    return -1;
  }
  if (path != nullptr) {
    HandOut(key, path,
            [] { return GetInforSupportBTSmartControl() ? kBluetoothHelpImage : kHelpImage; });
  }
  return 0;
}

// Assigns the slots in the order of the header, so that the two are easy to compare.
void FillSlots(data_provider_cbs& table) {
  table.set_int = set_int;
  table.set_string = set_string;
  table.get_int = get_int;
  table.get_string = get_string;
  table.release_string = release_string;
  table.get_display_name = get_display_name;
  table.get_help_text = get_help_text;
  table.get_list_items = get_list_items;
  table.get_list_item_display_value = get_list_item_display_value;
  table.get_list_item_string_value = get_list_item_string_value;
  table.get_list_item_int_value = get_list_item_int_value;
  table.free_list_items = free_list_items;
  table.get_module_info = get_module_info;
  table.get_help_image_path = get_help_image_path;
}

}  // namespace

int create_provider(void** handle) noexcept {
  QEL_INFO("QEL menuitem provider init");
  if (bindtextdomain(DATA_PROVIDER_TEXT_DOMAIN, kLocaleDirectory) == nullptr) {
    QEL_ERROR("cannot bind text domain '%s': texts stay untranslated", DATA_PROVIDER_TEXT_DOMAIN);
  }
  if (handle == nullptr) {
    QEL_ERROR("cannot create a provider: the handle is null");
    return 1;
  }
  auto* table = static_cast<data_provider_cbs*>(std::calloc(1, sizeof(data_provider_cbs)));
  if (table == nullptr) {
    QEL_ERROR("out of memory: cannot create the callback table");
    *handle = nullptr;
    return 1;
  }
  init_data_provider_cbs(table);
  FillSlots(*table);
  *handle = table;  // last, so that the host never has an incomplete table
  return 0;
}

int delete_provider(void** handle) noexcept {
  QEL_INFO("QEL menuitem provider fini");
  if (handle == nullptr) {
    return 1;
  }
  std::free(*handle);
  return 0;
}
