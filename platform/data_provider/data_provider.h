/*
 * The boundary between the settings application (the host) and a data provider: the two functions
 * that a provider exports, and the callback table that they exchange. Plain C, for C11 and C++.
 *
 * The contracts below are those of the keyboard settings provider, libmorvith_dataprovider. They
 * speak of three items of the menu, whose keys are defined below: the page, and on it the language
 * and the type.
 *
 * A host, as `pkg-config --cflags --libs morvith-dataprovider` builds it:
 *
 *   - defines `init_data_provider_cbs` and exports it, linked with -rdynamic or, for this function
 *     alone, with -Wl,--export-dynamic-symbol=init_data_provider_cbs; otherwise dlopen() fails with
 *     "undefined symbol: init_data_provider_cbs", whether with RTLD_NOW or RTLD_LAZY;
 *   - sets a locale with setlocale(); texts are in its language, or in the language that the
 *     environment variable LANGUAGE names. gettext ignores LANGUAGE in the locale "C" and, from
 *     glibc 2.39 on, in "C.UTF-8": there, texts stay message ids;
 *   - loads the provider, `pkg-config --variable=plugin morvith-dataprovider`, with
 *     dlopen(plugin, RTLD_NOW | RTLD_LOCAL), and finds its two functions with dlsym();
 *   - calls `create_provider`, then the slots of the table as it likes, then `delete_provider`;
 *   - unloads it with dlclose(), when all that was handed out has been given back.
 *
 * Conventions, unless a slot says otherwise:
 *
 *  1. Memory. What a callback hands out is a fresh block of the C heap. It is the host's until the
 *     host gives it back: a string through `release_string`, a list through `free_list_items`, the
 *     table through `delete_provider`. What the host passes in is borrowed for the call.
 *  2. Null. A null key is an unknown key. A null out-pointer is never written through, and nothing
 *     that would have been handed out through it is made.
 *  3. Keys. Compared whole and case-sensitively. For an unknown key nothing is done and the out
 *     value is left as it was.
 *  4. Text. NUL-terminated. Texts of the keyboard configuration are UTF-8. Translated texts come
 *     from gettext, in the codeset of the host's LC_CTYPE: a host whose locale is not a UTF-8 one
 *     calls bind_textdomain_codeset(DATA_PROVIDER_TEXT_DOMAIN, "UTF-8") after `create_provider`.
 *  5. Errors. Nothing throws and nothing aborts, whatever the data files, the registry or the
 *     system-information service answer; an exception of any type that one of them lets out ends
 *     within the call. What fails is written to the platform log (tag "IME_QEL") where it happens.
 *  6. Memory exhausted. The request fails as its slot says, leaks nothing, and is answered anew the
 *     next time. Two limits: the C++ runtime ends the process when memory runs out while the
 *     library is being loaded, in which its language table is built; GLib ends it when it is
 *     refused memory while it reads the keyboard configuration, on the first request that needs it.
 *  7. Threads. A callback runs on the thread that calls it. The provider has no threads and no
 *     locks. Calls may overlap as far as the platform's services allow it: the configuration is
 *     loaded once, whoever asks first, and only read from then on. A call runs to its end: to
 *     cancel its thread (pthread_cancel) or to leave it with longjmp ends the process or loses what
 *     the call holds, so a host that cancels threads disables that around its calls. The log, the
 *     registry and the system-information service must not call back into the provider: a request
 *     that is the first to load the configuration would wait for itself.
 *  8. Lifetime. The callbacks are valid as long as the library is loaded. Give back every list
 *     before unloading: reading and freeing one needs the library. What was read from the device
 *     (its languages, the keyboard configuration) is read once and kept until the library is
 *     unloaded; the registry and the Bluetooth capability are read on every request.
 *
 * The layout is the host's, for a 64-bit machine: 76 slots of one pointer, 608 bytes. Slots named
 * `reserved_N` (N is the slot's index) are not this provider's: they keep what
 * `init_data_provider_cbs` put there.
 */
#ifndef DATA_PROVIDER_H
#define DATA_PROVIDER_H

#include <stddef.h>

