// The library's answer, over the least platform that it needs: a peer's process carries no fake
// platform either. Argument: the name of the configuration.
#include <dlfcn.h>
#include <stdlib.h>

#include "answer.h"
#include "data_provider.h"
#include "kvreg.h"
#include "qlog.h"

static const data_provider_cbs* provider;

static int answer(void) {
  int count = 0;
  int named = 0;
  void** list = provider->get_list_items("db/ime/hardware_keyboard_name", &count);
  for (int i = 0; i < count; ++i) {
    char* name = NULL;
    provider->get_list_item_display_value(list[i], &name);
    named += strlen(name) > 0;
  }
  provider->free_list_items(list, count);
  return named;
}

void init_data_provider_cbs(data_provider_cbs* table) { (void)table; }

char* kvreg_get_str(const char* key) {
  (void)key;
  return strdup("ko_KR");
}

int __qlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
  (void)log_id, (void)priority, (void)tag, (void)format;
  return 0;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  char root[4096];
  snprintf(root, sizeof(root), "%s/%s", BENCH_ROOTS, argv[1]);
  setenv("MORVITH_TEST_ROOT", root, 1);
  void* library = dlopen(TEST_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  int (*create)(void** handle) = NULL;
  *(void**)&create = dlsym(library, "create_provider");
  void* handle = NULL;
  create(&handle);
  provider = handle;
  measure_answers(answer);
  return 0;
}
