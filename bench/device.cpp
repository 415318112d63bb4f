// Services of a device that cost almost nothing. The program exports these functions instead of the
// stand-ins. Korean is the stored language, all languages are supported, and nothing is logged.
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "data_provider.h"
#include "devinfo.h"
#include "kvreg.h"
#include "qlog.h"

char* kvreg_get_str(const char* key) {
  return strdup(std::strcmp(key, DATA_PROVIDER_LANGUAGE) == 0 ? "ko_KR" : "ko_KR.kr_ibm106");
}

int kvreg_set_str(const char* /*key*/, const char* /*value*/) { return 0; }

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
