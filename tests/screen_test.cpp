// The page on a screen: what the keys of a remote control make of it, and what the parts of a
// canvas without a window show then.

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "Canvas.h"
#include "KeyboardPage.h"
#include "PageState.h"
#include "Provider.h"
#include "host_options.h"
#include "platform_setup.h"

namespace {

Provider Load(const std::string& ui_language, const std::string& root) {
  HostOptions options;
  options.ui_language = ui_language;
  options.root = root;
  options.device = TEST_PROFILE;
  options.log_level = "none";
  SetUpHost(options);
  return Provider(TEST_PLUGIN);
}

// A page over a registry of its own.
struct Page {
  explicit Page(const std::string& ui_language = "en_US", const std::string& root = TEST_ROOT)
      : provider(Load(ui_language, root)) {}

  TemporaryRegistry registry;
  Provider provider;
  KeyboardPage page{provider};
};

std::string Described(const PageState& state) {
  const auto value = [&](SettingId id) { return state.row(id).setting.value.value_or("-"); };
  std::string text = value(SettingId::kLanguage) + " " + value(SettingId::kType);
  text += state.focused() == SettingId::kLanguage ? " language" : " type";
  if (state.list()) {
    text += " " + std::to_string(state.list()->focused) + "/" +
            std::to_string(state.list()->choices.size());
  }
  return text + (state.is_left() ? " left" : "");
}

const std::map<char, RemoteKey> kRemoteKeys = {{'u', RemoteKey::kUp},
                                               {'d', RemoteKey::kDown},
                                               {'r', RemoteKey::kReturn},
                                               {'b', RemoteKey::kBack},
                                               {'p', RemoteKey::kToPage}};

TEST(PageState, FollowsTheRemoteControl) {
  const Page opened;
  PageState state(opened.page);
  const std::pair<std::string, std::string> steps[] = {
      {"", "- - language"},
      {"ddd", "- - type"},
      {"r", "- - type 0/0"},  // no language is stored
      {"dur", "- - type"},
      {"uprd", "- - language 1/61"},
      {"uuuu", "- - language 0/61"},
      {"r", "ko_KR ko_KR.kr_ibm106 language"},
      {"rddb", "ko_KR ko_KR.kr_ibm106 language"},
      {"rdddp", "ko_KR ko_KR.kr_ibm106 language"},
      {"drddddd", "ko_KR ko_KR.kr_ibm106 type 2/3"},
      {"r", "ko_KR ko_KR.us_intl_ibm103i type"},
      {"r", "ko_KR ko_KR.us_intl_ibm103i type 2/3"},
      {"burdr", "en_US en_US.us_ibm104 language"},
      {"b", "en_US en_US.us_ibm104 language left"},
  };
  for (const auto& [keys, described] : steps) {
    for (const char key : keys) {
      state.Press(kRemoteKeys.at(key));
    }
    EXPECT_EQ(Described(state), described) << keys;
  }
}

class Screen {
 public:
  Screen(const KeyboardPage& page, const std::string& ui_language)
      : m_state(page), m_canvas(Target::kBuffer, TEST_LAYOUT) {
    m_canvas.SetLanguage(ui_language);
    m_canvas.OnKey([this](RemoteKey key) {
      m_state.Press(key);
      m_canvas.Show(m_state);
    });
    m_canvas.Show(m_state);
  }

  void Press(const std::string& key) {
    evas_event_feed_key_down(evas(), key.c_str(), key.c_str(), nullptr, nullptr, ++m_time, nullptr);
  }

  // As a key repeats that is held.
  void Hold(const std::string& key) {
    evas_event_feed_key_up(evas(), key.c_str(), key.c_str(), nullptr, nullptr, m_time + 1, nullptr);
    Press(key);
  }

  void Resize(int width, int height) {
    Ecore_Evas* window = ecore_evas_ecore_evas_get(evas());
    ecore_evas_resize(window, width, height);
    ecore_evas_manual_render(window);  // which tells of the size
  }

  std::string Text(const std::string& object, const char* part) const {
    return edje_object_part_text_get(Of(object), part);
  }

  bool IsShown(const std::string& object, const char* part) const {
    return edje_object_part_state_get(Of(object), part, nullptr) == std::string("shown");
  }

  Eina_Rectangle TextBox(const char* part) const {
    Eina_Rectangle box = {};
    edje_object_calc_force(m_canvas.page());
    evas_object_geometry_get(edje_object_part_object_get(m_canvas.page(), part), &box.x, &box.y,
                             &box.w, &box.h);
    return box;
  }

  std::string Font(const char* part) const {
    const char* font = nullptr;
    evas_object_text_font_get(edje_object_part_object_get(m_canvas.page(), part), &font, nullptr);
    return font;
  }

