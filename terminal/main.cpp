// menu_host acts as the settings application in a terminal: it loads the provider, shows the
// keyboard page, and stores the user's choices.

#include <memory>
#include <string>
#include <vector>

#include "KeyboardPage.h"
#include "Provider.h"
#include "choosing.h"
#include "command_line.h"
#include "error.h"
#include "page_check.h"
#include "platform_setup.h"
#include "profile_check.h"
#include "program.h"
#include "registry_admin.h"
#include "report.h"
#include "temporary.h"
#include "ui_language.h"

namespace {

// If the registry cannot be read, the provider reports that nothing is stored.
void CheckRegistry() {
  for (const SettingId id : kSettingIds) {
    if (const std::optional<std::string> reason = WhyUnreadable(KeyOf(id))) {
      throw HostError(*reason);
    }
  }
}

void Get(const KeyboardPage& page, const Options& options, Report& report) {
  const Setting setting = page.ReadSetting(options.setting);
  report.Value(setting);
  if (!setting.value) {
    throw HostError("nothing is stored");
  }
}

void Set(KeyboardPage& page, const Options& options, Report& report) {
  const std::string value =
      options.force ? options.value : FindChoice(page, options.setting, options.value);
  page.Store(options.setting, value);
  const Setting language = page.ReadSetting(SettingId::kLanguage);
  const Setting type = page.ReadSetting(SettingId::kType);
  report.Stored(language, type);
  CheckStored(language, type, options.setting, value, options.force);
}

void Reset(const KeyboardPage& page, Report& report) {
  for (const SettingId id : kSettingIds) {
    RemoveKey(KeyOf(id));
  }
  report.Stored(page.ReadSetting(SettingId::kLanguage), page.ReadSetting(SettingId::kType));
}

void ShowPage(const KeyboardPage& page, Report& report) {
  report.Page(page.ReadHead(), page.ReadHelpImage(), page.ReadSetting(SettingId::kLanguage),
              page.ReadSetting(SettingId::kType));
}

ProviderInfo ReadProviderInfo(const std::string& plugin) {
  UseUiLanguage(kNoLanguage);
  const TemporaryRegistry registry;
  const Provider provider(plugin);
  KeyboardPage page(provider);
  return {provider.ModuleInfo(DATA_PROVIDER_OWNER).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_MAIN_COMPONENT).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_SUB_COMPONENT).value_or(""),
          page.ReadHelpImage(),
          page.ReadSetting(SettingId::kLanguage).choices.size(),
          page.StoreEachLanguageToReadTypes().size()};
}

void Check(const Sources& sources, Report& report) {
  const TemporaryRegistry registry;
  std::vector<Finding> findings = CheckProfile(sources.profile, sources.plugin);
  const Provider provider(sources.plugin);
  KeyboardPage page(provider);
  const std::vector<Finding> on_page = CheckPage(page);
  findings.insert(findings.end(), on_page.begin(), on_page.end());
  report.Findings(findings);
  Conclude(findings);
}

void RunOnPage(const Options& options, const Sources& sources, Report& report) {
  UseRegistry(sources.registry, options.command == Command::kSet);
  const Provider provider(sources.plugin);
  CheckCatalogue(sources.ui_language.locale);
  KeyboardPage page(provider);
  if (options.command == Command::kReset) {
    Reset(page, report);
    return;
  }
  CheckRegistry();
  switch (options.command) {
    case Command::kList:
      report.Choices(ReadWithList(page, options.setting));
      break;
    case Command::kGet:
      Get(page, options, report);
      break;
    case Command::kSet:
      Set(page, options, report);
      break;
    default:
      ShowPage(page, report);
  }
}

void Run(const Options& options) {
  const std::unique_ptr<Report> report = options.json ? MakeJsonReport() : MakeTextReport();
  if (options.command == Command::kDevices) {
    report->Devices(ReadDeviceProfiles(), UseDeviceProfile(options.device));
    return;
  }
  const Sources sources = SetUpHost(options);
  switch (options.command) {
    case Command::kCheck:
      Check(sources, *report);
      break;
    case Command::kInfo:
      report->Info(sources, ReadProviderInfo(sources.plugin));
      break;
    default:
      RunOnPage(options, sources, *report);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return RunProgram("menu_host", [&] {
    Options options;
    if (ParseCommandLine(argc, argv, options)) {
      Run(options);
    }
  });
}
