#include "host_options.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <regex>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "program.h"
#include "suggestion.h"
#include "text.h"
#include "ui_language.h"

namespace {

constexpr int kNameColumn = 22;

const std::vector<std::string> kLogLevels = {"info", "warning", "error", "none"};

std::string CheckLocale(const std::string& text) {
  return std::regex_match(text, std::regex("[a-z]{2}(_[A-Z]{2})?"))
             ? ""
             : "invalid locale " + Quoted(text) + "; pass one such as ko or ko_KR";
}

std::string CheckGiven(const std::string& text) { return text.empty() ? "the value is empty" : ""; }

std::string CheckSetting(const std::string& word) {
  return word == "language" || word == "type"
             ? ""
             : "unknown setting " + Quoted(word) + "; available: language, type";
}

// In the help of all commands, lists a command with its arguments, in a form that help2man reads.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    if (mode != CLI::AppFormatMode::Sub) {
      return Formatter::make_help(app, std::move(name), mode);
    }
    std::string text = make_subcommand(app);
    for (const CLI::Option* option : app->get_options()) {
      if (option != app->get_help_ptr() && option != app->get_help_all_ptr()) {
        text += "  " + make_option(option, option->get_positional());
      }
    }
    return text;
  }
};

// Returns suggestions for the arguments of `app` that were not expected.
std::string SuggestNames(const CLI::App& app) {
  std::vector<Choice> options;
  std::vector<const CLI::App*> apps = app.get_subcommands([](const CLI::App*) { return true; });
  std::vector<Choice> commands(apps.size());
  std::ranges::transform(apps, commands.begin(), [](const CLI::App* command) {
    return Choice{command->get_name(), command->get_name()};
  });
  apps.push_back(&app);
  for (const CLI::App* owner : apps) {
    for (const CLI::Option* option : owner->get_options()) {
      options.push_back({option->get_name(), option->get_name()});
    }
  }
  std::string suggestions;
  for (const std::string& word : app.remaining(true)) {
    suggestions += DidYouMean(word, word.starts_with("-") ? options : commands);
  }
  return suggestions;
}

// The option --log has no check, because recent versions of CLI11 ignore an environment variable
// with a value that the check of the option refuses.
void UseLogLevel(const std::string& level) {
  if (level.empty()) {
    unsetenv(kLogVariable);
    return;
  }
  if (std::ranges::find(kLogLevels, level) == kLogLevels.end()) {
    throw UsageError("unknown log level " + Quoted(level) + "; available: " + Join(kLogLevels));
  }
  setenv(kLogVariable, level.c_str(), 1);
}

}  // namespace

void AddHostOptions(CLI::App& app, const char* version, HostOptions& options) {
  app.set_version_flag("--version", app.get_name() + " " + version, "Print the version and exit");
  app.set_help_all_flag("--help-all", "Print this help and that of each command, and exit");
  app.formatter(std::make_shared<HelpFormatter>());
  app.get_formatter()->column_width(kNameColumn);
  app.fallthrough();  // options may follow a command
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  app.add_option("--ui-language", options.ui_language,
                 "interface language (default: your locale's language\n"
                 "if it is translated, or else en_US)")
      ->check(CheckLocale)
      ->type_name("LOCALE");
  app.add_option("--root", options.root,
                 "folder laid out like a device, with the files of the\n"
                 "provider (default: where it is installed)")
      ->check(CheckGiven)
      ->type_name("DIR")
      ->envname(kRootVariable);
  app.add_option("--device", options.device,
                 "device profile, a name or a path; 'menu_host devices'\n"
                 "lists the names")
      ->check(CheckGiven)
      ->type_name("PROFILE")
      ->capture_default_str()
      ->envname(kProfileVariable);
  app.add_option("--registry", options.registry,
                 "registry file (default: a file in your state folder)")
      ->check(CheckGiven)
      ->type_name("FILE")
      ->envname(kRegistryVariable);
  app.add_option("--log", options.log_level,
                 "lowest priority to log: " + Join(kLogLevels) + "\n(default: warning)")
      ->type_name("LEVEL")
      ->envname(kLogVariable);
  app.add_option("--plugin", options.plugin, "data provider (default: the installed one)")
      ->check(CheckGiven)
      ->type_name("FILE");
}

CLI::Option* AddSetting(CLI::App& app, const char* name, const char* description,
                        std::function<void(SettingId)> set) {
  const auto take = [set = std::move(set)](const std::string& word) {
    set(word == "type" ? SettingId::kType : SettingId::kLanguage);
  };
  return app.add_option_function<std::string>(name, take, description)->check(CheckSetting);
}

bool Parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::Success& help) {
    app.exit(help);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) + "; " + SuggestNames(app) + "'" + app.get_name() +
                     " --help' lists the commands and options");
  }
}

Sources SetUpHost(const HostOptions& options) {
  UseLogLevel(options.log_level);
  Sources sources;
  sources.profile = UseDeviceProfile(options.device);
  sources.root = UseRoot(options.root);
  sources.registry = FindRegistry(options.registry);
  sources.plugin = options.plugin.empty() ? OwnFile(HOST_PLUGIN) : options.plugin;
  RefuseSpecialFile(sources.plugin);
  sources.ui_language = ChooseUiLanguage(options.ui_language);
  UseUiLanguage(sources.ui_language.locale);
  return sources;
}
