// The answer of GnomeXkbInfo.
#define GNOME_DESKTOP_USE_UNSTABLE_API
#include <string.h>

#include <libgnome-desktop/gnome-xkb-info.h>

#include "answer.h"

static GnomeXkbInfo* info;

static int answer(void) {
  if (info == NULL) {
    info = gnome_xkb_info_new();
  }
  int count = 0;
  GList* layouts = gnome_xkb_info_get_layouts_for_language(info, "ko");
  for (const GList* each = layouts; each != NULL; each = each->next) {
    const char* name = NULL;
    gnome_xkb_info_get_layout_info(info, each->data, &name, NULL, NULL, NULL);
    if (name != NULL && strlen(name) > 0) {
      ++count;
    }
  }
  g_list_free(layouts);
  return count;
}

int main(void) { return measure_answers(answer, 1000); }
