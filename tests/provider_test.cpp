// What takes more than a conversation: the table itself, raw lists, texts too long to write down,
// and files that are no JSON at all.
#include <barrier>
#include <cstdlib>
#include <cstring>
#include <set>
#include <sstream>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libintl.h>

#include "conversation.h"
#include "failing_allocator.h"
#include "fake_platform.h"

namespace {

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) {
    repeated += text;
  }
  return repeated;
}

// What is said about the types of Korean under this configuration.
std::string Types(const std::string& config) {
  Conversation conversation;
  InstallKeyboardConfig(config);
  Platform().registry[kLanguageKey] = "ko_KR";
  return conversation.Say("get_list_items type");
}

// A configuration of one type, but for the brace that opens it.
std::string OneType(const std::string& type, const std::string& name) {
  return R"("keyboard_name_map": [{"name": ")" + type + R"(", "display_name": ")" + name +
         R"("}], "lang_local_keyboard_type_table": [{"lang_local": "ko_KR", "keyboard_types": [")" +
         type + R"("]}]})";
}

// Locale and message id of each language that there is, as the library lists them.
std::vector<std::pair<std::string, std::string>> AllLanguages(Conversation& conversation) {
  std::string ids = "device languages";
  for (int id = 0; id < 100; ++id) {
    ids += " " + std::to_string(id);
  }
  conversation.Say(ids);
  std::istringstream lines(conversation.Say("get_list_items language"));
  std::vector<std::pair<std::string, std::string>> languages;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t bar = line.find(" | ");
    if (bar != std::string::npos) {
      languages.emplace_back(line.substr(0, bar), line.substr(bar + 3));
    }
  }
  return languages;
}

// A text that a user can read: in UTF-8, which is the encoding here, and no message id.
bool IsReadable(const std::string& text) {
  return std::mbstowcs(nullptr, text.c_str(), 0) + 1 > 1 &&
         text.find("SID_") == std::string::npos && text.find("IDS_") == std::string::npos &&
         text.find("COM_") == std::string::npos;
}

}  // namespace

TEST(Provider, FillsItsFourteenSlotsAndLoadsNothing) {
  ResetPlatform();
  {
    const Plugin plugin;
    const std::set<std::size_t> own = {0, 6, 8, 11, 12, 13, 14, 16, 17, 19, 20, 24, 44, 48};
    const auto* slots = reinterpret_cast<const std::uintptr_t*>(plugin.cbs);
    for (std::size_t i = 0; i < 76; ++i) {
      EXPECT_EQ(slots[i] != 0x1000 + i, own.count(i) == 1) << "slot " << i;
    }
    void* second = nullptr;
    EXPECT_TRUE(plugin.create_provider(&second) == 0 && second != plugin.cbs);
    EXPECT_EQ(plugin.delete_provider(&second), 0);
    second = nullptr;
    EXPECT_EQ(plugin.delete_provider(&second), 0);
    EXPECT_EQ(plugin.delete_provider(nullptr), 1);
    char* owner = nullptr;
    plugin.cbs->get_module_info("provider/owner", &owner);
    EXPECT_STREQ(owner, "rask.ovnel");  // the other table still works
    plugin.cbs->release_string(owner);
  }
  EXPECT_EQ(Platform().log, Repeated("I create_provider: QEL menuitem provider init\n", 2) +
                                Repeated("I delete_provider: QEL menuitem provider fini\n", 4));
  EXPECT_EQ(Platform().language_requests, 0);
}

TEST(Provider, TakesNullsAndHolesAndLeavesIntegersAlone) {
  ResetPlatform();
  const Plugin plugin;
  const data_provider_cbs& cbs = *plugin.cbs;
  const long before = LiveBlocks();
  auto*** list = static_cast<char***>(std::calloc(3, sizeof(char**)));
  for (const int i : {0, 2}) {
    list[i] = static_cast<char**>(std::calloc(2, sizeof(char*)));
    list[i][i / 2] = strdup("one of the two values");
  }
  EXPECT_EQ(cbs.free_list_items(reinterpret_cast<void**>(list), 3), 0);
  for (const int count : {0, -1}) {
    EXPECT_EQ(cbs.free_list_items(static_cast<void**>(std::malloc(8)), count), 0);
  }
  EXPECT_EQ(cbs.free_list_items(nullptr, 3), 0);
  EXPECT_EQ(cbs.release_string(strdup("")), 0);
  EXPECT_EQ(cbs.release_string(nullptr), 1);
  EXPECT_EQ(LiveBlocks(), before);

  void* item[2] = {};
  int value = 42;
  for (const auto get : {cbs.get_list_item_display_value, cbs.get_list_item_string_value}) {
    EXPECT_EQ(get(nullptr, nullptr) + get(item, nullptr), 0);
    for (void* empty : {static_cast<void*>(nullptr), static_cast<void*>(item)}) {
      char none = 0;
      char* text = &none;
      EXPECT_EQ(get(empty, &text), 0);
      EXPECT_EQ(text, nullptr);
    }
  }
  EXPECT_EQ(cbs.get_list_items(kLanguageKey, nullptr), nullptr);
  EXPECT_EQ(cbs.set_int(kLanguageKey, 1) + cbs.get_int(kLanguageKey, &value), 0);
  EXPECT_EQ(cbs.get_list_item_int_value(nullptr, &value), 0);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(plugin.create_provider(nullptr), 1);
}

