#include "requests.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

#include <json-glib/json-glib.h>
#include <libintl.h>

#include "devinfo.h"
#include "kvreg.h"
#include "log.h"

namespace {

constexpr char kLanguage[] = "ko_KR";

constexpr std::size_t kTypeTextSize = 256;

struct Item {
  char* value;
  char* text;
};

void LoadCreateDeleteUnload(const Device& /*device*/) { const Plugin plugin; }

void LoadCreateDeleteUnloadEmpty(const Device& /*device*/) {
  const Plugin plugin(BENCH_EMPTY_PLUGIN);
}

void AskList(const Device& device, const char* key) {
  int count = 0;
  void** list = device.cbs()->get_list_items(key, &count);
  device.cbs()->free_list_items(list, count);
}

void AskTypes(const Device& device) { AskList(device, kTypeKey); }
void AskLanguages(const Device& device) { AskList(device, kLanguageKey); }

void ParseConfiguration(const Device& /*device*/) {
  static const std::string file =
      std::getenv("MORVITH_TEST_ROOT") +
      std::string("/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json");
  JsonParser* parser = json_parser_new();
  json_parser_load_from_file(parser, file.c_str(), nullptr);
  g_object_unref(parser);
}

void Duplicate(Item& item, const std::string& value, const std::string& text) {
  item = {strdup(value.c_str()), strdup(text.c_str())};
}

void Format(Item& item, const std::string& value, const std::string& text) {
  const char* type = value.c_str() + sizeof(kLanguage);  // past "ko_KR."
  item = {static_cast<char*>(std::calloc(1, kTypeTextSize)),
          static_cast<char*>(std::calloc(1, kTypeTextSize))};
  std::snprintf(item.text, kTypeTextSize - 1, "%s", text.c_str());
  std::snprintf(item.value, kTypeTextSize - 1, "%s.%s", kLanguage, type);
}

template <void (*fill)(Item&, const std::string&, const std::string&)>
void MakeAndFreeList(const Device::Choices& choices) {
  auto** list = static_cast<Item**>(std::calloc(choices.size(), sizeof(void*)));
  Item** end = list;
  for (const auto& [value, text] : choices) {
    *end = static_cast<Item*>(std::calloc(1, sizeof(Item)));
    fill(**end++, value, text);
  }
  for (Item** item = list; item != end; ++item) {
    std::free((*item)->text);
    std::free((*item)->value);
    std::free(*item);
  }
  std::free(list);
}

void MakeAndFreeTypes(const Device& device) {
  std::free(kvreg_get_str(kLanguageKey));
  MakeAndFreeList<Format>(device.types());
}

void MakeAndFreeLanguages(const Device& device) { MakeAndFreeList<Duplicate>(device.languages()); }

// Of each item of the page.
void AskTexts(const Device& device, int (*get)(const char* key, char** text)) {
  for (const char* key : {kPageKey, kLanguageKey, kTypeKey}) {
    char* text = nullptr;
    get(key, &text);
    device.cbs()->release_string(text);
  }
}

void AskNames(const Device& device) { AskTexts(device, device.cbs()->get_display_name); }
void AskHelpTexts(const Device& device) { AskTexts(device, device.cbs()->get_help_text); }

void Translate(std::initializer_list<const char*> message_ids) {
  for (const char* id : message_ids) {
    std::free(strdup(dgettext("lib-morvith-tv", id)));
  }
}

void TranslateNames(const Device& /*device*/) {
  Translate({"COM_TV_KEYBOARD_SETTINGS_SPAUS_SETTINGS", "COM_TV_KEYBOARD_LANGUAGE",
             "COM_TV_KEYBOARD_TYPE"});
}

void TranslateHelpTexts(const Device& /*device*/) {
  Translate({"COM_SID_SETTINGS_GNP_CEJUL_CONFIGURE_CONNECTED_KEYBOARD_SETTINGS",
             "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_LANGUAGE",
             "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_TYPE"});
}

void AskValue(const Device& device) {
  char* value = nullptr;
  device.cbs()->get_string(kTypeKey, &value);
  device.cbs()->release_string(value);
}

void ReadRegistry(const Device& /*device*/) { std::free(kvreg_get_str(kTypeKey)); }

void AskHelpImage(const Device& device) {
  char* path = nullptr;
  device.cbs()->get_help_image_path(kPageKey, &path);
  device.cbs()->release_string(path);
}

void ReadCapability(const Device& /*device*/) {
  bool supported = false;
  devinfo_get_custom_bool("com.velmora/featureconf/bt_profile_bt_smart_control", &supported);
  std::free(strdup("/usr/share/lib-morvith-tv/res/edje/help_morvith.edj"));
}

void SetLanguage(const Device& device) { device.cbs()->set_string(kLanguageKey, kLanguage); }

void WriteRegistry(const Device& /*device*/) {
  constexpr char kType[] = "ko_KR.kr_ibm106";
  kvreg_set_str(kLanguageKey, kLanguage);
  QEL_INFO("set keyboard_language = %s", kType);
  kvreg_set_str(kTypeKey, kType);
}

}  // namespace

const Request kRequests[] = {
    {"first type list", Library::kLoaded, AskTypes, ParseConfiguration},
    {"language list", Library::kAsked, AskLanguages, MakeAndFreeLanguages},
    {"type list", Library::kAsked, AskTypes, MakeAndFreeTypes},
    {"names", Library::kAsked, AskNames, TranslateNames},
    {"help texts", Library::kAsked, AskHelpTexts, TranslateHelpTexts},
    {"value", Library::kAsked, AskValue, ReadRegistry},
    {"help image", Library::kAsked, AskHelpImage, ReadCapability},
    {"set language", Library::kAsked, SetLanguage, WriteRegistry},
    {"load and unload", Library::kAbsent, LoadCreateDeleteUnload, LoadCreateDeleteUnloadEmpty},
};
