// No answer, but the floor of the library's: JSON-GLib reads the same configuration.
#include <json-glib/json-glib.h>

#include "answer.h"

static int parse(void) {
  JsonParser* parser = json_parser_new();
  const int read = json_parser_load_from_file(parser, BENCH_CONFIGURATION, NULL);
  g_object_unref(parser);
  return read;
}

int main(void) { return measure_answers(parse, 1); }