#ifdef __cplusplus
#define DATA_PROVIDER_NOEXCEPT noexcept
extern "C" {
#else
#include <assert.h>
#define DATA_PROVIDER_NOEXCEPT
#endif

#define DATA_PROVIDER_EXPORT __attribute__((visibility("default")))

/* Keys of the items. Those of the language and the type are also their keys in the registry. */
#define DATA_PROVIDER_PAGE "menu/system/external_device_manager/keyboard-settings"
#define DATA_PROVIDER_LANGUAGE "db/ime/keyboard_language_name"
#define DATA_PROVIDER_TYPE "db/ime/hardware_keyboard_name"

/* Keys of the module information: who answers for the provider. */
#define DATA_PROVIDER_OWNER "provider/owner"
#define DATA_PROVIDER_MAIN_COMPONENT "provider/main-component"
#define DATA_PROVIDER_SUB_COMPONENT "provider/sub-component"

/* The text domain of names, help texts and the names of languages. */
#define DATA_PROVIDER_TEXT_DOMAIN "lib-morvith-tv"

/* Bytes of a type's text or value, without the NUL, after which it is cut. */
#define DATA_PROVIDER_TYPE_LENGTH 254

typedef void (*data_provider_reserved)(void);

typedef struct data_provider_cbs {
  /* Slot 0, offset 0. No item has an integer value: does nothing. Returns 0. */
  int (*set_int)(const char* key, int value);
  data_provider_reserved reserved_1[5];

  /*
   * Slot 6, offset 48. Stores the user's choice. Returns 1, always: read the item back to see what
   * was stored.
   *
   * language  `value` is a locale code. One that is none of the choices is replaced by the first
   *           English among them, "en_US" or "en_GB". Storing a language also stores the first
   *           keyboard type of that language, or "us_intl_ibm103i" if it has none, in the form
   *           "ko_KR.kr_ibm106", whatever type was stored before. If the language cannot be
   *           written, the type is left as it was.
   * type      `value` is stored as it is.
   *
   * A null `value` stores nothing and logs one error line. Memory exhausted: what was not yet
   * written is not written, and one error line is logged.
   */
  int (*set_string)(const char* key, const char* value);
  data_provider_reserved reserved_7[1];

  /* Slot 8, offset 64. No item has an integer value: leaves `*value` as it was. Returns 0. */
  int (*get_int)(const char* key, int* value);
  data_provider_reserved reserved_9[2];

  /*
   * Slot 11, offset 88. Reads the stored choice of the language or the type into `*value`, as the
   * registry holds it; it need not be one of the choices. Null when there is none, for which no
   * default is answered or stored, or when it cannot be read. Returns 1, always.
   */
  int (*get_string)(const char* key, char** value);

  /* Slot 12, offset 96. Frees a string that a callback handed out. Returns 0, for null 1. */
  int (*release_string)(char* string);

  /*
   * Slot 13, offset 104. The translated name of any of the three items; its message id where the
   * catalogue has no translation, or gettext lacks the memory to find it; null when memory is
   * exhausted. Returns 0, always.
   */
  int (*get_display_name)(const char* key, char** name);

  /* Slot 14, offset 112. The translated help text of any of the three items, as slot 13. */
  int (*get_help_text)(const char* key, char** text);
  data_provider_reserved reserved_15[1];

  /*
   * Slot 16, offset 128. The choices of the language or the type, built anew on each request, in
   * an order that does not change: the device's for languages, the configuration's for types. Where
   * the device reports neither "en_US" nor "en_GB", or nothing, "en_GB" is added as the last of the
   * languages; those that the provider does not know are left out. The array has `*count` items,
   * to be read through slots 17 and 19 and given back through slot 24.
   *
   *   list, `*count` > 0       the choices
   *   list, `*count` 0         no choices; the list is to be given back all the same
   *   null, `*count` 0         memory exhausted
   *   null, `*count` as it was unknown key, the page, a null `count`, or (type) no stored language,
   *                            or one that cannot be read, whatever the reason
   */
  void** (*get_list_items)(const char* key, int* count);

  /*
   * Slot 17, offset 136. The text of a choice. For a language the message id of its name in the
   * text domain, which the host translates; two languages may share one. For a type its name, cut
   * after DATA_PROVIDER_TYPE_LENGTH bytes, be it within a character. The string is the item's own:
   * never release it, it goes with the list. A null `item` has a null text. Returns 0, always.
   */
  int (*get_list_item_display_value)(void* item, char** value);
  data_provider_reserved reserved_18[1];

  /*
   * Slot 19, offset 152. The value of a choice, as `set_string` takes and `get_string` gives it: a
   * locale code ("ko_KR"), or for a type the stored language, a full stop and the type
   * ("ko_KR.kr_ibm106"), cut like the text. Otherwise as slot 17.
   */
  int (*get_list_item_string_value)(void* item, char** value);

  /* Slot 20, offset 160. No choice has an integer value: leaves `*value` as it was. Returns 0. */
  int (*get_list_item_int_value)(void* item, int* value);
  data_provider_reserved reserved_21[3];

  /*
   * Slot 24, offset 192. Frees a list of `count` items with all that it holds, positions that are
   * null passed over. With a `count` below 1 the array alone. A null list is nothing to free.
   * Returns 0, always.
   */
  int (*free_list_items)(void** list, int count);
  data_provider_reserved reserved_25[19];

  /*
   * Slot 44, offset 352. Who answers for the provider, by a key of the module information. Null
   * when memory is exhausted. Returns 0, always.
   */
  int (*get_module_info)(const char* key, char** value);
  data_provider_reserved reserved_45[3];

  /*
   * Slot 48, offset 384. The path of the page's help image: an Edje layout (.edj) on a device with
   * Bluetooth smart control, a WebP image on any other, or when the device does not say. Null when
   * memory is exhausted. Returns 0 for the page, -1 for any other key.
   */
  int (*get_help_image_path)(const char* key, char** path);
  data_provider_reserved reserved_49[27];
} data_provider_cbs;

#define DATA_PROVIDER_SLOT(member, slot)                                       \
  static_assert(offsetof(data_provider_cbs, member) == (slot) * sizeof(void*), \
                #member " is not in its slot")

DATA_PROVIDER_SLOT(set_int, 0);
DATA_PROVIDER_SLOT(set_string, 6);
DATA_PROVIDER_SLOT(get_int, 8);
DATA_PROVIDER_SLOT(get_string, 11);
DATA_PROVIDER_SLOT(release_string, 12);
DATA_PROVIDER_SLOT(get_display_name, 13);
DATA_PROVIDER_SLOT(get_help_text, 14);
DATA_PROVIDER_SLOT(get_list_items, 16);
DATA_PROVIDER_SLOT(get_list_item_display_value, 17);
DATA_PROVIDER_SLOT(get_list_item_string_value, 19);
DATA_PROVIDER_SLOT(get_list_item_int_value, 20);
DATA_PROVIDER_SLOT(free_list_items, 24);
DATA_PROVIDER_SLOT(get_module_info, 44);
DATA_PROVIDER_SLOT(get_help_image_path, 48);
static_assert(sizeof(data_provider_cbs) == 608, "the table is 76 pointers of 8 bytes");

#undef DATA_PROVIDER_SLOT

/*
 * Defined by the host, in the process that loads the provider: puts the host's defaults into all
 * slots of a new, zeroed table. Called once for each `create_provider`, on its thread, before the
 * provider writes its own slots.
 */
DATA_PROVIDER_EXPORT void init_data_provider_cbs(data_provider_cbs* table);

/*
 * Exported by the provider. Makes a table and stores its address, a `data_provider_cbs*`, in
 * `*handle`. Each call makes another, independent table. Loads no configuration.
 * Returns 0; 1 with `*handle` null when memory is exhausted; 1 for a null `handle`.
 */
DATA_PROVIDER_EXPORT int create_provider(void** handle) DATA_PROVIDER_NOEXCEPT;

/*
 * Exported by the provider. Frees the table in `*handle`, if there is one; `*handle` itself is not
 * reset. Returns 0; 1 for a null `handle`.
 */
DATA_PROVIDER_EXPORT int delete_provider(void** handle) DATA_PROVIDER_NOEXCEPT;

/* Both, as a host finds them by name. */
typedef int (*data_provider_entry)(void** handle);

#ifdef __cplusplus
}
#endif

#endif
