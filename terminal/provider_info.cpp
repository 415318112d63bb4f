#include "provider_info.h"

#include <set>
#include <vector>

#include "KeyboardPage.h"
#include "Provider.h"
#include "platform_setup.h"

namespace {

std::vector<Choice> Choices(const KeyboardPage& page, SettingId id) {
  return page.ReadChoices(id).value_or(std::vector<Choice>());
}

std::size_t CountTypes(const KeyboardPage& page) {
  std::set<std::string> ids;
  for (const Choice& language : Choices(page, SettingId::kLanguage)) {
    page.Store(SettingId::kLanguage, language.value);
    for (const Choice& type : Choices(page, SettingId::kType)) {
      ids.insert(TypeOf(type.value));
    }
  }
  return ids.size();
}

}  // namespace

ProviderInfo ReadProviderInfo(const std::string& plugin) {
  const TemporaryRegistry registry;
  const Provider provider(plugin);
  const KeyboardPage page(provider);
  return {provider.ModuleInfo(DATA_PROVIDER_OWNER).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_MAIN_COMPONENT).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_SUB_COMPONENT).value_or(""),
          provider.HelpImagePath(DATA_PROVIDER_PAGE).value_or(""),
          Choices(page, SettingId::kLanguage).size(),
          CountTypes(page)};
}
