// The page on a screen: the keys of a remote control, and what a canvas without a window shows.
#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "Canvas.h"
#include "kvreg.h"
#include "temporary.h"
#include "ui_language.h"

// The sign of each part of the layout that is shown or, for "~", mirrored.
const std::map<std::string, const char*> kSigns = {{"list", "open "}, {"above", "^"},
                                                   {"below", "v"},    {"trouble", "!"},
                                                   {"frame", ">"},    {"mark", "*"},
                                                   {"value", "~"},    {"text", "~"},
                                                   {"position", "~"}, {"help.trouble", "help! "}};

const std::map<char, const char*> kKeys = {{'u', "Up"},
                                           {'d', "Down"},
                                           {'r', "Return"},
                                           {'k', "KP_Enter"},
                                           {'e', "Escape"},
                                           {'<', "Left"},
                                           {'>', "Right"},
                                           {'p', "Prior"},
                                           {'n', "Next"},
                                           {'^', "Home"},
                                           {'$', "End"},
                                           {'+', "XF86ChannelUp"},
                                           {'-', "XF86ChannelDown"}};

struct Screen {
  explicit Screen(const std::string& root) : root_variable(kRootVariable, root) {
    canvas.Control(state);
  }

  // Presses the keys, then compares the line.
  void Press(const std::string& keys, const std::string& line) {
    Evas* evas = evas_object_evas_get(canvas.page());
    for (const char letter : keys) {
      const char* key = kKeys.at(letter);
      ++time;
      evas_event_feed_key_down(evas, key, key, nullptr, nullptr, time, nullptr);
      evas_event_feed_key_up(evas, key, key, nullptr, nullptr, time, nullptr);
    }
    EXPECT_EQ(Line(), line) << keys;
  }

  // The rows; then the list if it is open, and its choices with the focus or the mark.
  std::string Line() const {
    std::string line = Described(canvas.row("language")) + " | ";
    line += Described(canvas.row("type"));
    line += state.is_left()      ? " | left"
            : state.list_focus() ? " | " + Described(canvas.page()) + Described(canvas.list())
                                 : "";
    for (std::size_t i = 0; state.list_focus() && i < 10; ++i) {
      const std::string choice = Described(canvas.choice(i));
      line += choice.find_first_of(">*") == 0 ? " | " + std::to_string(i) + choice : "";
    }
    return line;
  }

  static std::string Described(const Evas_Object* object) {
    std::string line;
    for (const auto& [part, sign] : kSigns) {
      const std::string look = edje_object_part_state_get(object, part.c_str(), nullptr);
      line += look == "shown" || look == "mirrored" ? sign : "";
    }
    for (const char* part : {"value", "unusable.value", "odd", "text", "position"}) {
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
  unsigned int time = 0;
};

TEST(Screen, FollowsTheRemoteControl) {
  UseUiLanguage("en_US");
  Screen tv(TEST_ROOT);
  tv.Press("", ">— | —");
  tv.Press("ddr", ">— | — | open v1 / 61 | 0>Korean");  // types need a stored language
  tv.Press("dd", ">— | — | open v3 / 61 | 2>Spanish");
  tv.Press("k", ">Spanish | Latin American");
  tv.Press("ruu>", ">Spanish | Latin American | open v1 / 61 | 0>Korean | 2*Spanish");
  tv.Press("<drdr", "Spanish | >Latin American (no dead keys)");
  tv.Press("urddddddd", ">Spanish | Latin American (no dead keys) | open ^v10 / 61 | 5>Dutch");
  const std::string open = ">Spanish | Latin American (no dead keys) | open ";
  tv.Press("$d", open + "^61 / 61 | 9>Khmer");
  tv.Press("pd+", open + "^v42 / 61 | 5>Indonesian");
  tv.Press("^u-nn", open + "^v31 / 61 | 5>Japanese");
  tv.Press("e", ">Spanish | Latin American (no dead keys)");
  tv.Press("de", "Spanish | >Latin American (no dead keys) | left");
  const Evas_Object* help = tv.canvas.row("help.layout");
  EXPECT_STREQ(edje_object_part_text_get(help, "help"), "Set the type of the keyboard.");
}

TEST(Screen, ShowsProblems) {
  const TemporaryFolder root;  // without a configuration, a help image and catalogues
  std::filesystem::create_directories(root.PathOf("usr/share/lib-morvith-tv/res"));
  Screen tv(root.PathOf(""));
  tv.Press("rr", ">SID_SETUP_LANGUAGE_KOREAN | !ko_KR.us_intl_ibm103i");
  const ScopedVariable gone(kRegistryVariable, root.PathOf("gone/registry.db"));
  tv.Press("rr", ">!— | — | help! open v1 / 61 | 0>!SID_SETUP_LANGUAGE_KOREAN");  // not stored
  tv.Press("e", ">— | —");
  const ScopedVariable unreadable(kRegistryVariable, TEST_PLUGIN);
  tv.Press("re", ">!— | !—");
}

TEST(Screen, MirrorsAValueThatIsNoChoice) {
  UseUiLanguage("ar");
  Screen tv(TEST_ROOT);
  kvreg_set_str(KeyOf(SettingId::kLanguage), "xx_XX");
  tv.Press("r<", ">!~xx_XX | ~— | open v~1 / 61 | 0>~الكورية");
  tv.Press(">", ">!~xx_XX | ~—");
}
