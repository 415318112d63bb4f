#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <set>

#include "failing_allocator.h"
#include "fake_platform.h"
#include "plugin.h"


TEST_F(PluginTest, FillsItsFourteenSlotsAndLeavesTheRestToTheHost) {
  const Plugin plugin;
  const std::set<std::size_t> own = {0, 6, 8, 11, 12, 13, 14, 16, 17, 19, 20, 24, 44, 48};
  const auto* slots = reinterpret_cast<const std::uintptr_t*>(plugin.cbs);
  for (std::size_t i = 0; i < 76; ++i) {
    EXPECT_EQ(slots[i] != 0x1000 + i, own.count(i) == 1) << "slot " << i;
  }
}

TEST_F(PluginTest, CreatesIndependentTablesWithoutLoadingAnything) {
  const Plugin plugin;
  void* second = nullptr;
  EXPECT_EQ(plugin.create_provider(&second), 0);
  EXPECT_NE(second, plugin.cbs);
  EXPECT_EQ(plugin.delete_provider(&second), 0);
  void* none = nullptr;
  EXPECT_EQ(plugin.delete_provider(&none), 0);
  EXPECT_EQ(plugin.delete_provider(nullptr), 1);
  EXPECT_EQ(plugin.create_provider(nullptr), 1);

  EXPECT_EQ(Platform().language_requests, 0);
  EXPECT_EQ(Platform().log.front(), "I create_provider: QEL menuitem provider init");
  EXPECT_EQ(Platform().Logged("I delete_provider: QEL menuitem provider fini").size(), 3u);
}

TEST_F(PluginTest, AnswersStringsByKey) {
  setlocale(LC_ALL, "C.UTF-8");
  setenv("LANGUAGE", "ko_KR", 1);
  const Plugin plugin;
  const data_provider_cbs& cbs = *plugin.cbs;
  const struct {
    int (*callback)(const char*, char**);
    const char* key;
    int result;
    const char* text;
  } cases[] = {
      {cbs.get_module_info, "provider/owner", 0, "rask.ovnel"},
      {cbs.get_module_info, "provider/main-component", 0, "TP_OnScreenUI"},
      {cbs.get_module_info, "provider/sub-component", 0, "TP_IME"},
      {cbs.get_module_info, "provider/Owner", 0, "(untouched)"},
      {cbs.get_module_info, nullptr, 0, "(untouched)"},
      {cbs.get_display_name, kPage, 0, "키보드 설정"},
      {cbs.get_display_name, kLanguage, 0, "키보드 언어"},
      {cbs.get_display_name, kType, 0, "키보드 종류"},
      {cbs.get_display_name, "db/ime/Keyboard_language_name", 0, "(untouched)"},
      {cbs.get_display_name, "db/ime/keyboard_language_name/", 0, "(untouched)"},
      {cbs.get_display_name, nullptr, 0, "(untouched)"},
      {cbs.get_help_text, kPage, 0, "연결된 키보드의 설정을 구성합니다."},
      {cbs.get_help_text, kLanguage, 0, "키보드의 언어를 설정합니다."},
      {cbs.get_help_text, kType, 0, "키보드의 종류를 설정합니다."},
      {cbs.get_help_text, "", 0, "(untouched)"},
      {cbs.get_help_image_path, kLanguage, -1, "(untouched)"},
      {cbs.get_help_image_path, nullptr, -1, "(untouched)"},
      {cbs.get_string, kPage, 1, "(untouched)"},
      {cbs.get_string, "unknown", 1, "(untouched)"},
      {cbs.get_string, nullptr, 1, "(untouched)"},
      {cbs.get_string, kLanguage, 1, "(null)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key == nullptr ? "(null)" : c.key);
    EXPECT_EQ(plugin.Ask(c.callback, c.key), c.text);
    EXPECT_EQ(c.callback(c.key, nullptr), c.result);  // and writes through no null pointer
  }
  setenv("LANGUAGE", "xx_XX", 1);
  textdomain("");  // gettext looks at LANGUAGE again
  EXPECT_EQ(plugin.Ask(cbs.get_display_name, kPage), "COM_TV_KEYBOARD_SETTINGS_SPAUS_SETTINGS");
}

TEST_F(PluginTest, ChoosesTheHelpImageByCapabilityOnEachRequest) {
  const Plugin plugin;
  const std::string bluetooth = "/usr/share/lib-morvith-tv/res/edje/help_morvith.edj";
  const std::string other =
      "/usr/share/lib-morvith-tv/res/image/setting_device_manager_ta_non_bt.webp";
  const std::string function = " GetInforSupportBTSmartControl: ";
  const struct {
    std::optional<bool> capability;
    std::string path;
    std::vector<std::string> log;
  } cases[] = {
      {true, bluetooth, {"I" + function + "1"}},
      {false, other, {"I" + function + "0"}},
      {std::nullopt, other, {"E" + function + "get key value failed", "I" + function + "0"}},
  };
  for (const auto& c : cases) {
    Platform().bluetooth = c.capability;
    Platform().log.clear();
    EXPECT_EQ(plugin.Ask(plugin.cbs->get_help_image_path, kPage), c.path);
    EXPECT_EQ(Platform().log, c.log);
  }
}

TEST_F(PluginTest, LeavesIntegersAlone) {
  const Plugin plugin;
  int value = 42;
  EXPECT_EQ(plugin.cbs->set_int(kLanguage, 1), 0);
  EXPECT_EQ(plugin.cbs->get_int(kLanguage, &value), 0);
  EXPECT_EQ(plugin.cbs->get_list_item_int_value(nullptr, &value), 0);
  EXPECT_EQ(value, 42);
}

TEST_F(PluginTest, ListsNothingForWhatHasNoChoices) {
  const Plugin plugin;
  for (const char* key : {kPage, "unknown", static_cast<const char*>(nullptr)}) {
    int count = 42;
    EXPECT_EQ(plugin.cbs->get_list_items(key, &count), nullptr);
    EXPECT_EQ(count, 42);
  }
  EXPECT_EQ(plugin.cbs->get_list_items(kLanguage, nullptr), nullptr);
}

TEST_F(PluginTest, FreesListsWithHolesAndReadsNullItems) {
  const Plugin plugin;
  const long before = LiveBlocks();
  auto** list = static_cast<char***>(std::calloc(4, sizeof(char**)));
  for (int i : {0, 1, 3}) {
    list[i] = static_cast<char**>(std::calloc(2, sizeof(char*)));
  }
  list[0][0] = strdup("string value alone");
  list[3][1] = strdup("display value alone");
  EXPECT_EQ(plugin.cbs->free_list_items(reinterpret_cast<void**>(list), 4), 0);
  EXPECT_EQ(plugin.cbs->free_list_items(static_cast<void**>(std::malloc(8)), 0), 0);
  EXPECT_EQ(plugin.cbs->free_list_items(static_cast<void**>(std::malloc(8)), -1), 0);
  EXPECT_EQ(plugin.cbs->free_list_items(nullptr, 3), 0);
  EXPECT_EQ(LiveBlocks(), before);

  EXPECT_EQ(plugin.cbs->release_string(nullptr), 1);
  char* text = nullptr;
  EXPECT_EQ(plugin.cbs->get_list_item_display_value(nullptr, &text), 0);
  EXPECT_EQ(plugin.cbs->get_list_item_string_value(nullptr, nullptr), 0);
}
