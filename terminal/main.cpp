// menu_host plays the settings application: it loads the provider, asks it for the keyboard page,
// and hands back what the user chose.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KeyboardPage.h"
#include "Provider.h"
#include "command_line.h"
#include "error.h"
#include "join.h"
#include "page_check.h"
#include "platform_setup.h"
#include "profile_check.h"
#include "report.h"
#include "terminal_text.h"
#include "ui_language.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

// The provider's answer does not tell whether it stored the value: only reading it back does. It
// stores a language that is none of the choices as another one, and a type with each language.
void CheckStored(const Setting& language, const Setting& type, const Options& options,
                 bool is_choice) {
  const bool sets_language = options.setting == SettingId::kLanguage;
  const std::string stored = (sets_language ? language : type).value.value_or("");
  const std::string difference = "'" + Printable(options.value) +
                                 "' was handed to the provider; stored is '" + Printable(stored) +
                                 "'";
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

std::vector<Choice> ReadChoices(const KeyboardPage& page, SettingId id) {
  std::optional<std::vector<Choice>> choices = page.ReadChoices(id);
  if (!choices) {
    throw HostError(id == SettingId::kType
                        ? "no keyboard types to choose from: no language is stored (store one with "
                          "'menu_host set language en_US'), or the registry cannot be read"
                        : "the provider gave no list of languages");
  }
  return *std::move(choices);
}

void Set(const KeyboardPage& page, const Options& options, Report& report) {
  std::vector<std::string> values;
  if (!options.force || options.setting == SettingId::kLanguage) {
    const std::vector<Choice> choices = ReadChoices(page, options.setting);
    std::transform(choices.begin(), choices.end(), std::back_inserter(values),
                   [](const Choice& choice) { return choice.value; });
  }
  const bool is_choice = std::find(values.begin(), values.end(), options.value) != values.end();
  if (!is_choice && !options.force) {
    throw HostError("'" + Printable(options.value) +
                    "' is none of the choices: " + Printable(Join(values)) +
                    ".\nWith --force it is handed to the provider as it is.");
  }
  page.Store(options.setting, options.value);
  const Setting language = page.ReadSetting(SettingId::kLanguage);
  const Setting type = page.ReadSetting(SettingId::kType);
  report.Stored(language, type);
  CheckStored(language, type, options, is_choice);
}

void ShowInfo(const Provider& provider, Report& report) {
  report.Info({provider.ModuleInfo(DATA_PROVIDER_OWNER).value_or(""),
               provider.ModuleInfo(DATA_PROVIDER_MAIN_COMPONENT).value_or(""),
               provider.ModuleInfo(DATA_PROVIDER_SUB_COMPONENT).value_or(""),
               provider.HelpImagePath(DATA_PROVIDER_PAGE).value_or("")});
}

void ShowPage(const KeyboardPage& page, Report& report) {
  const PageHead head = page.ReadHead();
  const Setting language = page.ReadSetting(SettingId::kLanguage);
  const Setting type = page.ReadSetting(SettingId::kType);
  report.Page(head, language, type);
}

std::vector<Finding> FindAll(const std::string& plugin, const std::string& profile) {
  const TemporaryRegistry registry;
  // First, as the check of the profile leaves another in use.
  const std::vector<Finding> on_page = CheckPage(KeyboardPage(Provider(plugin)));
  std::vector<Finding> findings = CheckProfile(profile, plugin);
  findings.insert(findings.end(), on_page.begin(), on_page.end());
  return findings;
}

void Check(const std::string& plugin, const std::string& profile, Report& report) {
  const std::vector<Finding> findings = FindAll(plugin, profile);
  report.Findings(findings);
  if (!findings.empty()) {
    throw HostError("findings: " + std::to_string(findings.size()));
  }
}

void Run(const Options& options) {
  UseLogLevel(options.log_level);
  UseRoot(options.root);
  const std::string profile = UseDeviceProfile(options.device);
  UseUiLanguage(options.ui_language);
  const std::string plugin = options.plugin.empty() ? OwnPlugin() : options.plugin;
  const std::unique_ptr<Report> report = options.json ? MakeJsonReport() : MakeTextReport();
  if (options.command == Command::kCheck) {
    return Check(plugin, profile, *report);
  }

  UseRegistry(options.registry);
  const Provider provider(plugin);
  CheckCatalogue(options.ui_language);
  const KeyboardPage page(provider);
  switch (options.command) {
    case Command::kList:
      return report->Choices(ReadChoices(page, options.setting), page.ReadSetting(options.setting));
    case Command::kSet:
      return Set(page, options, *report);
    case Command::kInfo:
      return ShowInfo(provider, *report);
    case Command::kPage:
      return ShowPage(page, *report);
    case Command::kCheck:
      break;  // done above, over a registry of its own
  }
}

int Fail(const std::exception& error, int status) {
  std::fprintf(stderr, "menu_host: %s\n", error.what());
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    if (ParseCommandLine(argc, argv, options)) {
      Run(options);
    }
    if (std::fflush(stdout) != 0 || !std::cout.flush()) {
      throw HostError("cannot write to standard output");
    }
    return 0;
  } catch (const UsageError& error) {
    return Fail(error, kUsage);
  } catch (const std::exception& error) {
    return Fail(error, kFailed);
  }
}
