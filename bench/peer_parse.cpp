// Measures the minimum cost of the library's first answer: JSON-GLib parses the configuration.
//
// Usage: peer_parse ROOT
#include <cstdlib>

#include <json-glib/json-glib.h>
#include <unistd.h>

#include "frame.h"

namespace {

int Parse() {
  g_autoptr(JsonParser) parser = json_parser_new();
  return json_parser_load_from_file(
      parser, "usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json", nullptr);
}

}  // namespace

int main(int /*count*/, char** arguments) {
  return chdir(arguments[1]) == 0 ? TakeSteps({{"first answer", Parse}}) : EXIT_FAILURE;
}
