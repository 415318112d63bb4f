#include "command_line.h"

#include <CLI/CLI.hpp>

namespace {

constexpr char kFooter[] =
    "Examples:\n"
    "  menu_host list language  the choices\n"
    "  menu_host set language ko_KR\n"
    "                           store one; the first type of that language is stored with it\n"
    "  menu_host set type us_intl_ibm103i\n"
    "                           store another type of the language that is stored\n"
    "\n"
    "Exit status:\n"
    "  0                        it is done\n"
    "  1                        it cannot be done, or 'check' found something\n"
    "  2                        the command line is not understood";

constexpr char kCommandFooter[] = "The options of 'menu_host --help' are good here too.";

void AddSettingArgument(CLI::App& command, Options& options) {
  AddSetting(command, "language|type", "which of the two settings",
             [&options](SettingId id) { options.setting = id; })
      ->required()
      ->type_name("");
}

CLI::App* AddCommand(CLI::App& app, Options& options, Command command, const char* name,
                     const char* description) {
  CLI::App* added = app.add_subcommand(name, description);
  added->footer(kCommandFooter);
  added->callback([&options, command] { options.command = command; });
  return added;
}

void AddCommands(CLI::App& app, Options& options) {
  app.require_subcommand(0, 1);
  AddSettingArgument(
      *AddCommand(app, options, Command::kList, "list", "the choices, the current one marked"),
      options);
  AddSettingArgument(*AddCommand(app, options, Command::kGet, "get",
                                 "the stored value alone; exits with 1 if nothing is stored"),
                     options);
  CLI::App* set =
      AddCommand(app, options, Command::kSet, "set", "store a choice, then show what is stored");
  AddSettingArgument(*set, options);
  set->add_option("value", options.value,
                  "a value that 'list' shows; a type may leave its language out")
      ->required()
      ->type_name("");
  set->add_flag("--force", options.force,
                "hand the value to the provider even if it is none of the\nchoices");
  AddCommand(app, options, Command::kReset, "reset", "forget what is stored");
  AddCommand(app, options, Command::kInfo, "info",
             "what answers, where it takes its answers from, and how many\nthere are");
  AddCommand(app, options, Command::kDevices, "devices",
             "the device profiles, the one in use marked");
  AddCommand(app, options, Command::kCheck, "check",
             "go through the device's profile and the page in every\n"
             "language, over a registry of its own, for what would trip a\n"
             "viewer up");
}

}  // namespace

bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app("Shows and sets the keyboard settings page, without a television.", "menu_host");
  app.footer(kFooter);
  AddHostOptions(app, MENU_HOST_VERSION, options);
  app.add_flag("--json", options.json, "print one JSON document, for scripts");
  AddCommands(app, options);
  return Parse(app, argc, argv);
}
