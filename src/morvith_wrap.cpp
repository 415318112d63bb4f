#include "morvith_wrap.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "KeyboardConfigManager.h"
#include "LanguageConfigManager.h"
#include "MenuList.h"
#include "data_provider.h"
#include "heap.h"
#include "kvreg.h"
#include "log.h"

namespace {

// Stored with a language that has no keyboard types. The configuration may lack this type.
constexpr char kDefaultKeyboardType[] = "us_intl_ibm103i";

std::optional<std::string> StoredLanguage() {
  const HeapPtr<char> stored(kvreg_get_str(DATA_PROVIDER_LANGUAGE));  // may be an empty string
  return stored ? std::optional<std::string>(stored.get()) : std::nullopt;
}

std::string SupportedOrDefault(const std::string& lang_local) {
  const LanguageConfigManager& config = *LanguageConfigManager::GetInstance();
  const std::vector<LanguageInfo>& languages = config.GetLanguageInfoVec();
  const bool supported =
      std::ranges::find(languages, lang_local, &LanguageInfo::lang_local) != languages.end();
  return supported ? lang_local : config.GetDefaultLangLocal();
}

std::string FirstKeyboardType(const std::string& lang_local) {
  std::vector<std::string> keyboards;
  KeyboardConfigManager::GetInstance()->GetLangLocalKeyboards(lang_local, keyboards);
  return keyboards.empty() ? kDefaultKeyboardType : keyboards.front();
}

std::string TypeValue(const std::string& lang_local, const std::string& keyboard_type) {
  return lang_local + "." + keyboard_type;
}

}  // namespace

void get_kvreg_lang_string(char** value) { *value = kvreg_get_str(DATA_PROVIDER_LANGUAGE); }

void get_kvreg_type_string(char** value) { *value = kvreg_get_str(DATA_PROVIDER_TYPE); }

void set_kvreg_lang_string(const char* value) {
  if (value == nullptr) {
    QEL_ERROR("cannot store a keyboard language: the value is null");
    return;
  }
  const std::string language = SupportedOrDefault(value);
  if (kvreg_set_str(DATA_PROVIDER_LANGUAGE, language.c_str()) != 0) {
    QEL_ERROR("Fail Set Default Keyboard Language");
    return;
  }
  // Stores a type of the new language too: the old value contains the old language.
  set_kvreg_type_string(TypeValue(language, FirstKeyboardType(language)).c_str());
}

void set_kvreg_type_string(const char* value) {
  if (value == nullptr) {
    QEL_ERROR("cannot store a keyboard type: the value is null");
    return;
  }
  QEL_INFO("set keyboard_language = %s", value);
  if (kvreg_set_str(DATA_PROVIDER_TYPE, value) != 0) {
    QEL_ERROR("Fail Set Default Keyboard Type");
  }
}

void** get_qel_languagelist(const char* /*key*/, int* count) {
  const std::vector<LanguageInfo>& languages =
      LanguageConfigManager::GetInstance()->GetLanguageInfoVec();
  MenuList list(languages.size());
  for (const LanguageInfo& language : languages) {
    MenuListItem& item = list.AddItem();
    item.display_value = CopyForHost(language.lang_sid.c_str());
    item.string_value = CopyForHost(language.lang_local.c_str());
  }
  *count = static_cast<int>(languages.size());
  return list.Release();
}

void** get_qel_typelist(const char* /*key*/, int* count) {
  const std::optional<std::string> language = StoredLanguage();
  if (!language) {
    QEL_ERROR("get language failed");
    return nullptr;
  }
  const KeyboardConfigManager& config = *KeyboardConfigManager::GetInstance();
  std::vector<std::string> keyboards;  // stays empty for an unknown language
  config.GetLangLocalKeyboards(*language, keyboards);

  MenuList list(keyboards.size());
  for (const std::string& keyboard : keyboards) {
    MenuListItem& item = list.AddItem();
    item.display_value = CopyTypeForHost(config.GetKeyboardDisplayName(keyboard));
    item.string_value = CopyTypeForHost(TypeValue(*language, keyboard));
  }
  *count = static_cast<int>(keyboards.size());
  return list.Release();
}
