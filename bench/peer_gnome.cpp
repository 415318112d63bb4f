// Counts the keyboard types for Korean with GnomeXkbInfo.
#define GNOME_DESKTOP_USE_UNSTABLE_API
#include <libgnome-desktop/gnome-xkb-info.h>

#include "frame.h"

namespace {

int Answer() {
  static GnomeXkbInfo* const info = gnome_xkb_info_new();
  int named = 0;
  g_autoptr(GList) layouts = gnome_xkb_info_get_layouts_for_language(info, "ko");
  for (const GList* each = layouts; each != nullptr; each = each->next) {
    const char* name = nullptr;
    gnome_xkb_info_get_layout_info(info, static_cast<const char*>(each->data), &name, nullptr,
                                   nullptr, nullptr);
    named += name != nullptr && *name != '\0' ? 1 : 0;
  }
  return named;
}

}  // namespace

int main() { return TakeAnswers(Answer); }
