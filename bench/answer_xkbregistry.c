// The answer of libxkbregistry.
#include <string.h>

#include <xkbcommon/xkbregistry.h>

#include "answer.h"

static struct rxkb_context* context;

static bool suits_korean(struct rxkb_layout* layout) {
  bool suits = false;
  struct rxkb_iso639_code* language = rxkb_layout_get_iso639_first(layout);
  for (; language != NULL; language = rxkb_iso639_code_next(language)) {
    suits = suits || strcmp(rxkb_iso639_code_get_code(language), "kor") == 0;
  }
  return suits;
}

static int answer(void) {
  if (context == NULL) {
    context = rxkb_context_new(RXKB_CONTEXT_NO_FLAGS);
    rxkb_context_parse_default_ruleset(context);
  }
  int count = 0;
  for (struct rxkb_layout* layout = rxkb_layout_first(context); layout != NULL;
       layout = rxkb_layout_next(layout)) {
    if (suits_korean(layout) && strlen(rxkb_layout_get_description(layout)) > 0) {
      ++count;
    }
  }
  return count;
}

int main(void) { return measure_answers(answer, 1000); }
