// A device with a configuration, and the library on it in the state in which a request finds it.
#ifndef BENCH_DEVICE_H
#define BENCH_DEVICE_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plugin.h"

enum class Library { kAbsent, kLoaded, kAsked };

class Device {
 public:
  // Value and text of each choice.
  using Choices = std::vector<std::pair<std::string, std::string>>;

  // `configuration` is the name of a folder below BENCH_ROOTS.
  Device(const char* configuration, Library library);

  // Around each request, not part of it: a library that is to be just loaded is so for each.
  void Prepare();
  void TidyUp();

  const data_provider_cbs* cbs() const { return m_plugin ? m_plugin->cbs : nullptr; }

  // What a library that was asked offers.
  const Choices& languages() const { return m_languages; }
  const Choices& types() const { return m_types; }

 private:
  Choices Read(const char* key) const;

  Library m_library;
  std::optional<Plugin> m_plugin;
  Choices m_languages;
  Choices m_types;
};

#endif