TEST(Provider, SpeaksTheLanguageOfEveryLocale) {
  Conversation conversation;
  const auto languages = AllLanguages(conversation);
  EXPECT_EQ(languages.size(), 61u);
  for (const auto& [locale, own_id] : languages) {
    conversation.Say("ui-language " + locale);
    for (const char* item : {"page", "language", "type"}) {
      for (const std::string order : {"get_display_name ", "get_help_text "}) {
        const std::string answer = conversation.Say(order + item);
        EXPECT_TRUE(IsReadable(answer)) << locale << ", " << order << item << ": " << answer;
      }
    }
    for (const auto& [other, id] : languages) {
      const std::string name = dgettext("lib-morvith-tv", id.c_str());
      EXPECT_TRUE(IsReadable(name)) << locale << ", the language of " << other << ": " << name;
    }
  }
}

TEST(Provider, CutsTextsOfTypesAfter254Bytes) {
  for (const std::size_t length : {254u, 255u}) {
    const std::string name(length, 'n');
    const std::string value = std::string(name).replace(0, 6, "ko_KR.");  // just as long
    std::string expected = "1\n";
    expected.append(value, 0, 254).append(" | ").append(name, 0, 254).append("\n");
    EXPECT_EQ(Types("{" + OneType(value.substr(6), name)), expected);
  }
}

TEST(Provider, SurvivesDeepNesting) {
  const std::string good = OneType("a", "A");
  for (const std::string& text :
       {R"({"deep": )" + Repeated("[", 499) + Repeated("]", 499),
        R"({"wide": ["\u00AF\uD7A3 \uE000 \ud83d\uDE00")" + Repeated(",[]", 2000) + "]",
        R"({"text": ")" + Repeated("[", 5000) + Repeated(R"([\"{)", 2000) + "\""}) {
    EXPECT_EQ(Types(text + "," + good), "1\nko_KR.a | A\n") << text.substr(0, 20);
  }
  for (const std::string& text :
       {Repeated("[", 100'000), Repeated(R"({"a":)", 100'000),
        Repeated("[", 300) + R"(/* " */)" + Repeated(R"([{"a":)", 200) + "\"",
        R"(['"', )" + Repeated("[", 100'000) + "\"", R"(["\u", )" + Repeated("[", 501) + "\"",
        Repeated(" ", 5000) + Repeated("[", 501), R"(["\ud800"u0041)" + Repeated("[", 501),
        R"(["\ud800\"0041)" + Repeated("[", 501), R"(["\ud800" ",)" + Repeated("[", 100'000) + "\"",
        R"(["\uDC00" ",)" + Repeated("[", 100'000) + "\""}) {
    EXPECT_NE(Types(text).find(":nested deeper than 500 levels"), std::string::npos)
        << text.substr(0, 20);
  }
}

TEST(Provider, SurvivesDamageAnywhereAndReportsWhatIsNoText) {
  const std::string damages = std::string("\0\xc3", 2) + "\"[}\\/0'";  // the first two are no text
  for (std::size_t i = 0; i + 1 < sizeof(kKeyboardConfig); ++i) {
    std::string damaged = kKeyboardConfig;
    damaged[i] = damages[i % damages.size()];
    EXPECT_TRUE(Types(damaged).rfind("E LoadKeyboardConfig: Unable", 0) == 0 ||
                i % damages.size() > 1)
        << i;
  }
}

TEST(Provider, ServesThreadsThatAskAtOnceAndReadsTheDeviceOnce) {
  const std::string orders[] = {"get_list_items type",       "get_list_items language",
                                "set_string language ko_KR", "get_display_name type",
                                "get_help_text page",        "get_string language",
                                "get_help_image_path page",  "get_module_info provider/owner"};
  const auto prepare = [](Conversation& conversation) {
    conversation.Say("ui-language de_DE");
    conversation.Say("stored language ko_KR");
    InstallKeyboardConfig(R"({"keyboard_name_map": [0], "lang_local_keyboard_type_table": [)"
                          R"({"lang_local": "ko_KR", "keyboard_types": ["a", "b"]}]})");
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
    const std::string& log = Platform().log;
    const std::size_t skipped = log.find("keyboard_name_map[0] skipped");
    EXPECT_TRUE(skipped != std::string::npos && log.find("[0] skipped", skipped + 20) == log.npos);
  }
}
