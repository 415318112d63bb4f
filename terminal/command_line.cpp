#include "command_line.h"

#include <regex>

#include <CLI/CLI.hpp>

namespace {

void AddOptions(CLI::App& app, Options& options) {
  const CLI::Validator locale(
      [](const std::string& text) {
        return std::regex_match(text, std::regex("[a-z]{2}_[A-Z]{2}"))
                   ? ""
                   : "'" + text + "' does not have the form ll_CC, such as ko_KR";
      },
      "ll_CC");
  const CLI::Validator given([](const std::string& text) { return text.empty() ? "is empty" : ""; },
                             "");
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  app.add_option("--ui-language", options.ui_language, "language in which the page is shown")
      ->check(locale)
      ->capture_default_str();
  app.add_option("--root", options.root,
                 "folder laid out like a device, from which the provider reads its files (default: "
                 "$ROOTFS_DIR, or where menu_host is installed)")
      ->check(given)
      ->type_name("DIR");
  app.add_option("--device", options.device,
                 "device profile: a name or a file (default: $DEVINFO_PROFILE, or global)")
      ->check(given)
      ->type_name("PROFILE");
  app.add_option("--registry", options.registry,
                 "the registry's file (default: $KVREG_FILE, or one in your state folder)")
      ->check(given)
      ->type_name("FILE");
  app.add_option("--log", options.log_level,
                 "least priority of what is logged (default: $QLOG_LEVEL, or warning)")
      ->check(CLI::IsMember({"info", "warning", "error", "none"}))
      ->type_name("LEVEL");
  app.add_option("--plugin", options.plugin,
                 "the data provider (default: the one that is installed with menu_host)")
      ->check(given)
      ->type_name("FILE");
  app.add_flag("--json", options.json, "print one JSON document, for scripts");
}

void AddSettingArgument(CLI::App& command, Options& options) {
  command
      .add_option_function<std::string>(
          "setting",
          [&options](const std::string& word) {
            options.setting = word == "type" ? SettingId::kType : SettingId::kLanguage;
          },
          "language or type")
      ->required()
      ->check(CLI::IsMember({"language", "type"}).description(""))
      ->type_name("");
}

void AddCommands(CLI::App& app, Options& options) {
  app.require_subcommand(0, 1);
  app.fallthrough();  // the options are good behind a command too
  CLI::App* list = app.add_subcommand("list", "the choices, the current one marked");
  CLI::App* set = app.add_subcommand("set", "store a choice, then show what is stored");
  CLI::App* info = app.add_subcommand("info", "who answers for the provider, and its help picture");
  CLI::App* check = app.add_subcommand(
      "check",
      "go through the device's profile and the page in every language, over a registry of its own, "
      "for what would trip a viewer up; exits with 1 if there is anything");
  list->callback([&options] { options.command = Command::kList; });
  set->callback([&options] { options.command = Command::kSet; });
  info->callback([&options] { options.command = Command::kInfo; });
  check->callback([&options] { options.command = Command::kCheck; });
  AddSettingArgument(*list, options);
  AddSettingArgument(*set, options);
  set->add_option("value", options.value, "a value that 'list' shows")->required()->type_name("");
  set->add_flag("--force", options.force,
                "hand the value to the provider even if it is none of the choices");
}

}  // namespace

bool ParseCommandLine(int argc, const char* const* argv, Options& options) {
  CLI::App app("The keyboard settings page, without a television.", "menu_host");
  AddOptions(app, options);
  AddCommands(app, options);
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::Success& help) {
    app.exit(help);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) +
                     "\nThe commands are list, set, info and check; menu_host --help has more.");
  }
}
