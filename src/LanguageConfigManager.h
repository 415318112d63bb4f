// The system languages that this device supports.
#ifndef MORVITH_LANGUAGE_CONFIG_MANAGER_H
#define MORVITH_LANGUAGE_CONFIG_MANAGER_H

#include <string>
#include <vector>

// The platform's number of a system language.
using sys_lang_id = int;

struct LanguageInfo {
  std::string lang_sid;    // message id of the language's name; two languages may share one
  std::string lang_local;  // locale code, "ko_KR"; identifies the language
};

// Asks the system-information service once, when first used, and never changes afterwards: it may
// be read from any thread. There is always a language, and the default is one of them.
class LanguageConfigManager {
 public:
  // Never null. Throws std::bad_alloc when memory is exhausted during the first use; the next call
  // starts anew.
  static LanguageConfigManager* GetInstance();

  virtual ~LanguageConfigManager();
  LanguageConfigManager(const LanguageConfigManager&) = delete;
  LanguageConfigManager& operator=(const LanguageConfigManager&) = delete;

  // In the order of the service, ids reported twice included.
  const std::vector<LanguageInfo>& GetLanguageInfoVec() const { return m_language_info_vec; }

  // "en_US" or "en_GB", whichever the device reports first.
  const std::string& GetDefaultLangLocal() const { return m_default_lang_local; }

 private:
  LanguageConfigManager();
  void InitLanguageInfoVec();
  void ChooseDefaultLangLocal();

  std::vector<LanguageInfo> m_language_info_vec;
  std::string m_default_lang_local;
};

#endif
