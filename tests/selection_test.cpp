#include <thread>

#include "fake_platform.h"
#include "plugin.h"

namespace {

using Registry = std::map<std::string, std::string>;

Registry Stored(const std::string& language, const std::string& type) {
  return {{kLanguage, language}, {kType, type}};
}

}  // namespace

TEST_F(PluginTest, StoresASupportedLanguageAndItsFirstType) {
  Platform().language_ids = {0, 1, 3, 30};
  const Plugin plugin;
  const struct {
    const char* value;
    Registry stored;
  } cases[] = {
      {"ko_KR", Stored("ko_KR", "ko_KR.kr_ibm106")},
      {"fr_CA", Stored("fr_CA", "fr_CA.us_intl_ibm103i")},  // no types configured
      {"ja_JP", Stored("ja_JP", "ja_JP.us_intl_ibm103i")},  // not configured
      {"de_DE", Stored("en_US", "en_US.us_intl_ibm103i")},  // not supported
      {"", Stored("en_US", "en_US.us_intl_ibm103i")},
      {"ko_kr", Stored("en_US", "en_US.us_intl_ibm103i")},
      {"ko-KR", Stored("en_US", "en_US.us_intl_ibm103i")},
      {"ko_KR ", Stored("en_US", "en_US.us_intl_ibm103i")},
      {"ko_K", Stored("en_US", "en_US.us_intl_ibm103i")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    Platform().registry.clear();
    Platform().log.clear();
    EXPECT_EQ(plugin.cbs->set_string(kLanguage, c.value), 1);
    EXPECT_EQ(Platform().registry, c.stored);
    EXPECT_EQ(Platform().Logged("I set_kvreg"),
              std::vector<std::string>{"I set_kvreg_type_string: set keyboard_language = " +
                                       c.stored.at(kType)});
    EXPECT_EQ(Platform().Complaints(), std::vector<std::string>());
  }
}

TEST_F(PluginTest, ResetsTheTypeWithEveryLanguageWrite) {
  const Plugin plugin;
  plugin.cbs->set_string(kLanguage, "ko_KR");
  plugin.cbs->set_string(kType, "anything, of any form");
  EXPECT_EQ(plugin.Ask(plugin.cbs->get_string, kType), "anything, of any form");
  plugin.cbs->set_string(kLanguage, "ko_KR");
  EXPECT_EQ(plugin.Ask(plugin.cbs->get_string, kType), "ko_KR.kr_ibm106");
  EXPECT_EQ(plugin.Ask(plugin.cbs->get_string, kLanguage), "ko_KR");
}

TEST_F(PluginTest, ReportsWhatItCannotStore) {
  const Plugin plugin;
  const std::string type_info = "I set_kvreg_type_string: set keyboard_language = ";
  const struct {
    const char* key;
    const char* value;
    std::set<std::string> unwritable;
    std::vector<std::string> writes;
    std::vector<std::string> log;
  } cases[] = {
      {kLanguage, "en_US", {kLanguage}, {std::string(kLanguage) + "=en_US"},
       {"E set_kvreg_lang_string: Fail Set Default Keyboard Language"}},
      {kLanguage, "en_US", {kType},
       {std::string(kLanguage) + "=en_US", std::string(kType) + "=en_US.us_intl_ibm103i"},
       {type_info + "en_US.us_intl_ibm103i",
        "E set_kvreg_type_string: Fail Set Default Keyboard Type"}},
      {kType, "%s%n", {kType}, {std::string(kType) + "=%s%n"},
       {type_info + "%s%n", "E set_kvreg_type_string: Fail Set Default Keyboard Type"}},
      {kLanguage, nullptr, {}, {},
       {"E set_kvreg_lang_string: no keyboard language to store: the value is null"}},
      {kType, nullptr, {}, {},
       {"E set_kvreg_type_string: no keyboard type to store: the value is null"}},
      {kPage, "en_US", {}, {}, {}},
      {"unknown", "en_US", {}, {}, {}},
      {nullptr, "en_US", {}, {}, {}},
  };
  plugin.cbs->set_string(kLanguage, "ko_KR");  // the managers' own lines are over
  for (const auto& c : cases) {
    SCOPED_TRACE(c.log.empty() ? "nothing" : c.log.back());
    Platform().unwritable_keys = c.unwritable;
    Platform().writes.clear();
    Platform().log.clear();
    EXPECT_EQ(plugin.cbs->set_string(c.key, c.value), 1);
    EXPECT_EQ(Platform().writes, c.writes);
    EXPECT_EQ(Platform().log, c.log);
  }
}

TEST_F(PluginTest, ListsNoTypesWithoutAStoredLanguage) {
  const Plugin plugin;
  Platform().registry = Stored("ko_KR", "ko_KR.kr_ibm106");
  Platform().unreadable_keys = {kLanguage, kType};
  Platform().log.clear();
  EXPECT_EQ(plugin.Ask(plugin.cbs->get_string, kLanguage), "(null)");
  EXPECT_EQ(plugin.Ask(plugin.cbs->get_string, kType), "(null)");
  EXPECT_EQ(Platform().log, std::vector<std::string>());
  int count = 42;
  EXPECT_EQ(plugin.cbs->get_list_items(kType, &count), nullptr);
  EXPECT_EQ(count, 42);
  EXPECT_EQ(Platform().log, std::vector<std::string>{"E get_qel_typelist: get language failed"});
}

TEST_F(PluginTest, CutsTextsOfTypesAfter254Bytes) {
  for (const std::size_t length : {253u, 254u, 255u, 300u}) {
    const std::string name(length, 'n');
    const std::string type(length - 6, 't');  // with "xx_XX." as long as the name
    Platform().registry[kLanguage] = "xx_XX";
    InstallKeyboardConfig(
        R"({"keyboard_name_map": [{"name": ")" + type + R"(", "display_name": ")" + name +
        R"("}], "lang_local_keyboard_type_table": [{"lang_local": "xx_XX", "keyboard_types": [")" +
        type + R"("]}]})");
    const Items expected = {{("xx_XX." + type).substr(0, 254), name.substr(0, 254)}};
    EXPECT_EQ(Plugin().List(kType), expected) << length;
  }
}

TEST_F(PluginTest, ReadsTheDeviceAnewWhenLoadedAgain) {
  Platform().registry[kLanguage] = "ko_KR";
  for (const char* type : {"a", "b", "c"}) {
    Platform().language_ids = {1, type[0] - 'a' + 5};
    InstallKeyboardConfig(
        std::string(R"({"lang_local_keyboard_type_table": [{"lang_local": "ko_KR", )") +
        R"("keyboard_types": [")" + type + R"("]}]})");
    const Plugin plugin;
    EXPECT_EQ(plugin.Values(kType), std::vector<std::string>{std::string("ko_KR.") + type});
    const char* second[] = {"bg_BG", "hr_HR", "cs_CZ"};
    EXPECT_EQ(plugin.Values(kLanguage), (std::vector<std::string>{"en_US", second[type[0] - 'a']}));
  }
}

TEST_F(PluginTest, BuildsItsConfigurationOnceForManyThreads) {
  Platform().registry[kLanguage] = "ko_KR";
  const Plugin plugin;
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&plugin, i] {
      EXPECT_EQ(plugin.Values(i % 2 == 0 ? kLanguage : kType).size(), 2u);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(Platform().language_requests, 1);
}
