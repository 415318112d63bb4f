#include "LanguageConfigManager.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <unordered_map>

#include "devinfo.h"
#include "heap.h"
#include "log.h"

namespace {

// The rows contain arrays, not pointers, because the dynamic loader would relocate each pointer
// during each load.
struct LanguageRow {
  sys_lang_id id;
  char lang_sid[32];
  char lang_local[6];
};

constexpr LanguageRow kLanguageRows[] = {
    {0, "SID_SETUP_LANGUAGE_KOREAN", "ko_KR"},
    {1, "SID_SETUP_LANGUAGE_ENGLISH", "en_US"},
    {2, "SID_SETUP_LANGUAGE_SPANISH", "es_MX"},
    {3, "SID_SETUP_LANGUAGE_FRENCH", "fr_CA"},
    {4, "SID_SETUP_LANGUAGE_PORTUGUESE", "pt_BR"},
    {5, "SID_SETUP_LANGUAGE_BULGARIAN", "bg_BG"},
    {6, "SID_SETUP_LANGUAGE_CROATIAN", "hr_HR"},
    {7, "SID_SETUP_LANGUAGE_CZECH", "cs_CZ"},
    {8, "SID_SETUP_LANGUAGE_DANISH", "da_DK"},
    {9, "SID_SETUP_LANGUAGE_DUTCH", "nl_NL"},
    {10, "SID_SETUP_LANGUAGE_FINNISH", "fi_FI"},
    {11, "SID_SETUP_LANGUAGE_FRENCH", "fr_FR"},
    {12, "SID_SETUP_LANGUAGE_GERMAN", "de_DE"},
    {13, "SID_SETUP_LANGUAGE_GREEK", "el_GR"},
    {14, "SID_SETUP_LANGUAGE_HUNGARIAN", "hu_HU"},
    {15, "SID_SETUP_LANGUAGE_ITALIAN", "it_IT"},
    {16, "SID_SETUP_LANGUAGE_NORWEGIAN", "nn_NO"},
    {17, "SID_SETUP_LANGUAGE_ENGLISH", "en_GB"},
    {18, "SID_SETUP_LANGUAGE_POLISH", "pl_PL"},
    {19, "SID_SETUP_LANGUAGE_PORTUGUESE", "pt_PT"},
    {20, "SID_SETUP_LANGUAGE_ROMANIAN", "ro_RO"},
    {21, "SID_SETUP_LANGUAGE_RUSSIAN", "ru_RU"},
    {22, "SID_SETUP_LANGUAGE_SERBIAN", "sr_RS"},
    {23, "SID_SETUP_LANGUAGE_SLOVAK", "sk_SK"},
    {24, "SID_SETUP_LANGUAGE_SPANISH", "es_ES"},
    {25, "SID_SETUP_LANGUAGE_SWEDISH", "sv_SE"},
    {26, "SID_SETUP_LANGUAGE_TURKISH", "tr_TR"},
    {27, "IDS_TXT_SIMPLECHINESE", "zh_CN"},
    {28, "IDS_TXT_TRADITIONALCHINESE", "zh_HK"},
    {29, "TV_SID_SETUP_LANGUAGE_TPE", "zh_TW"},
    {30, "SID_SETUP_LANGUAGE_JAPANESE", "ja_JP"},
    {31, "COM_SID_SETUP_LANGUAGES_MAORI", "mi_NZ"},
    {34, "SID_SETUP_LANGUAGE_DEVANAGRI", "hi_IN"},
    {35, "SID_SETUP_LANGUAGE_ESTONIAN", "et_EE"},
    {36, "SID_SETUP_LANGUAGE_LATVIAN", "lv_LV"},
    {37, "SID_SETUP_LANGUAGE_LITHUANIAN", "lt_LT"},
    {38, "SID_SETUP_LANGUAGE_ARABIC", "ar_AE"},
    {39, "SID_SETUP_LANGUAGE_FARSI", "fa_IR"},
    {42, "COM_SID_SETUP_LANGUAGES_CATALAN", "ca_ES"},
    {44, "SID_SETUP_LANGUAGE_THA", "th_TH"},
    {45, "SID_SETUP_LANGUAGE_HEB", "he_IL"},
    {46, "SID_SETUP_LANGUAGE_INDONESIAN", "id_ID"},
    {47, "SID_SETUP_LANGUAGE_VIETNAMESE", "vi_VN"},
    {48, "SID_SETUP_LANGUAGE_URDU", "ur_PK"},
    {49, "SID_SETUP_LANGUAGE_AFRIKAANS", "af_ZA"},
    {50, "SID_SETUP_LANGUAGE_ZULU", "zu_ZA"},
    {51, "SID_SETUP_LANGUAGE_XHOSA", "xh_ZA"},
    {52, "SID_SETUP_LANGUAGE_YORUBA", "yo_NG"},
    {53, "SID_SETUP_LANGUAGE_IGBO", "ig_NG"},
    {54, "SID_SETUP_LANGUAGE_HAUSA", "ha_NG"},
    {55, "SID_SETUP_LANGUAGE_SWAHILI", "sw_KE"},
    {56, "SID_SETUP_LANGUAGE_AMHARIC", "am_ET"},
    {57, "SID_SETUP_LANGUAGE_TAMIL", "ta_IN"},
    {62, "SID_SETUP_LANGUAGE_SLOVENE", "sl_SI"},
    {63, "SID_SETUP_LANGUAGE_ALBANIAN", "sq_AL"},
    {64, "SID_SETUP_LANGUAGE_UKRAINIAN", "uk_UA"},
    {65, "SID_SETUP_LANGUAGE_KAZAKH", "kk_KZ"},
    {66, "SID_SETUP_LANGUAGE_MACEDONIAN", "mk_MK"},
    {67, "SID_SETUP_LANGUAGE_MALAY", "ms_MY"},
    {98, "SID_SETUP_LANGUAGE_BURMESE", "my_MM"},
    {99, "SID_SETUP_LANGUAGE_KHMER", "km_KH"},
};

// The language that is added if the device reports no English language.
constexpr char kFallbackSid[] = "SID_SETUP_LANGUAGE_ENGLISH";
constexpr char kFallbackLocal[] = "en_GB";

std::unordered_map<sys_lang_id, LanguageInfo> BuildLanguageTable() {
  std::unordered_map<sys_lang_id, LanguageInfo> table;
  table.reserve(std::size(kLanguageRows));
  for (const LanguageRow& row : kLanguageRows) {
    table.emplace(row.id, LanguageInfo{row.lang_sid, row.lang_local});
  }
  return table;
}

// Built when the library is loaded. The two managers are built on first use instead, because they
// read the device.
const std::unordered_map<sys_lang_id, LanguageInfo> g_id2langinfo_map = BuildLanguageTable();

bool IsEnglish(const LanguageInfo& language) {
  return language.lang_local == "en_US" || language.lang_local == "en_GB";
}

}  // namespace

