/*
 * A complete settings application. Stores a language, if one is given, and prints the keyboard
 * page.
 *
 *   cc -std=c11 -o host host.c $(pkg-config --cflags --libs morvith-dataprovider)
 *   DEVINFO_PROFILE=/usr/share/morvith-platform-stand-ins/devices/global.ini KVREG_FILE=host.db \
 *     LC_ALL=C_XX.UTF-8 LANGUAGE=ko \
 *     ./host "$(pkg-config --variable=plugin morvith-dataprovider)" ko_KR
 *
 * gettext ignores LANGUAGE in the locale C and, since glibc 2.39, in C.UTF-8. No locale has the
 * name C_XX.UTF-8: glibc loads C.UTF-8 for it, and gettext still uses LANGUAGE.
 */
#include <data_provider.h>
#include <dlfcn.h>
#include <libintl.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* In this host, the slots that the provider does not write stay null. */
void init_data_provider_cbs(data_provider_cbs* table) { *table = (data_provider_cbs){0}; }

/* An empty name must not be looked up: gettext would return the header of the catalogue. */
static const char* translate(const char* name) {
  return *name == '\0' ? name : dgettext(DATA_PROVIDER_TEXT_DOMAIN, name);
}

static void show_text(const data_provider_cbs* provider, int (*get)(const char*, char**),
                      const char* key) {
  char* text = NULL;
  get(key, &text);
  printf("%s\n", text == NULL ? "-" : text);
  provider->release_string(text);
}

static void show_setting(const data_provider_cbs* provider, const char* key) {
  show_text(provider, provider->get_display_name, key);
  show_text(provider, provider->get_help_text, key);
  char* stored = NULL;
  provider->get_string(key, &stored);
  printf("%s\n", stored == NULL ? "-" : stored);
  int count = 0;
  void** list = provider->get_list_items(key, &count);
  for (int i = 0; i < count; ++i) {
    char* value = NULL;
    char* name = NULL;
    provider->get_list_item_string_value(list[i], &value);
    provider->get_list_item_display_value(list[i], &name);
    const char mark = stored != NULL && strcmp(stored, value) == 0 ? '*' : ' ';
    printf("%c %s  %s\n", mark, value, translate(name));
  }
  provider->free_list_items(list, count);
  provider->release_string(stored);
}

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3 || setlocale(LC_ALL, "") == NULL) {
    fprintf(stderr, "usage: host PLUGIN [LANGUAGE] (the user's locale must be installed)\n");
    return EXIT_FAILURE;
  }
  void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "host: %s\n", dlerror());
    return EXIT_FAILURE;
  }
  const data_provider_entry create = (data_provider_entry)dlsym(library, "create_provider");
  const data_provider_entry destroy = (data_provider_entry)dlsym(library, "delete_provider");
  void* table = NULL;
  if (create == NULL || destroy == NULL || create(&table) != 0) {
    fprintf(stderr, "host: cannot create a provider with %s\n", argv[1]);
    dlclose(library);
    return EXIT_FAILURE;
  }
  /* Names of types are always UTF-8, so gettext must return UTF-8 too. */
  bind_textdomain_codeset(DATA_PROVIDER_TEXT_DOMAIN, "UTF-8");
  const data_provider_cbs* provider = table;
  if (argc == 3) {
    /* The result is always 1. show_setting() prints what was stored. */
    provider->set_string(DATA_PROVIDER_LANGUAGE, argv[2]);
  }
  show_text(provider, provider->get_display_name, DATA_PROVIDER_PAGE);
  show_text(provider, provider->get_help_text, DATA_PROVIDER_PAGE);
  show_text(provider, provider->get_help_image_path, DATA_PROVIDER_PAGE);
  show_setting(provider, DATA_PROVIDER_LANGUAGE);
  show_setting(provider, DATA_PROVIDER_TYPE);
  const int failed =
      destroy(&table) != 0 || dlclose(library) != 0 || fflush(stdout) != 0 || ferror(stdout) != 0;
  return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
