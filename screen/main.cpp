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

constexpr int kNameColumn = 27;

struct Options : HostOptions {
  std::string picture;
  std::optional<SettingId> open;
  bool check = false;
};

// Returns whether there is anything left to do. Throws UsageError for what cannot be understood.
bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app(
      "Shows the keyboard settings page as on a television. Keys: Up, Down, Return, Escape.",
      "menu_screen");
  app.set_version_flag("--version", "menu_screen " MENU_SCREEN_VERSION,
                       "Print the version and exit");
  app.get_formatter()->column_width(kNameColumn);
  app.fallthrough();
  AddHostOptions(app, options);
  app.add_option("--picture", options.picture,
                 "draw the page into a file (.png), without a display")
      ->type_name("FILE");
  app.add_option_function<std::string>(
         "--open",
         [&options](const std::string& word) {
           options.open = word == "type" ? SettingId::kType : SettingId::kLanguage;
         },
         "the list that is open at first: language or type")
      ->check(CLI::IsMember({"language", "type"}).description(""))
      ->type_name("SETTING");
  app.add_subcommand("check",
                     "measure each text in each language: what is too wide for its place,\n"
                     "and what no installed font has the letters of; exits with 1 if any is")
      ->callback([&options] { options.check = true; });
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::Success& help) {
    app.exit(help);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) + "\nmenu_screen --help has more.");
  }
}

void Check(const Provider& provider, const std::string& layout) {
  const TemporaryRegistry registry;
  Canvas canvas(Target::kBuffer, layout);
  const std::vector<Finding> findings = CheckTexts(KeyboardPage(provider), canvas);
  for (const Finding& finding : findings) {
    std::printf("%s\n", Line(finding).c_str());
  }
  if (!findings.empty()) {
    throw HostError("findings: " + std::to_string(findings.size()));
  }
}

void Show(const Options& options, const Provider& provider, const std::string& layout) {
  UseRegistry(options.registry);
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
    const Provider provider(sources.plugin);
    const std::string layout = OwnFile(MENU_SCREEN_LAYOUT);
    options.check ? Check(provider, layout) : Show(options, provider, layout);
  });
}