LanguageConfigManager* LanguageConfigManager::GetInstance() {
  static LanguageConfigManager instance;
  return &instance;
}

LanguageConfigManager::LanguageConfigManager() {
  InitLanguageInfoVec();
  ChooseDefaultLangLocal();
}

LanguageConfigManager::~LanguageConfigManager() = default;

void LanguageConfigManager::InitLanguageInfoVec() {
  const HeapPtr<devinfo_int_array> record(AllocateZeroed<devinfo_int_array>());
  if (devinfo_get_value_int_array(DEVINFO_KEY_SYS_LANG_IDS, record.get()) != 0) {
    QEL_ERROR("devinfo_get_value_int_array Error.\n");
    return;  // does not free `values`, because a service that fails does not set it
  }
  const HeapPtr<int> values(record->values);
  if (!values || record->count <= 0) {
    return;
  }
  for (const sys_lang_id id : std::span(values.get(), static_cast<std::size_t>(record->count))) {
    const auto found = g_id2langinfo_map.find(id);
    if (found == g_id2langinfo_map.end()) {
      QEL_WARNING("sys_lang_id [%d] not support", id);
      continue;
    }
    m_language_info_vec.push_back(found->second);
    QEL_INFO("sys_lang_id [%d], lang_local:%s", id, found->second.lang_local.c_str());
  }
}

void LanguageConfigManager::ChooseDefaultLangLocal() {
  auto english = std::ranges::find_if(m_language_info_vec, IsEnglish);
  if (english == m_language_info_vec.end()) {
    const LanguageInfo fallback = {kFallbackSid, kFallbackLocal};
    m_language_info_vec.push_back(fallback);
    english = std::prev(m_language_info_vec.end());
  }
  m_default_lang_local = english->lang_local;
}
