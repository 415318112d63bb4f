#include <climits>
#include <set>

#include "fake_platform.h"
#include "plugin.h"

namespace {

constexpr char kSid[] = "SID_SETUP_LANGUAGE_";

// Nothing but a default language comes of one that no device supports.
std::string DefaultLanguage(const Plugin& plugin) {
  plugin.cbs->set_string(kLanguage, "xx_XX");
  return Platform().registry[kLanguage];
}

}  // namespace

TEST_F(PluginTest, OffersWhatTheDeviceReportsAndAlwaysEnglish) {
  const std::vector<std::string> service_failed = {
      "E InitLanguageInfoVec: devinfo_get_value_int_array Error.\n"};
  const auto known = [](int id, const char* locale) {
    return "I InitLanguageInfoVec: sys_lang_id [" + std::to_string(id) + "], lang_local:" + locale;
  };
  const auto unknown = [](int id) {
    return "W InitLanguageInfoVec: sys_lang_id [" + std::to_string(id) + "] not support";
  };
  const struct {
    const char* name;
    int result;
    std::vector<int> ids;
    std::optional<int> count;
    bool null_values;
    std::vector<std::string> locales;
    const char* default_locale;
    std::vector<std::string> log;
  } cases[] = {
      {"failure", -1, {0, 1}, {}, false, {"en_GB"}, "en_GB", service_failed},
      {"positive failure", 7, {0, 1}, {}, false, {"en_GB"}, "en_GB", service_failed},
      {"none", 0, {}, {}, false, {"en_GB"}, "en_GB", {}},
      {"negative count", 0, {1}, -1, false, {"en_GB"}, "en_GB", {}},
      {"null values", 0, {0, 1}, {}, true, {"en_GB"}, "en_GB", {}},
      {"no English", 0, {0, 99}, {}, false, {"ko_KR", "km_KH", "en_GB"}, "en_GB",
       {known(0, "ko_KR"), known(99, "km_KH")}},
      {"British first", 0, {17, 1}, {}, false, {"en_GB", "en_US"}, "en_GB",
       {known(17, "en_GB"), known(1, "en_US")}},
      {"American first", 0, {1, 17}, {}, false, {"en_US", "en_GB"}, "en_US",
       {known(1, "en_US"), known(17, "en_GB")}},
      {"an unknown id", 0, {0, 32, 1}, {}, false, {"ko_KR", "en_US"}, "en_US",
       {known(0, "ko_KR"), unknown(32), known(1, "en_US")}},
      {"reported twice", 0, {1, 1}, {}, false, {"en_US", "en_US"}, "en_US",
       {known(1, "en_US"), known(1, "en_US")}},
      {"absurd ids", 0, {INT_MIN, -1, 100, INT_MAX}, {}, false, {"en_GB"}, "en_GB",
       {unknown(INT_MIN), unknown(-1), unknown(100), unknown(INT_MAX)}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ResetPlatform();
    Platform().language_result = c.result;
    Platform().language_ids = c.ids;
    Platform().language_count = c.count;
    Platform().language_values_null = c.null_values;
    const Plugin plugin;
    Platform().log.clear();
    EXPECT_EQ(plugin.Values(kLanguage), c.locales);
    EXPECT_EQ(Platform().log, c.log);
    EXPECT_EQ(DefaultLanguage(plugin), c.default_locale);
    EXPECT_EQ(plugin.Values(kLanguage), c.locales) << "the second time";
    EXPECT_EQ(Platform().language_requests, 1);
  }
}

TEST_F(PluginTest, KnowsSixtyOneLanguages) {
  Platform().language_ids.clear();
  for (int id = -2; id < 130; ++id) {
    Platform().language_ids.push_back(id);
  }
  const Plugin plugin;
  const Items items = plugin.List(kLanguage);
  EXPECT_EQ(items.size(), 61u);
  EXPECT_EQ(Platform().Complaints().size(), 132u - 61u);

  std::set<std::string> locales;
  std::multiset<std::string> names;
  for (const auto& [locale, name] : items) {
    EXPECT_TRUE(locale.size() == 5 && std::islower(locale[1]) && locale[2] == '_' &&
                std::isupper(locale[4]))
        << locale;
    locales.insert(locale);
    names.insert(name);
  }
  EXPECT_EQ(locales.size(), 61u);
  for (const char* shared : {"ENGLISH", "SPANISH", "FRENCH", "PORTUGUESE"}) {
    EXPECT_EQ(names.count(std::string(kSid) + shared), 2u) << shared;
  }
  EXPECT_EQ(std::set(names.begin(), names.end()).size(), 57u);
}

TEST_F(PluginTest, KnowsLanguagesById) {
  Platform().language_ids = {0, 3, 16, 29, 34, 42, 44, 45, 98, 99, 1};
  const Items expected = {{"ko_KR", std::string(kSid) + "KOREAN"},
                          {"fr_CA", std::string(kSid) + "FRENCH"},
                          {"nn_NO", std::string(kSid) + "NORWEGIAN"},
                          {"zh_TW", "TV_SID_SETUP_LANGUAGE_TPE"},
                          {"hi_IN", std::string(kSid) + "DEVANAGRI"},
                          {"ca_ES", "COM_SID_SETUP_LANGUAGES_CATALAN"},
                          {"th_TH", std::string(kSid) + "THA"},
                          {"he_IL", std::string(kSid) + "HEB"},
                          {"my_MM", std::string(kSid) + "BURMESE"},
                          {"km_KH", std::string(kSid) + "KHMER"},
                          {"en_US", std::string(kSid) + "ENGLISH"}};
  EXPECT_EQ(Plugin().List(kLanguage), expected);
}
