// The library's answer, from a configuration of real size.
#include <memory>

#include "Provider.h"
#include "answer.h"
#include "platform_setup.h"

namespace {

std::unique_ptr<Provider> g_provider;

int Answer() {
  const data_provider_cbs& table = g_provider->table();
  int count = 0;
  int named = 0;
  void** list = table.get_list_items(DATA_PROVIDER_TYPE, &count);
  for (int i = 0; i < count; ++i) {
    char* name = nullptr;
    table.get_list_item_display_value(list[i], &name);
    named += *name != '\0' ? 1 : 0;
  }
  table.free_list_items(list, count);
  return named;
}

}  // namespace

int main() {
  UseRoot(BENCH_ROOTS "/real_x1");
  g_provider = std::make_unique<Provider>(BENCH_PLUGIN);
  return measure_answers(Answer, 1000);
}
