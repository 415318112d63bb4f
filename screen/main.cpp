// menu_screen acts as the settings application on a television: it loads the provider and shows the
// keyboard page, which the keys of a remote control change.

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Canvas.h"
#include "KeyboardPage.h"
#include "PageState.h"
#include "Provider.h"
#include "finding.h"
#include "host_options.h"
#include "platform_setup.h"
#include "program.h"
#include "temporary.h"
#include "text_check.h"
#include "ui_language.h"

namespace {

struct Options : HostOptions {
  std::string picture;
  std::optional<SettingId> open;
  bool check = false;
};

std::string CheckPictureName(const std::string& file) {
  return file.ends_with(".png") ? "" : "the file name must end in .png";
}

bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app(
      "Shows the keyboard settings page as on a television.\n"
      "Keys: Up, Down, Page Up, Page Down, Home, End, Return, Escape.",
      "menu_screen");
  AddHostOptions(app, MENU_SCREEN_VERSION, options);
  CLI::Option* picture =
      app.add_option("--picture", options.picture, "draw the page into a file; needs no display")
          ->check(CheckPictureName)
          ->type_name("FILE.png");
  CLI::Option* open = AddSetting(app, "--open", "the list to open first: language or type",
                                 [&options](SettingId id) { options.open = id; })
                          ->type_name("SETTING");
  app.add_subcommand("check",
                     "measure each text in each language; fail if a text is\n"
                     "too wide or too high for its place, or if no installed\n"
                     "font has its characters")
      ->excludes(picture)
      ->excludes(open)
      ->callback([&options] { options.check = true; });
  return Parse(app, argc, argv);
}

void Check(const Sources& sources, const std::string& layout) {
  const TemporaryRegistry registry;
  const Provider provider(sources.plugin);
  KeyboardPage page(provider);
  Canvas canvas(Target::kBuffer, layout);
  const std::vector<Finding> findings = CheckTexts(page, canvas);
  for (const Finding& finding : findings) {
    std::printf("%s\n", Line(finding).c_str());
  }
  Conclude(findings);
}

void Show(const Options& options, const Sources& sources, const std::string& layout) {
  UseRegistry(sources.registry);
  const Provider provider(sources.plugin);
  CheckCatalogue(sources.ui_language.locale);
  KeyboardPage page(provider);
  PageState state(page);
  if (options.open) {
    state.Focus(*options.open);
    state.Open();
  }
  const bool in_window = options.picture.empty();
  Canvas canvas(in_window ? Target::kWindow : Target::kBuffer, layout);
  canvas.SetLanguage(sources.ui_language.locale);
  canvas.Control(state);
  if (in_window) {
    Canvas::Run();
  } else {
    canvas.SavePicture(options.picture);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return RunProgram("menu_screen", [&] {
    Options options;
    if (!ParseCommandLine(argc, argv, options)) {
      return;
    }
    const Sources sources = SetUpHost(options);
    const std::string layout = OwnFile(MENU_SCREEN_LAYOUT);
    options.check ? Check(sources, layout) : Show(options, sources, layout);
  });
}
