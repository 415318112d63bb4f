// What takes more than a conversation: the table itself, raw lists, long texts and threads.
#include <barrier>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "conversation.h"
#include "failing_allocator.h"
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
    EXPECT_EQ(provider.ModuleInfo(DATA_PROVIDER_OWNER), "rask.ovnel") << "of the other table";
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
  const long before = LiveBlocks();
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
  EXPECT_EQ(LiveBlocks(), before);

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

TEST(Provider, CutsTextsOfTypesAtTheLastByteThatFits) {
  for (const std::size_t room : {0, 1}) {  // for the second byte of the last character
    const std::string name = std::string(253 - room, 'n') + "é";
    const std::string type = name.substr(sizeof("xx_XX.") - 1);
    const std::string answer = Conversation().Say(
        R"(types {"keyboard_name_map": [{"name": ")" + type + R"(", "display_name": ")" + name +
        R"("}], "lang_local_keyboard_type_table": [{"lang_local": "xx_XX", "keyboard_types": [")" +
        type + R"("]}]})");
    EXPECT_EQ(answer, "1\nxx_XX." + type.substr(0, 248) + " | " + name.substr(0, 254) + "\n");
  }
}

TEST(Provider, ServesThreadsThatAskAtOnceAndReadsTheDeviceOnce) {
  const std::string orders[] = {"get_list_items type",       "get_list_items language",
                                "set_string language ko_KR", "get_display_name type",
                                "get_help_text page",        "get_string language",
                                "get_help_image_path page",  "get_module_info provider/owner"};
  const std::string bad = R"({"keyboard_name_map": [0], "lang_local_keyboard_type_table": [)"
                          R"({"lang_local": "ko_KR", "keyboard_types": ["a", "b"]}]})";
  const auto prepare = [&](Conversation& conversation) {
    conversation.Say("ui-language de_DE");
    conversation.Say("config " + bad);
    conversation.Say("stored language ko_KR");
    conversation.Say("stored type ko_KR.a");
    conversation.Say("get_module_info");  // loads it
  };
  std::vector<std::string> expected;
  {
    Conversation alone;
    prepare(alone);
    for (const std::string& order : orders) {
      expected.push_back(alone.Ask(order));
    }
  }
  for (int round = 0; round < 50; ++round) {
    constexpr std::size_t kThreads = 16;
    Conversation conversation;
    prepare(conversation);
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        start.arrive_and_wait();
        for (std::size_t i = 0; i < std::size(orders); ++i) {
          const std::size_t turn = (i + thread) % std::size(orders);
          EXPECT_EQ(conversation.Ask(orders[turn]), expected[turn]);
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    EXPECT_EQ(Platform().language_requests, 1);
    EXPECT_EQ(KeyboardConfigOpens(), 1);
    EXPECT_EQ(Platform().log, "W ReadKeyboardName: keyboard_name_map[0] skipped: not an object\n");
  }
}

TEST(Provider, OpensAConfigurationThatIsNoJsonOnceToo) {
  Conversation conversation;
  conversation.Say("types ]");
  conversation.Say("get_list_items type");
  EXPECT_EQ(KeyboardConfigOpens(), 1);
}
