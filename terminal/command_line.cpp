#include "command_line.h"

#include <CLI/CLI.hpp>

namespace {

constexpr char kFooter[] =
    "Examples:\n"
    "  menu_host list language\n"
    "                      list the languages\n"
    "  menu_host set language ko_KR\n"
    "                      store a language; its first keyboard type is stored too\n"
    "  menu_host set type us_intl_ibm103i\n"
    "                      store another type of the stored language\n"
    "\n"
    "Exit status:\n"
    "  0                   success\n"
    "  1                   failure, or 'check' found a problem\n"
    "  2                   invalid command line";

constexpr char kCommandFooter[] = "The options of 'menu_host --help' can be used here too.";

void AddSettingArgument(CLI::App& command, Options& options) {
  AddSetting(command, "language|type", "the setting",
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
  AddSettingArgument(*AddCommand(app, options, Command::kList, "list",
                                 "list the choices and mark the current one"),
                     options);
  AddSettingArgument(*AddCommand(app, options, Command::kGet, "get",
                                 "print only the stored value; fail if nothing is stored"),
                     options);
  CLI::App* set =
      AddCommand(app, options, Command::kSet, "set", "store a choice, then show the stored values");
  AddSettingArgument(*set, options);
  set->add_option("value", options.value, "a value that 'list' shows; for a type, its id is enough")
      ->required()
      ->type_name("");
  set->add_flag("--force", options.force,
                "pass the value to the provider even if it is not one\nof the choices");
  AddCommand(app, options, Command::kReset, "reset", "remove the stored values");
  AddCommand(app, options, Command::kInfo, "info",
             "show the provider, its files, and the number of choices");
  AddCommand(app, options, Command::kDevices, "devices",
             "list the device profiles and mark the one in use");
  AddCommand(app, options, Command::kCheck, "check",
             "check the device profile, and the page in each language,\n"
             "for problems that a viewer would see; the registry is\n"
             "not changed");
}

}  // namespace

bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app("Shows the keyboard settings page and stores choices, without a television.",
               "menu_host");
  app.footer(kFooter);
  AddHostOptions(app, MENU_HOST_VERSION, options);
  app.add_flag("--json", options.json, "print a JSON document, for scripts");
  AddCommands(app, options);
  return Parse(app, argc, argv);
}