  // The place of the part's middle on the page, in the direction of reading: 0 to 1.
  double Place(const char* part) const {
    int x = 0;
    int width = 0;
    edje_object_calc_force(m_canvas.page());
    edje_object_part_geometry_get(m_canvas.page(), part, &x, nullptr, &width, nullptr);
    return (x + width / 2.0) / 1920;
  }

 private:
  Evas* evas() const { return evas_object_evas_get(m_canvas.page()); }

  Evas_Object* Of(const std::string& object) const {
    return object.empty() ? m_canvas.page() : m_canvas.Nested(object);
  }

  PageState m_state;
  Canvas m_canvas;
  unsigned int m_time = 0;
};

TEST(Canvas, ShowsFocusChoicesAndPosition) {
  const Page opened;
  Screen screen(opened.page, "en_US");
  EXPECT_EQ(screen.Text("language", "value"), "\u2014");
  EXPECT_EQ(screen.Text("help.layout", "help"), "Set the language of the keyboard.");
  EXPECT_TRUE(screen.IsShown("language", "frame"));
  screen.Press("Return");
  for (int i = 0; i < 9; ++i) {
    screen.Press("Down");
  }
  EXPECT_TRUE(screen.IsShown("", "list"));
  EXPECT_EQ(screen.Text("", "list.position"), "10 / 61");
  EXPECT_EQ(screen.Text("choice.5", "text"), "Dutch");  // the focus stays in the middle
  EXPECT_TRUE(screen.IsShown("choice.5", "frame"));
  EXPECT_TRUE(screen.IsShown("", "list.above"));
  EXPECT_TRUE(screen.IsShown("", "list.below"));
  screen.Press("KP_Enter");
  EXPECT_FALSE(screen.IsShown("", "list"));
  EXPECT_EQ(opened.provider.Value(DATA_PROVIDER_LANGUAGE), "nl_NL");
  EXPECT_EQ(screen.Text("language", "value"), "Dutch");
  EXPECT_EQ(screen.Text("language", "odd"), "");
  screen.Press("Return");
  screen.Press("Down");
  EXPECT_TRUE(screen.IsShown("choice.4", "mark"));
  EXPECT_FALSE(screen.IsShown("choice.5", "mark"));
  screen.Press("Right");
  EXPECT_TRUE(screen.IsShown("", "list"));
  screen.Press("Left");
  EXPECT_FALSE(screen.IsShown("", "list"));
}

TEST(Canvas, ChoosesOnceWhileAKeyIsHeldAndGrowsWithTheWindow) {
  const Page opened;
  Screen screen(opened.page, "en_US");
  const int height = screen.TextBox("title").h;
  screen.Resize(960, 540);
  EXPECT_NEAR(screen.TextBox("title").h, height / 2.0, 2);
  screen.Press("Return");
  screen.Hold("Return");
  EXPECT_TRUE(screen.IsShown("", "list"));
  screen.Hold("Down");
  EXPECT_EQ(screen.Text("", "list.position"), "2 / 61");
}

TEST(Canvas, MirrorsWhatReadsFromTheRight) {
  const Page opened("ar");
  Screen screen(opened.page, "ar");
  screen.Press("Return");
  EXPECT_GT(screen.Place("language"), 0.5);
  EXPECT_GT(screen.TextBox("title").x, 1920 / 2);
  EXPECT_TRUE(screen.Font("title").ends_with(":lang=ar"));
  EXPECT_LT(screen.Place("list"), 0.5);
  EXPECT_LT(screen.Place("list.position"), screen.Place("list.title"));
  screen.Press("Right");
  EXPECT_FALSE(screen.IsShown("", "list"));
}

TEST(Canvas, SaysWhatIsWrong) {
  const TemporaryFolder root;
  std::filesystem::create_directories(root.PathOf("usr/share/lib-morvith-tv/res"));
  const Page opened("C", root.PathOf(""));
  opened.provider.SetValue(DATA_PROVIDER_LANGUAGE, "en_US");
  Screen screen(opened.page, "en_US");
  EXPECT_TRUE(screen.IsShown("", "help.trouble"));
  EXPECT_EQ(screen.Text("type", "odd"), "en_US.us_intl_ibm103i");
  screen.Press("Down");
  screen.Press("Return");
  EXPECT_TRUE(screen.IsShown("", "list.trouble"));
  setenv("KVREG_FILE", root.PathOf("gone/registry.db").c_str(), 1);
  screen.Press("Escape");
  screen.Press("Up");
  screen.Press("Return");
  screen.Press("Return");
  EXPECT_TRUE(screen.IsShown("language", "trouble"));
  setenv("KVREG_FILE", TEST_PLUGIN, 1);
  Screen unreadable(opened.page, "en_US");
  EXPECT_TRUE(unreadable.IsShown("language", "trouble"));
}

}  // namespace
