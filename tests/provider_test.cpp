// Tests of the callback table, null arguments, the language table and long texts.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Provider.h"
#include "conversation.h"
#include "fake_platform.h"

TEST(Provider, FillsItsSlotsAndReadsNothing) {
  Begin();
  Platform().settings["log"] = "info";
  {
    const Provider provider(TEST_PLUGIN);
#define SLOT_INDEX(member, index) index,
    const std::set<std::size_t> own = {DATA_PROVIDER_SLOTS(SLOT_INDEX)};
#undef SLOT_INDEX
    const auto* slots = reinterpret_cast<const std::uintptr_t*>(&provider.table());
    for (std::size_t i = 0; i < 76; ++i) {
      EXPECT_EQ(slots[i] != 0x1000 + i, own.contains(i)) << "slot " << i;
    }
    void* second = static_cast<void*>(&second);
    Platform().on_init = [&] { EXPECT_EQ(second, &second) << "written too early"; };
    EXPECT_EQ(provider.create_provider()(&second), 0);
    EXPECT_NE(second, &provider.table());
    EXPECT_EQ(provider.delete_provider()(&second), 0);
    EXPECT_STREQ(Platform().catalogues, "/usr/share/lib-morvith-tv/res/locale");
  }
  const std::string init = "I create_provider: QEL menuitem provider init\n";
  const std::string fini = "I delete_provider: QEL menuitem provider fini\n";
  EXPECT_EQ(Platform().log, init + init + fini + fini);
  EXPECT_EQ(Platform().language_reads + Platform().config_reads, 0);
}

TEST(Provider, AcceptsNullAndLeavesIntegersUnchanged) {
  Begin();
  const Provider provider(TEST_PLUGIN);
  const data_provider_cbs& table = provider.table();
  auto*** list = static_cast<char***>(std::calloc(3, sizeof(char**)));
  for (const int i : {0, 2}) {
    list[i] = static_cast<char**>(std::calloc(2, sizeof(char*)));
    list[i][i / 2] = strdup("one of the two strings");
  }
  EXPECT_EQ(table.free_list_items(reinterpret_cast<void**>(list), 3), 0);
  EXPECT_EQ(table.free_list_items(static_cast<void**>(std::malloc(sizeof(void*))), -1), 0);
  EXPECT_EQ(table.free_list_items(nullptr, 3), 0);

  for (const auto get : {table.get_list_item_display_value, table.get_list_item_string_value}) {
    char none = 0;
    char* text = &none;
    EXPECT_EQ(get(nullptr, &text), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(get(static_cast<void*>(&text), nullptr), 0);
  }
  int value = 42;
  EXPECT_EQ(table.set_int(DATA_PROVIDER_LANGUAGE, 1), 0);
  EXPECT_EQ(table.get_int(DATA_PROVIDER_LANGUAGE, &value), 0);
  EXPECT_EQ(table.get_list_item_int_value(nullptr, &value), 0);
  EXPECT_EQ(value, 42);

  void* handle = nullptr;
  EXPECT_EQ(provider.delete_provider()(&handle), 0);
  EXPECT_EQ(provider.delete_provider()(nullptr), 1);
  EXPECT_EQ(provider.create_provider()(nullptr), 1);
  EXPECT_EQ(Platform().log, "E create_provider: cannot create a provider: the handle is null\n");
}

TEST(Provider, KnowsTheDocumentedLanguages) {
  std::ifstream file(TEST_LANGUAGE_TABLE);
  const std::regex row(R"(\| (\d+) \| `(\w+)` \| `(\w+)` \|)");
  Begin();
  std::string command = "languages";
  std::string answer;
  std::smatch found;
  for (std::string line; std::getline(file, line);) {
    if (std::regex_match(line, found, row)) {
      command += " " + found.str(1);
      answer += found.str(2) + " | " + found.str(3) + "\n";
    }
  }
  EXPECT_EQ(Say(command), answer);
}

TEST(Provider, CutsTextsOfTypesAfter254Bytes) {
  Begin();
  for (const std::size_t room : {0U, 1U}) {  // 0: é is split after byte 254; 1: it fits
    const std::string name = std::string(253 - room, 'n') + "é";
    const std::string type = name.substr(sizeof("xx_XX.") - 1);
    const std::string answer = Say(
        R"(types {"keyboard_name_map": [{"name": ")" + type + R"(", "display_name": ")" + name +
        R"("}], "lang_local_keyboard_type_table": [{"lang_local": "xx_XX", "keyboard_types": [")" +
        type + R"("]}]})");
    EXPECT_EQ(answer, "xx_XX." + type.substr(0, 248) + " | " + name.substr(0, 254) + "\n");
  }
}
