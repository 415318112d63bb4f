// menu_screen plays the settings application on a television: it loads the provider and shows the
// keyboard page, driven by the keys of a remote control.

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
#include "text_check.h"
#include "ui_language.h"

namespace {

struct Options : HostOptions {
  std::string picture;
  std::optional<SettingId> open;
  bool check = false;
};

bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app(
      "Shows the keyboard settings page as on a television. Keys: Up, Down, Return, Escape.",
      "menu_screen");
  AddHostOptions(app, MENU_SCREEN_VERSION, options);
  CLI::Option* picture =
      app.add_option("--picture", options.picture, "draw the page into a file, without a display")
          ->check([](const std::string& file) {
            return file.ends_with(".png") ? "" : "the file's name has to end in .png";
          })
          ->type_name("FILE.png");
  CLI::Option* open = AddSetting(app, "--open", "the list that is open at first: language or type",
                                 [&options](SettingId id) { options.open = id; })
                          ->type_name("SETTING");
  app.add_subcommand("check",
                     "measure each text in each language: what is too wide or too high\n"
                     "for its place, and what no installed font has the letters of;\n"
                     "exits with 1 if any is")
      ->excludes(picture)
      ->excludes(open)
      ->callback([&options] { options.check = true; });
  return Parse(app, argc, argv);
}

void Check(const std::string& plugin, const std::string& layout) {
  const TemporaryRegistry registry;
  const Provider provider(plugin);
  Canvas canvas(Target::kBuffer, layout);
  const std::vector<Finding> findings = CheckTexts(KeyboardPage(provider), canvas);
  for (const Finding& finding : findings) {
    std::printf("%s\n", Line(finding).c_str());
  }
  ThrowIfAny(findings);
}

void Show(const Options& options, const std::string& plugin, const std::string& layout) {
  UseRegistry(options.registry);
  const Provider provider(plugin);
  CheckCatalogue(options.ui_language);
  const KeyboardPage page(provider);
  PageState state(page);
  if (options.open) {
    state.Focus(*options.open);
    state.Open();
  }
  Canvas canvas(options.picture.empty() ? Target::kWindow : Target::kBuffer, layout);
  canvas.SetLanguage(options.ui_language);
  canvas.Show(state);
  if (!options.picture.empty()) {
    return canvas.SavePicture(options.picture);
  }
  canvas.OnKey([&](RemoteKey key) {
    state.Press(key);
    canvas.Show(state);
    if (state.is_left()) {
      Canvas::Leave();
    }
  });
  Canvas::Run();
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
    options.check ? Check(sources.plugin, layout) : Show(options, sources.plugin, layout);
  });
}
