// What takes more than a conversation: the table itself, raw lists and long texts.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "KeyboardPage.h"
#include "conversation.h"
#include "fake_platform.h"

TEST(Provider, FillsItsFourteenSlotsAndLoadsNothing) {
  ResetPlatform();
  Platform().settings["log"] = "info";
  {
    const Provider provider(PluginUnderTest());
    const std::set<std::size_t> own = {0, 6, 8, 11, 12, 13, 14, 16, 17, 19, 20, 24, 44, 48};
    const auto* slots = reinterpret_cast<const std::uintptr_t*>(&provider.table());
    for (std::size_t i = 0; i < 76; ++i) {
      EXPECT_EQ(slots[i] != 0x1000 + i, own.contains(i)) << "slot " << i;
    }
    void* second = nullptr;
    EXPECT_EQ(provider.create_provider()(&second), 0);
    EXPECT_NE(second, &provider.table());
    EXPECT_EQ(provider.delete_provider()(&second), 0);
    second = nullptr;
    EXPECT_EQ(provider.delete_provider()(&second), 0);
    EXPECT_EQ(provider.delete_provider()(nullptr), 1);
  }
  const std::string init = "I create_provider: QEL menuitem provider init\n";
  const std::string fini = "I delete_provider: QEL menuitem provider fini\n";
  EXPECT_EQ(Platform().log, init + init + fini + fini + fini + fini);
  EXPECT_EQ(Platform().language_requests + KeyboardConfigOpens(), 0);
}

TEST(Provider, TakesNullsAndHolesAndLeavesIntegersAlone) {
  ResetPlatform();
  Platform().registry[DATA_PROVIDER_LANGUAGE] = "ko_KR";
  const Provider provider(PluginUnderTest());
  const data_provider_cbs& table = provider.table();
  auto*** list = static_cast<char***>(std::calloc(3, sizeof(char**)));
  for (const int i : {0, 2}) {
    list[i] = static_cast<char**>(std::calloc(2, sizeof(char*)));
    list[i][i / 2] = strdup("one of the two values");
  }
  EXPECT_EQ(table.free_list_items(reinterpret_cast<void**>(list), 3), 0);
  for (const int count : {0, -1}) {
    EXPECT_EQ(table.free_list_items(static_cast<void**>(std::malloc(8)), count), 0);
  }
  EXPECT_EQ(table.free_list_items(nullptr, 3), 0);
  EXPECT_EQ(table.release_string(strdup("")), 0);
  EXPECT_EQ(table.release_string(nullptr), 1);
  EXPECT_EQ(table.get_list_items(DATA_PROVIDER_LANGUAGE, nullptr), nullptr);
  EXPECT_EQ(table.get_display_name(DATA_PROVIDER_PAGE, nullptr), 0);
  EXPECT_EQ(table.get_help_text(DATA_PROVIDER_PAGE, nullptr), 0);
  EXPECT_EQ(table.get_help_image_path(DATA_PROVIDER_PAGE, nullptr), 0);
  EXPECT_EQ(table.get_module_info(DATA_PROVIDER_OWNER, nullptr), 0);
  EXPECT_EQ(table.get_string(DATA_PROVIDER_LANGUAGE, nullptr), 1);
  EXPECT_EQ(provider.create_provider()(nullptr), 1);
  EXPECT_EQ(Platform().log, "E create_provider: no handle to create a provider in\n");

  void* empty[2] = {};
  for (const auto get : {table.get_list_item_display_value, table.get_list_item_string_value}) {
    EXPECT_EQ(get(empty, nullptr), 0);
    for (void* item : {static_cast<void*>(nullptr), static_cast<void*>(empty)}) {
      char none = 0;
      char* text = &none;
      EXPECT_EQ(get(item, &text), 0);
      EXPECT_EQ(text, nullptr);
    }
  }
  int value = 42;
  EXPECT_EQ(table.set_int(DATA_PROVIDER_LANGUAGE, 1), 0);
  EXPECT_EQ(table.get_int(DATA_PROVIDER_LANGUAGE, &value), 0);
  EXPECT_EQ(table.get_list_item_int_value(nullptr, &value), 0);
  EXPECT_EQ(value, 42);
}

// By the table in the documentation, for whoever writes a device's profile.
TEST(Provider, KnowsTheLanguagesThatAreDocumented) {
  std::ifstream file(TEST_LANGUAGE_TABLE);
  const std::regex row(R"(\| (\d+) \| `(\w+)` \| `(\w+)` \|)");
  std::string order = "languages";
  std::string answer;
  std::smatch found;
  for (std::string line; std::getline(file, line);) {
    if (std::regex_match(line, found, row)) {
      order += " " + found.str(1);
      answer += found.str(2) + " | " + found.str(3) + "\n";
    }
  }
  const auto count = std::ranges::count(answer, '\n');
  EXPECT_EQ(Conversation().Say(order), std::to_string(count) + "\n" + answer);
}

std::string AllTypes(const char* configuration) {
  ResetPlatform();
  for (int id = 0; id < 200; ++id) {  // those that are no language's are left out
    Platform().settings["languages"] += " " + std::to_string(id);
  }
  std::ifstream file(configuration);
  InstallKeyboardConfig({std::istreambuf_iterator<char>(file), {}});
  const Provider provider(PluginUnderTest());
  KeyboardPage page(provider);
  std::string types;
  for (const Choice& language : page.ReadSetting(SettingId::kLanguage).choices) {
    page.Store(SettingId::kLanguage, language.value);
    for (const Choice& type : page.ReadSetting(SettingId::kType).choices) {
      types += type.value + " | " + type.text + "\n";
    }
  }
  return types;
}

TEST(Provider, ReadsInWhatIsInstalledAllThatItsSourceHas) {
  const std::string types = AllTypes(TEST_CONFIGURATION);
  EXPECT_NE(types, "");
  EXPECT_EQ(AllTypes(TEST_INSTALLED_CONFIGURATION), types);
}

TEST(Provider, CutsTextsOfTypesAtTheLastByteThatFits) {
  for (const std::size_t room : {0U, 1U}) {  // for the second byte of the last character
    const std::string name = std::string(253 - room, 'n') + "é";
    const std::string type = name.substr(sizeof("xx_XX.") - 1);
    const std::string answer = Conversation().Say(
        R"(types {"keyboard_name_map": [{"name": ")" + type + R"(", "display_name": ")" + name +
        R"("}], "lang_local_keyboard_type_table": [{"lang_local": "xx_XX", "keyboard_types": [")" +
        type + R"("]}]})");
    EXPECT_EQ(answer, "1\nxx_XX." + type.substr(0, 248) + " | " + name.substr(0, 254) + "\n");
  }
}
