// What answers on the page.
#ifndef TERMINAL_PROVIDER_INFO_H
#define TERMINAL_PROVIDER_INFO_H

#include <cstddef>
#include <string>

struct ProviderInfo {
  std::string owner;
  std::string main_component;
  std::string sub_component;
  std::string help_image;
  std::size_t languages;
  std::size_t types;  // of all languages together, each once
};

// Stores each language in a registry of its own, as types are listed for a stored language, and
// leaves none in use.
ProviderInfo ReadProviderInfo(const std::string& plugin);

#endif
