// menu_host plays the settings application: it loads the provider, asks it for the keyboard page,
// and hands back what the user chose.

#include <array>
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
#include "provider_info.h"
#include "registry_admin.h"
#include "report.h"
#include "ui_language.h"

namespace {

constexpr std::array kSettingKeys = {DATA_PROVIDER_LANGUAGE, DATA_PROVIDER_TYPE};

// The provider answers as if nothing were stored when the registry cannot be read.
void CheckRegistry() {
  for (const char* key : kSettingKeys) {
    CheckReadable(key);
  }
}

void Get(const KeyboardPage& page, const Options& options, Report& report) {
  const Setting setting = page.ReadSetting(options.setting);
  report.Value(setting);
  if (!setting.value) {
    throw HostError("nothing is stored");
  }
}

void Set(const KeyboardPage& page, const Options& options, Report& report) {
  const std::string value =
      options.force ? options.value : FindChoice(page, options.setting, options.value);
  page.Store(options.setting, value);
  const Setting language = page.ReadSetting(SettingId::kLanguage);
  const Setting type = page.ReadSetting(SettingId::kType);
  report.Stored(language, type);
  CheckStored(language, type, options.setting, value, options.force);
}

void Reset(const KeyboardPage& page, Report& report) {
  for (const char* key : kSettingKeys) {
    Forget(key);
  }
  report.Stored(page.ReadSetting(SettingId::kLanguage), page.ReadSetting(SettingId::kType));
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
  ThrowIfAny(findings);
}

void RunOnPage(const Options& options, const std::string& plugin, Report& report) {
  UseRegistry(options.registry);
  const Provider provider(plugin);
  CheckCatalogue(options.ui_language);
  const KeyboardPage page(provider);
  if (options.command == Command::kReset) {
    return Reset(page, report);
  }
  CheckRegistry();
  switch (options.command) {
    case Command::kList:
      return report.Choices(ReadChoices(page, options.setting), page.ReadSetting(options.setting));
    case Command::kGet:
      return Get(page, options, report);
    case Command::kSet:
      return Set(page, options, report);
    default:
      return ShowPage(page, report);
  }
}

void Run(const Options& options) {
  const std::unique_ptr<Report> report = options.json ? MakeJsonReport() : MakeTextReport();
  if (options.command == Command::kDevices) {
    return report->Devices(ReadDeviceProfiles(), UseDeviceProfile(options.device));
  }
  const Sources sources = SetUpHost(options);
  switch (options.command) {
    case Command::kCheck:
      return Check(sources.plugin, sources.profile, *report);
    case Command::kInfo:
      return report->Info(sources, ReadProviderInfo(sources.plugin));
    default:
      return RunOnPage(options, sources.plugin, *report);
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
