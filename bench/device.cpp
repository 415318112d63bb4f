#include "device.h"

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "fake_platform.h"

namespace {

constexpr char kConfigFile[] = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";

std::string Contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw std::runtime_error("cannot read " + file);
  }
  std::ostringstream contents;
  contents << stream.rdbuf();
  return contents.str();
}

}  // namespace

// Korean is the language of the user and of the keyboard, on a device with all languages.
Device::Device(const char* configuration, Library library) : m_library(library) {
  ResetPlatform();
  InstallKeyboardConfig(Contents(std::string(BENCH_ROOTS "/") + configuration + kConfigFile));
  Platform().keeps_log = false;
  std::string& languages = Platform().settings["languages"];
  languages = "";
  for (int id = 0; id < 100; ++id) {
    languages += std::to_string(id) + " ";
  }
  Platform().registry = {{kLanguageKey, "ko_KR"}, {kTypeKey, "ko_KR.kr_ibm106"}};
  std::setlocale(LC_ALL, "C.UTF-8");
  setenv("LANGUAGE", "ko", 1);
  if (m_library == Library::kAsked) {
    m_plugin.emplace();
    m_languages = Read(kLanguageKey);
    m_types = Read(kTypeKey);
  }
}

void Device::Prepare() {
  if (m_library == Library::kLoaded) {
    m_plugin.emplace();
  }
}

void Device::TidyUp() {
  if (m_library == Library::kLoaded) {
    m_plugin.reset();
  }
}

Device::Choices Device::Read(const char* key) const {
  Choices choices;
  int count = 0;
  void** list = cbs()->get_list_items(key, &count);
  for (int i = 0; i < count; ++i) {
    char* value = nullptr;
    char* text = nullptr;
    cbs()->get_list_item_string_value(list[i], &value);
    cbs()->get_list_item_display_value(list[i], &text);
    choices.emplace_back(value, text);
  }
  cbs()->free_list_items(list, count);
  return choices;
}
