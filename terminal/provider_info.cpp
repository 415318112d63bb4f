#include "provider_info.h"

#include "KeyboardPage.h"
#include "Provider.h"
#include "platform_setup.h"

ProviderInfo ReadProviderInfo(const std::string& plugin) {
  const TemporaryRegistry registry;
  const Provider provider(plugin);
  const KeyboardPage page(provider);
  return {provider.ModuleInfo(DATA_PROVIDER_OWNER).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_MAIN_COMPONENT).value_or(""),
          provider.ModuleInfo(DATA_PROVIDER_SUB_COMPONENT).value_or(""),
          provider.HelpImagePath(DATA_PROVIDER_PAGE).value_or(""),
          page.ReadChoicesIfAny(SettingId::kLanguage).size(),
          page.ReadAllTypes().size()};
}
