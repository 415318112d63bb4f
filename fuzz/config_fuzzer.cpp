// The input is the keyboard configuration, the whole file. Every language that there is gets chosen
// under it, and its types listed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <json-glib/json-glib.h>
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

// Whether JSON-GLib itself leaks, which it does of a malformed surrogate pair and of all roots but
// the last where there are several. What could be nested too deeply for it is not tried.
bool LeaksInParser(const std::string& contents) {
  const auto openings =
      std::count_if(contents.begin(), contents.end(), [](char c) { return c == '[' || c == '{'; });
  if (openings > 500) {
    return true;
  }
  const __lsan::ScopedDisabler no_leaks;
  const long before = LiveHeapBlocks();
  JsonParser* parser = json_parser_new();
  json_parser_load_from_data(parser, contents.data(), static_cast<gssize>(contents.size()),
                             nullptr);
  g_object_unref(parser);
  return LiveHeapBlocks() > before;
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
  if (LeaksInParser(contents)) {
    const __lsan::ScopedDisabler no_leaks;
    ChooseEveryLanguage();
  } else {
    const LeakCheck no_leaks;
    ChooseEveryLanguage();
  }
  return 0;
}
