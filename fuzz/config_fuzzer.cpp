// The input is the keyboard configuration, the whole file. Every language that there is gets chosen
// under it, and its types listed.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include "fake_platform.h"
#include "fuzz_host.h"
#include "plugin.h"

namespace {

std::string EveryLanguageId() {
  std::string ids;
  for (int id = 0; id < 100; ++id) {
    ids += std::to_string(id) + " ";
  }
  return ids;
}

// JSON-GLib leaks the text of a string with a malformed surrogate pair.
bool MayLeakInParser(const std::string& contents) {
  return contents.find("\\ud") != std::string::npos || contents.find("\\uD") != std::string::npos;
}

void ChooseEveryLanguage() {
  static const std::string kEveryLanguageId = EveryLanguageId();
  Platform().settings["languages"] = kEveryLanguageId;
  const Plugin plugin;  // reads the configuration anew
  const data_provider_cbs& cbs = *plugin.cbs;
  const std::optional<Choices> languages = GetChoices(cbs, kLanguageKey);
  for (const Choice& language : languages.value()) {
    cbs.set_string(kLanguageKey, language.value.c_str());
    EXPECT_EQ(Platform().registry[kLanguageKey], language.value);
    const std::optional<Choices> types = GetChoices(cbs, kTypeKey);
    CheckTypes(types.value(), language.value);
    CheckStoredType(types.value(), language.value, Platform().registry[kTypeKey]);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string contents(reinterpret_cast<const char*>(data), size);
  InstallKeyboardConfig(contents);
  if (MayLeakInParser(contents)) {
    const __lsan::ScopedDisabler no_leaks;
    ChooseEveryLanguage();
  } else {
    const LeakCheck no_leaks;
    ChooseEveryLanguage();
  }
  return 0;
}
