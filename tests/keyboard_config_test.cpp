#include "fake_platform.h"
#include "plugin.h"

namespace {

Items Types(const Plugin& plugin, const std::string& locale) {
  Platform().registry[kLanguage] = locale;
  return plugin.List(kType);
}

std::string Repeated(const std::string& text, std::size_t times) {
  std::string repeated;
  for (std::size_t i = 0; i < times; ++i) {
    repeated += text;
  }
  return repeated;
}

}  // namespace

TEST_F(PluginTest, ReadsTheKeyboardConfiguration) {
  const Plugin plugin;
  const Items korean = {{"ko_KR.kr_ibm106", "Korean (106 keys)"},
                        {"ko_KR.us_intl_ibm103i", "English (US, International)"}};
  EXPECT_EQ(Types(plugin, "ko_KR"), korean);
  EXPECT_EQ(Types(plugin, "fr_CA"), Items());
  for (const char* unknown : {"ko_kr", "ko", "", "xx_XX"}) {
    EXPECT_EQ(Types(plugin, unknown), Items()) << unknown;
  }
  InstallKeyboardConfig(R"({"lang_local_keyboard_type_table": []})");
  EXPECT_EQ(Types(plugin, "ko_KR"), korean) << "read once";
  EXPECT_EQ(Platform().Complaints(), std::vector<std::string>());
}

// What a bad part of the file costs: itself and nothing else, with a line that says so.
TEST_F(PluginTest, LosesNothingButTheBadElement) {
  const std::string names = R"("keyboard_name_map": [{"name": "a", "display_name": "A"}])";
  const std::string locales =
      R"("lang_local_keyboard_type_table": [{"lang_local": "xx_XX", "keyboard_types": ["a"]}])";
  const auto in_names = [&](const std::string& element) {
    return R"({"keyboard_name_map": [)" + element + R"(, {"name": "a", "display_name": "A"}], )" +
           locales + "}";
  };
  const auto in_locales = [&](const std::string& element) {
    return "{" + names + R"(, "lang_local_keyboard_type_table": [)" + element +
           R"(, {"lang_local": "xx_XX", "keyboard_types": ["a"]}]})";
  };
  const auto in_types = [&](const std::string& types) {
    return "{" + names + R"(, "lang_local_keyboard_type_table": [{"lang_local": "xx_XX", )" +
           R"("keyboard_types": )" + types + "}]}";
  };
  const Items good = {{"xx_XX.a", "A"}};
  const Items unnamed = {{"xx_XX.a", "a"}};
  const Items none;
  const std::string name0 = "W ReadKeyboardName: keyboard_name_map[0] skipped: ";
  const std::string locale0 = "W ReadLocale: lang_local_keyboard_type_table[0] skipped: ";
  const std::string types0 = "W ReadKeyboardTypes: lang_local_keyboard_type_table[0].keyboard_types";
  const std::string path = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";
  const std::string unable = "E LoadKeyboardConfig: Unable to parse '" + path + "':";
  const std::string too_deep = unable + "nested deeper than 1000 levels";

  const struct {
    std::string config;
    Items types;
    std::vector<std::string> complaints;
  } cases[] = {
      {"{" + locales + "," + names + "}", good, {}},
      {"{" + names + "," + locales + R"(, "other": [1, {}]})", good, {}},
      {"{" + locales + "}", unnamed, {}},
      {"{" + names + "}", none, {}},
      {"{}", none, {}},
      {"", none, {}},
      {"[]", none, {}},
      {"null", none, {}},
      {in_names(R"({"name": "a", "display_name": "B"})"), {{"xx_XX.a", "B"}}, {}},
      {in_names(R"({"name": "", "display_name": ""})"), good, {}},
      {in_names("null"), good, {name0 + "not an object"}},
      {in_names("[]"), good, {name0 + "not an object"}},
      {in_names("7"), good, {name0 + "not an object"}},
      {in_names("{}"), good, {name0 + "no string \"name\""}},
      {in_names(R"({"name": null, "display_name": "B"})"), good, {name0 + "no string \"name\""}},
      {in_names(R"({"name": "a"})"), good, {name0 + "no string \"display_name\""}},
      {in_names(R"({"name": "a", "display_name": 1})"),
       good,
       {name0 + "no string \"display_name\""}},
      {in_names(R"({"name": "a", "display_name": {}})"),
       good,
       {name0 + "no string \"display_name\""}},
      {in_locales(R"({"lang_local": "xx_XX", "keyboard_types": ["b"]})"), {{"xx_XX.b", "b"}}, {}},
      {in_locales(R"({"lang_local": "xx_XX"})"), none, {}},
      {in_locales("true"), good, {locale0 + "not an object"}},
      {in_locales("[[]]"), good, {locale0 + "not an object"}},
      {in_locales(R"({"keyboard_types": ["a"]})"), good, {locale0 + "no string \"lang_local\""}},
      {in_locales(R"({"lang_local": ["xx_XX"]})"), good, {locale0 + "no string \"lang_local\""}},
      {in_types(R"(["a", "a"])"), {{"xx_XX.a", "A"}, {"xx_XX.a", "A"}}, {}},
      {in_types(R"([null, "a", 3])"),
       good,
       {types0 + "[0] skipped: not a string", types0 + "[2] skipped: not a string"}},
      {in_types("null"), none, {types0 + " skipped: not an array"}},
      {in_types(R"("a")"), none, {types0 + " skipped: not an array"}},
      {R"({"keyboard_name_map": {}, )" + locales + "}",
       unnamed,
       {"W FillTable: keyboard_name_map skipped: not an array"}},
      {"{" + names + R"(, "lang_local_keyboard_type_table": null})",
       none,
       {"W FillTable: lang_local_keyboard_type_table skipped: not an array"}},
      {"{" + names + "," + locales + R"(, "deep": )" + Repeated("[", 990) + Repeated("]", 990) + "}",
       good,
       {}},
      {R"({"text": ")" + Repeated("[\\\"{", 2000) + "\"," + names + "," + locales + "}", good, {}},
      {"/* a \" */" + Repeated("[", 100'000), none, {too_deep}},
      {Repeated(R"({"a":)", 100'000), none, {too_deep}},
      {R"(["\u" ]]]]]]]]]] ", )" + Repeated("[", 1001), none, {too_deep}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.config.substr(0, 200));
    ResetPlatform();
    InstallKeyboardConfig(c.config);
    const Plugin plugin;
    EXPECT_EQ(Types(plugin, "xx_XX"), c.types);
    EXPECT_EQ(Platform().Complaints(), c.complaints);
  }

  const std::optional<std::string> unreadable[] = {std::nullopt, "{", "{\"\xff\": 1}",
                                                   std::string("{}\0", 3)};
  for (const auto& config : unreadable) {
    ResetPlatform();
    InstallKeyboardConfig(config);
    const Plugin plugin;
    EXPECT_EQ(Types(plugin, "ko_KR"), none);
    EXPECT_EQ(Types(plugin, "ko_KR"), none);
    EXPECT_EQ(Platform().Complaints().size(), 1u);
    EXPECT_EQ(Platform().Logged(unable).size(), 1u) << "once, and never again";
  }
}

TEST_F(PluginTest, SurvivesAnyDamagedByte) {
  const std::string whole = kKeyboardConfig;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const char damage : {'\0', '"', '[', '}', '\\', '/', '0', '\xc3'}) {
      std::string damaged = whole;
      damaged[i] = damage;
      InstallKeyboardConfig(damaged);
      Types(Plugin(), "ko_KR");
    }
  }
}
