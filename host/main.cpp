// menu_host plays the settings application: it loads the provider, asks it for the keyboard page,
// and hands back what the user chose.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <iterator>
#include <regex>

#include <CLI/CLI.hpp>

#include "KeyboardPage.h"
#include "Provider.h"
#include "error.h"
#include "join.h"
#include "platform_setup.h"
#include "report.h"
#include "ui_language.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct Options {
  std::string ui_language = "en_US";
  std::string device;
  std::string registry;
  std::string log_level;
  std::string plugin = "libmorvith_dataprovider.so";
  bool json = false;

  SettingId setting = SettingId::kLanguage;
  std::string value;
  bool force = false;
};

struct Commands {
  CLI::App* list;
  CLI::App* set;
  CLI::App* info;
};

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
  app.add_option("--plugin", options.plugin, "the data provider")
      ->check(given)
      ->type_name("FILE")
      ->capture_default_str();
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

Commands AddCommands(CLI::App& app, Options& options) {
  app.require_subcommand(0, 1);
  app.fallthrough();  // the options are good behind a command too
  const Commands commands = {
      app.add_subcommand("list", "the choices, the current one marked"),
      app.add_subcommand("set", "store a choice, then show what is stored"),
      app.add_subcommand("info", "who answers for the provider"),
  };
  AddSettingArgument(*commands.list, options);
  AddSettingArgument(*commands.set, options);
  commands.set->add_option("value", options.value, "a value that 'list' shows")
      ->required()
      ->type_name("");
  commands.set->add_flag("--force", options.force,
                         "hand the value to the provider even if it is none of the choices");
  return commands;
}

// The provider's answer does not tell whether it stored the value: only reading it back does. It
// stores a language that is none of the choices as another one, and a type with each language.
void CheckStored(const Setting& language, const Setting& type, const Options& options,
                 bool is_choice) {
  const bool sets_language = options.setting == SettingId::kLanguage;
  const std::string stored = (sets_language ? language : type).value.value_or("");
  const std::string difference =
      "'" + options.value + "' was handed to the provider; stored is '" + stored + "'";
  if (stored != options.value && (is_choice || !sets_language || stored.empty())) {
    throw HostError(difference);
  }
  if (sets_language && type.value.value_or("").rfind(stored + ".", 0) != 0) {
    throw HostError("the language was stored, but not the type that goes with it");
  }
  if (stored != options.value) {
    std::fprintf(stderr, "menu_host: %s\n", difference.c_str());
  }
}

void Set(const KeyboardPage& page, const Options& options, Report& report) {
  std::vector<std::string> values;
  if (!options.force || options.setting == SettingId::kLanguage) {
    const std::vector<Choice> choices = page.ReadChoices(options.setting);
    std::transform(choices.begin(), choices.end(), std::back_inserter(values),
                   [](const Choice& choice) { return choice.value; });
  }
  const bool is_choice = std::find(values.begin(), values.end(), options.value) != values.end();
  if (!is_choice && !options.force) {
    throw HostError("'" + options.value + "' is none of the choices: " + Join(values) +
                    ".\nWith --force it is handed to the provider as it is.");
  }
  page.Store(options.setting, options.value);
  const Setting language = page.ReadSetting(SettingId::kLanguage);
  const Setting type = page.ReadSetting(SettingId::kType);
  report.Stored(language, type);
  CheckStored(language, type, options, is_choice);
}

void ShowModule(const Provider& provider, Report& report) {
  report.Module({provider.ModuleInfo("provider/owner").value_or(""),
                 provider.ModuleInfo("provider/main-component").value_or(""),
                 provider.ModuleInfo("provider/sub-component").value_or("")});
}

void Run(const Options& options, const Commands& commands) {
  UseLogLevel(options.log_level);
  UseDeviceProfile(options.device);
  UseRegistry(options.registry);
  UseUiLanguage(options.ui_language);
  const Provider provider(options.plugin);
  CheckCatalogue(options.ui_language);

  const std::unique_ptr<Report> report = options.json ? MakeJsonReport() : MakeTextReport();
  const KeyboardPage page(provider);
  if (commands.list->parsed()) {
    report->Choices(page.ReadChoices(options.setting), page.ReadSetting(options.setting));
  } else if (commands.set->parsed()) {
    Set(page, options, *report);
  } else if (commands.info->parsed()) {
    ShowModule(provider, *report);
  } else {
    const PageHead head = page.ReadHead();
    const Setting language = page.ReadSetting(SettingId::kLanguage);
    const Setting type = page.ReadSetting(SettingId::kType);
    report->Page(head, language, type);
  }
}

int RunCommandLine(int argc, char** argv) {
  Options options;
  CLI::App app("The keyboard settings page, without a television.", "menu_host");
  AddOptions(app, options);
  const Commands commands = AddCommands(app, options);
  try {
    app.parse(argc, argv);
    Run(options, commands);
  } catch (const CLI::Success& help) {
    app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::fprintf(stderr,
                 "menu_host: %s\nThe commands are list, set and info; menu_host --help has more.\n",
                 error.what());
    return kUsage;
  }
  if (std::fflush(stdout) != 0 || !std::cout.flush()) {
    throw HostError("cannot write to standard output");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "menu_host: %s\n", error.what());
    return kFailed;
  }
}
