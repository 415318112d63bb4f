// A device of no cost, which the program exports in place of the stand-ins: its registry is a map,
// Korean is the language of the user and of the keyboard, all languages are supported, and no line
// reaches its log.
#include <cstdlib>
#include <cstring>
#include <map>
#include <numeric>
#include <string>

#include "data_provider.h"
#include "devinfo.h"
#include "kvreg.h"
#include "qlog.h"

namespace {

std::map<std::string, std::string> g_registry = {{DATA_PROVIDER_LANGUAGE, "ko_KR"},
                                                 {DATA_PROVIDER_TYPE, "ko_KR.kr_ibm106"}};

}  // namespace

char* kvreg_get_str(const char* key) { return strdup(g_registry.at(key).c_str()); }

int kvreg_set_str(const char* key, const char* value) {
  g_registry[key] = value;
  return 0;
}

int devinfo_get_value_int_array(int /*key*/, devinfo_int_array* out) {
  constexpr int kCount = 100;
  *out = {kCount, static_cast<int*>(std::calloc(kCount, sizeof(int)))};
  std::iota(out->values, out->values + kCount, 0);
  return 0;
}

int devinfo_get_custom_bool(const char* /*key*/, bool* value) {
  *value = true;
  return 0;
}

int __qlog_print(int /*log_id*/, int /*priority*/, const char* /*tag*/, const char* /*format*/,
                 ...) {
  return 0;
}
