// The system languages that this device supports.
#ifndef MORVITH_LANGUAGE_CONFIG_MANAGER_H
#define MORVITH_LANGUAGE_CONFIG_MANAGER_H

#include <string>
#include <vector>

using sys_lang_id = int;

struct LanguageInfo {
  std::string lang_sid;    // message id of the language's name; two languages may share it
  std::string lang_local;  // locale code, such as "ko_KR"; identifies the language
};

// Asks the system-information service once, on first use, and never changes afterwards, so all
// threads may read it. There is at least one language, and the default is one of the languages.
class LanguageConfigManager {
 public:
  // Never null. Throws std::bad_alloc if memory runs out during the first use; the next call asks
  // the service again.
  static LanguageConfigManager* GetInstance();

  virtual ~LanguageConfigManager();
  LanguageConfigManager(const LanguageConfigManager&) = delete;
  LanguageConfigManager& operator=(const LanguageConfigManager&) = delete;

  // The languages in the order of the service. A language that is reported twice appears twice.
  const std::vector<LanguageInfo>& GetLanguageInfoVec() const { return m_language_info_vec; }

  // The first English language that the device reports ("en_US" or "en_GB"), otherwise "en_GB".
  const std::string& GetDefaultLangLocal() const { return m_default_lang_local; }

 private:
  LanguageConfigManager();
  void InitLanguageInfoVec();
  void ChooseDefaultLangLocal();

  std::vector<LanguageInfo> m_language_info_vec;
  std::string m_default_lang_local;
};

#endif
