// Counts the keyboard types for Korean with libxkbregistry.
#include <cstring>

#include <xkbcommon/xkbregistry.h>

#include "frame.h"

namespace {

int Answer() {
  static rxkb_context* const context = rxkb_context_new(RXKB_CONTEXT_NO_FLAGS);
  [[maybe_unused]] static const bool is_read = rxkb_context_parse_default_ruleset(context);
  int named = 0;
  for (rxkb_layout* layout = rxkb_layout_first(context); layout != nullptr;
       layout = rxkb_layout_next(layout)) {
    for (rxkb_iso639_code* language = rxkb_layout_get_iso639_first(layout); language != nullptr;
         language = rxkb_iso639_code_next(language)) {
      const bool is_korean = std::strcmp(rxkb_iso639_code_get_code(language), "kor") == 0;
      named += is_korean && *rxkb_layout_get_description(layout) != '\0' ? 1 : 0;
    }
  }
  return named;
}

}  // namespace

int main() { return TakeAnswers(Answer); }
