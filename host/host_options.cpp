#include "host_options.h"

#include <regex>
#include <utility>

#include <CLI/CLI.hpp>

#include "join.h"
#include "platform_setup.h"
#include "ui_language.h"

namespace {

constexpr int kNameColumn = 27;

}  // namespace

void AddHostOptions(CLI::App& app, const char* version, HostOptions& options) {
  app.set_version_flag("--version", app.get_name() + " " + version, "Print the version and exit");
  app.get_formatter()->column_width(kNameColumn);
  app.fallthrough();  // the options are good behind a command too
  const CLI::Validator locale(
      [](const std::string& text) {
        return std::regex_match(text, std::regex("[a-z]{2}(_[A-Z]{2})?"))
                   ? ""
                   : "'" + text + "' does not have the form ll_CC or ll, such as ko_KR or ko";
      },
      "");
  const CLI::Validator given([](const std::string& text) { return text.empty() ? "is empty" : ""; },
                             "");
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  app.add_option("--ui-language", options.ui_language, "language in which the page is shown")
      ->check(locale)
      ->type_name("LOCALE")
      ->capture_default_str();
  app.add_option("--root", options.root,
                 "folder laid out like a device, from which the provider reads\n"
                 "its files (default: $ROOTFS_DIR, or where it is installed)")
      ->check(given)
      ->type_name("DIR");
  app.add_option("--device", options.device,
                 "device profile, a name or a file (default: $DEVINFO_PROFILE,\n"
                 "or global); 'menu_host devices' lists them")
      ->check(given)
      ->type_name("PROFILE");
  app.add_option("--registry", options.registry,
                 "the registry's file (default: $KVREG_FILE, or one in your\nstate folder)")
      ->check(given)
      ->type_name("FILE");
  app.add_option("--log", options.log_level,
                 "least priority of what is logged: " + Join(kLogLevels) +
                     "\n(default: $QLOG_LEVEL, or warning)")
      ->check(CLI::IsMember(kLogLevels).description(""))
      ->type_name("LEVEL");
  app.add_option("--plugin", options.plugin,
                 "the data provider (default: the one that is installed)")
      ->check(given)
      ->type_name("FILE");
}

CLI::Option* AddSetting(CLI::App& app, const char* name, const char* description,
                        std::function<void(SettingId)> set) {
  const auto take = [set = std::move(set)](const std::string& word) {
    set(word == "type" ? SettingId::kType : SettingId::kLanguage);
  };
  return app.add_option_function<std::string>(name, take, description)
      ->check([](const std::string& word) {
        return word == "language" || word == "type" ? "" : "it cannot be '" + word + "'";
      });
}

bool Parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::Success& help) {
    app.exit(help);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) + "\n'" + app.get_name() +
                     " --help' has the commands and their options.");
  }
}

Sources SetUpHost(const HostOptions& options) {
  UseLogLevel(options.log_level);
  const std::string profile = UseDeviceProfile(options.device);
  const std::string root = UseRoot(options.root);
  UseUiLanguage(options.ui_language);
  return {options.plugin.empty() ? OwnPlugin() : options.plugin, root, profile,
          FindRegistry(options.registry)};
}
