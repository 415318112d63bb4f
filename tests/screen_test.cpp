// The page on a screen: the keys of a remote control, and what a canvas without a window shows.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "Canvas.h"
#include "temporary.h"
#include "ui_language.h"

// The sign of each part of the layout that is shown or, for "~", mirrored.
const std::map<std::string, const char*> kSigns = {
    {"list", "open "}, {"list.above", "^"}, {"list.below", "v"},   {"list.trouble", "!"},
    {"frame", ">"},    {"trouble", "!"},    {"mark", "*"},         {"help.trouble", "help! "},
    {"value", "~"},    {"text", "~"},       {"list.position", "~"}};

const std::map<char, const char*> kKeys = {{'u', "Up"},     {'d', "Down"}, {'r', "Return"},
                                           {'e', "Escape"}, {'<', "Left"}, {'>', "Right"}};

struct Screen {
  explicit Screen(const std::string& root) : root_variable(kRootVariable, root) {
    canvas.Control(state);
  }

  // Presses the keys, then compares the line. "h" holds the last key: X11 repeats it at the time
  // of its release.
  void Press(const std::string& keys, const std::string& line) {
    Evas* evas = evas_object_evas_get(canvas.page());
    for (const char letter : keys) {
      time += letter == 'h' ? 0 : 1;
      key = letter == 'h' ? key : kKeys.at(letter);
      evas_event_feed_key_down(evas, key, key, nullptr, nullptr, time, nullptr);
      evas_event_feed_key_up(evas, key, key, nullptr, nullptr, time, nullptr);
    }
    EXPECT_EQ(Line(), line) << keys;
  }

  // The rows; then the list if it is open, and its choices with the focus or the mark.
  std::string Line() const {
    std::string line = Described("language") + " | " + Described("type");
    line += state.is_left() ? " | left" : state.list_focus() ? " | " + Described("") : "";
    for (int i = 0; state.list_focus() && i < 10; ++i) {
      const std::string choice = Described("choice." + std::to_string(i));
      line += choice.find_first_of(">*") == 0 ? " | " + std::to_string(i) + choice : "";
    }
    return line;
  }

  std::string Described(const std::string& nested) const {
    const Evas_Object* object = nested.empty() ? canvas.page() : canvas.Nested(nested);
    std::string line;
    for (const auto& [part, sign] : kSigns) {
      const std::string look = edje_object_part_state_get(object, part.c_str(), nullptr);
      line += look == "shown" || look == "mirrored" ? sign : "";
    }
    for (const char* part : {"value", "odd", "text", "list.position", "help"}) {
      const char* text = edje_object_part_text_get(object, part);
      line += text == nullptr ? "" : text;
    }
    return line;
  }

  ScopedVariable root_variable;
  ScopedVariable profile{kProfileVariable, TEST_PROFILE};
  TemporaryRegistry registry;
  Provider provider{TEST_PLUGIN};
  KeyboardPage page{provider};
  PageState state{page};
  Canvas canvas{Target::kBuffer, TEST_LAYOUT};
  const char* key = nullptr;
  unsigned int time = 0;
};

TEST(Screen, FollowsTheRemoteControl) {
  UseUiLanguage("en_US");
  Screen tv(TEST_ROOT);
  tv.Press("ddr", "— | >— | open !");  // types need a stored language
  tv.Press("drurdd", ">— | — | open v3 / 61 | 2>Spanish (Mexico)");
  tv.Press("r", ">Spanish (Mexico) | Latin American");
  tv.Press("rhuhu>",
           ">Spanish (Mexico) | Latin American | open v1 / 61 | 0>Korean | 2*Spanish (Mexico)");
  tv.Press("<drdr", "Spanish (Mexico) | >Latin American (no dead keys)");
  tv.Press("urddddddd",
           ">Spanish (Mexico) | Latin American (no dead keys) | open ^v10 / 61 | 5>Dutch");
  tv.Press(std::string(70, 'd'),
           ">Spanish (Mexico) | Latin American (no dead keys) | open ^61 / 61 | 9>Khmer");
  tv.Press("e", ">Spanish (Mexico) | Latin American (no dead keys)");
  tv.Press("de", "Spanish (Mexico) | >Latin American (no dead keys) | left");
  EXPECT_EQ(tv.Described("help.layout"), "Set the type of the keyboard.");
}

TEST(Screen, ShowsProblems) {
  Screen tv("/nowhere");  // has no configuration, help image and catalogues
  tv.Press("rr", ">SID_SETUP_LANGUAGE_KOREAN | !ko_KR.us_intl_ibm103i");
  const ScopedVariable gone(kRegistryVariable, "/nowhere/registry.db");
  tv.Press("rr", ">!— | —");
  const ScopedVariable unreadable(kRegistryVariable, TEST_PLUGIN);
  tv.Press("r", ">!— | !— | help! open v1 / 61 | 0>SID_SETUP_LANGUAGE_KOREAN");
}

TEST(Screen, FitsTheLanguageAndTheWindow) {
  UseUiLanguage("ar");
  Screen tv(TEST_ROOT);
  tv.Press("dr<", "~— | >~— | open ~!");
  tv.Press(">", "~— | >~—");
  EXPECT_EQ(tv.Described("choice.9"), "~");
  tv.canvas.SetLanguage("ar");
  const char* font = nullptr;
  evas_object_text_font_get(edje_object_part_object_get(tv.canvas.page(), "title"), &font, nullptr);
  EXPECT_TRUE(std::string(font).ends_with(":lang=ar"));
  Ecore_Evas* window = ecore_evas_ecore_evas_get(evas_object_evas_get(tv.canvas.page()));
  ecore_evas_resize(window, 960, 1080);
  ecore_evas_manual_render(window);
  EXPECT_EQ(edje_object_scale_get(tv.canvas.page()), 0.5);
}
