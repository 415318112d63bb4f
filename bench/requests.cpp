#include "requests.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <stdexcept>
#include <vector>

#include <dlfcn.h>
#include <json-glib/json-glib.h>
#include <libintl.h>

#include "devinfo.h"
#include "kvreg.h"
#include "qlog.h"

namespace {

constexpr char kConfiguration[] = "/usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json";
constexpr char kHelpImage[] = "/usr/share/lib-morvith-tv/res/edje/help_morvith.edj";

using Texts = std::initializer_list<const char*>;

constexpr Texts kItems = {DATA_PROVIDER_PAGE, DATA_PROVIDER_LANGUAGE, DATA_PROVIDER_TYPE};
constexpr Texts kNames = {"COM_TV_KEYBOARD_SETTINGS_SPAUS_SETTINGS", "COM_TV_KEYBOARD_LANGUAGE",
                          "COM_TV_KEYBOARD_TYPE"};
constexpr Texts kHelpTexts = {"COM_SID_SETTINGS_GNP_CEJUL_CONFIGURE_CONNECTED_KEYBOARD_SETTINGS",
                              "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_LANGUAGE",
                              "COM_SID_SETTINGS_GNP_CEJUL_SET_KEYBOARD_TYPE"};

void AskList(const Library& library, const char* key) {
  int count = 0;
  void** list = library->table().get_list_items(key, &count);
  if (count == 0) {
    throw std::runtime_error(std::string("an empty list: ") + key);
  }
  library->table().free_list_items(list, count);
}

void AskTypes(Library& library) { AskList(library, DATA_PROVIDER_TYPE); }
void AskLanguages(Library& library) { AskList(library, DATA_PROVIDER_LANGUAGE); }

void AskTexts(const Library& library, int (*get)(const char* key, char** text), Texts keys) {
  for (const char* key : keys) {
    char* text = nullptr;
    get(key, &text);
    library->table().release_string(text);
  }
}

void AskNames(Library& library) { AskTexts(library, library->table().get_display_name, kItems); }
void AskHelpTexts(Library& library) { AskTexts(library, library->table().get_help_text, kItems); }

void AskValue(Library& library) {
  AskTexts(library, library->table().get_string, {DATA_PROVIDER_TYPE});
}

void AskHelpImage(Library& library) {
  AskTexts(library, library->table().get_help_image_path, {DATA_PROVIDER_PAGE});
}

void SetLanguage(Library& library) { library->table().set_string(DATA_PROVIDER_LANGUAGE, "ko_KR"); }

// The floors, in the same order.

void ParseConfiguration(Library& /*library*/) {
  g_autoptr(JsonParser) parser = json_parser_new();
  if (json_parser_load_from_file(parser, kConfiguration, nullptr) == FALSE) {
    throw std::runtime_error("no configuration");
  }
}

char* Duplicate(const std::string& text) { return strdup(text.c_str()); }

char* CopyInTypeBlock(const std::string& text) {
  auto* block = static_cast<char*>(std::calloc(1, DATA_PROVIDER_TYPE_LENGTH + 2));
  text.copy(block, DATA_PROVIDER_TYPE_LENGTH);
  return block;
}

// The same blocks as the library, all there at once.
void MakeAndFreeList(const std::vector<ListItem>& choices, char* (*copy)(const std::string&)) {
  std::vector<char**> list;
  list.reserve(choices.size());
  for (const ListItem& choice : choices) {
    list.push_back(static_cast<char**>(std::calloc(2, sizeof(char*))));
    list.back()[0] = copy(choice.value);
    list.back()[1] = copy(choice.display_value);
  }
  for (char** item : list) {
    std::free(item[1]);
    std::free(item[0]);
    std::free(item);
  }
}

void MakeAndFreeLanguages(Library& library) {
  static const std::vector<ListItem> languages = library->ListItems(DATA_PROVIDER_LANGUAGE).value();
  MakeAndFreeList(languages, Duplicate);
}

void MakeAndFreeTypes(Library& library) {
  static const std::vector<ListItem> types = library->ListItems(DATA_PROVIDER_TYPE).value();
  std::free(kvreg_get_str(DATA_PROVIDER_LANGUAGE));
  MakeAndFreeList(types, CopyInTypeBlock);
}

void Translate(Texts message_ids) {
  for (const char* id : message_ids) {
    std::free(strdup(dgettext(DATA_PROVIDER_TEXT_DOMAIN, id)));
  }
}

void TranslateNames(Library& /*library*/) { Translate(kNames); }
void TranslateHelpTexts(Library& /*library*/) { Translate(kHelpTexts); }

void ReadRegistry(Library& /*library*/) { std::free(kvreg_get_str(DATA_PROVIDER_TYPE)); }

void ReadCapability(Library& /*library*/) {
  bool supported = false;
  devinfo_get_custom_bool("com.velmora/featureconf/bt_profile_bt_smart_control", &supported);
  std::free(strdup(kHelpImage));
}

void WriteRegistry(Library& /*library*/) {
  kvreg_set_str(DATA_PROVIDER_LANGUAGE, "ko_KR");
  __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_INFO, "IME_QEL", "ko_KR.kr_ibm106");
  kvreg_set_str(DATA_PROVIDER_TYPE, "ko_KR.kr_ibm106");
}

// The library must not be there, as it would keep its dependencies loaded.
void LoadEmpty(Library& library) {
  library.reset();
  dlclose(dlopen(BENCH_EMPTY, RTLD_NOW | RTLD_LOCAL));
}

}  // namespace

void Load(Library& library) {
  library.reset();
  library = std::make_unique<Provider>(BENCH_PLUGIN);
}

const Request kRequests[] = {
    {"first type list, real size", AskTypes, ParseConfiguration, BENCH_ROOTS "/real_x1", Load},
    {"first type list, 10 times real size", AskTypes, ParseConfiguration, BENCH_ROOTS "/real_x10",
     Load},
    {"first type list, shipped", AskTypes, ParseConfiguration, BENCH_ROOTS "/shipped", Load},
    {"language list", AskLanguages, MakeAndFreeLanguages},
    {"type list", AskTypes, MakeAndFreeTypes},
    {"names", AskNames, TranslateNames},
    {"help texts", AskHelpTexts, TranslateHelpTexts},
    {"value", AskValue, ReadRegistry},
    {"help image", AskHelpImage, ReadCapability},
    {"set language", SetLanguage, WriteRegistry},
    {"unload and load", Load, LoadEmpty},
};
