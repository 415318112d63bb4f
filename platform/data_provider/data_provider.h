/*
 * The interface between the settings application (the host) and a data provider: the two functions
 * that a provider exports, and the callback table that it fills. For C11 and C++.
 *
 * This is the contract of the keyboard settings provider, libmorvith_dataprovider. The provider
 * serves three menu items, whose keys are defined below: the page and its two settings, the
 * language and the type.
 *
 * A host is built with `pkg-config --cflags --libs morvith-dataprovider`. A host
 *
 *   - defines `init_data_provider_cbs` and exports it: with the linker option -rdynamic, or with
 *     -Wl,--export-dynamic-symbol=init_data_provider_cbs for this function alone. Otherwise
 *     dlopen() fails with "undefined symbol: init_data_provider_cbs", even with RTLD_LAZY;
 *   - sets a locale with setlocale(). The environment variable LANGUAGE selects another language
 *     for the texts. gettext ignores LANGUAGE in the locale "C" and, since glibc 2.39, in
 *     "C.UTF-8"; texts stay message ids there;
 *   - loads the provider with dlopen(plugin, RTLD_NOW | RTLD_LOCAL) and finds its two functions
 *     with dlsym(). `pkg-config --variable=plugin morvith-dataprovider` prints the path;
 *   - calls `create_provider`, then the callbacks of the table in any order, then
 *     `delete_provider`;
 *   - unloads the provider with dlclose() after it has given everything back.
 *
 * Conventions, unless a slot says otherwise:
 *
 *  1. Memory. A callback returns a new block on the C heap. The host owns the block and gives it
 *     back: a string with `release_string`, a list with `free_list_items`, the table with
 *     `delete_provider`. The provider does not use an argument after the call.
 *  2. Null. A null key is treated as an unknown key. If an out-pointer is null, nothing is written
 *     and nothing is allocated for it.
 *  3. Keys. They are compared as a whole, and case-sensitively. For an unknown key a callback does
 *     nothing and leaves the out value unchanged.
 *  4. Text. Strings end with a NUL. Texts of the keyboard configuration are UTF-8. Translated texts
 *     have the character encoding of the host's LC_CTYPE. If it is not UTF-8, the host should call
 *     bind_textdomain_codeset(DATA_PROVIDER_TEXT_DOMAIN, "UTF-8") after `create_provider`.
 *  5. Errors. No callback throws or aborts because of the contents of the data files, or because
 *     of an answer of the registry or the system-information service. If one of these services
 *     throws an exception, the provider catches it. The request then fails as on allocation
 *     failure. Errors are logged to the platform log with the tag "IME_QEL". One limit: JSON-GLib
 *     before 1.10 overflows the stack if the keyboard configuration has tens of thousands of
 *     nested levels, or hundreds of them on a thread with a small stack.
 *  6. Allocation failure. The request fails as its slot describes and leaks nothing. It works again
 *     when there is memory. Two limits:
 *       - If an allocation of GLib fails, GLib ends the process. The provider uses GLib only in the
 *         first request that needs the keyboard configuration.
 *       - If an allocation of the provider fails while it is being loaded, dlopen() throws
 *         std::bad_alloc. This ends the process unless the host catches the exception. A host that
 *         catches it must not load the provider again, because its language table would be empty.
 *         In glibc, dlopen() blocks in all other threads from then on.
 *  7. Threads. A callback runs on the thread that calls it. The provider has no threads. Calls may
 *     overlap if the platform's services allow it. The supported languages and the configuration
 *     are each read once, by the first call that needs them. Other calls that need them wait.
 *     Afterwards, both are read-only. The provider has no other locks.
 *       - A call must not be interrupted: pthread_cancel() and longjmp() end the process or leak
 *         memory. A host that cancels threads must disable cancellation around its calls.
 *       - The log, the registry and the system-information service must not call the provider. A
 *         request that is loading the configuration would wait for itself.
 *       - The log must not throw. If it throws, the process ends.
 *  8. Lifetime. The callbacks are valid while the provider is loaded. Every list must be given back
 *     before the provider is unloaded. The supported languages and the keyboard configuration are
 *     read once for each load. The registry and the Bluetooth capability are read on every request.
 *
 * The host defines the layout: 76 slots of one pointer, 608 bytes on a 64-bit machine. The provider
 * does not write the slots named `reserved_N`, where N is the slot's index. They keep what
 * `init_data_provider_cbs` wrote.
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

/* Keys of the items. The keys of the language and the type are also their registry keys. */
#define DATA_PROVIDER_PAGE "menu/system/external_device_manager/keyboard-settings"
#define DATA_PROVIDER_LANGUAGE "db/ime/keyboard_language_name"
#define DATA_PROVIDER_TYPE "db/ime/hardware_keyboard_name"

/* Keys of the module information: who is responsible for the provider. */
#define DATA_PROVIDER_OWNER "provider/owner"
#define DATA_PROVIDER_MAIN_COMPONENT "provider/main-component"
#define DATA_PROVIDER_SUB_COMPONENT "provider/sub-component"

/* The gettext domain of display names, help texts, and the names of languages and types. */
#define DATA_PROVIDER_TEXT_DOMAIN "lib-morvith-tv"

/* Maximum length of the text and of the value of a type, in bytes without the NUL. */
#define DATA_PROVIDER_TYPE_LENGTH 254

typedef void (*data_provider_reserved)(void);

typedef struct data_provider_cbs {
  /* Slot 0, offset 0. Does nothing: no item has an integer value. Returns 0. */
  int (*set_int)(const char* key, int value);
  data_provider_reserved reserved_1[5];

  /*
   * Slot 6, offset 48. Stores the viewer's choice. Always returns 1. The host should read the item
   * again to see what was stored.
   *
   * language  `value` is a locale code. If it is not one of the choices, the first English choice
   *           ("en_US" or "en_GB") is stored instead. Then the first keyboard type of that language
   *           is stored in the form "ko_KR.kr_ibm106". If the language has no types,
   *           "us_intl_ibm103i" is used. This replaces any stored type. If the language
   *           cannot be written, the type stays unchanged.
   * type      `value` is stored without a check.
   *
   * A language is stored with two registry writes. If the second one fails, or the process ends
   * before it, the old type stays stored. A host should store the language again if the type begins
   * with another language.
   *
   * If `value` is null, nothing is stored. On allocation failure, the remaining writes are skipped.
   * One error line is logged in both cases.
   */
  int (*set_string)(const char* key, const char* value);
  data_provider_reserved reserved_7[1];

  /* Slot 8, offset 64. Leaves `*value` unchanged: no item has an integer value. Returns 0. */
  int (*get_int)(const char* key, int* value);
  data_provider_reserved reserved_9[2];

  /*
   * Slot 11, offset 88. Reads the stored language or type from the registry. The value need not be
   * one of the choices. `*value` is null if nothing is stored or the registry cannot be read; no
   * default is returned or stored. Always returns 1.
   */
  int (*get_string)(const char* key, char** value);

  /* Slot 12, offset 96. Frees a string that a callback returned. Returns 0, or 1 for null. */
  int (*release_string)(char* string);

  /*
   * Slot 13, offset 104. The translated display name of an item. `*name` is the message
   * id if the catalogue has no translation, or if an allocation of gettext failed while it loaded
   * the catalogue in this process. `*name` is null if the provider's own allocation fails. Always
   * returns 0.
   */
  int (*get_display_name)(const char* key, char** name);

  /* Slot 14, offset 112. The translated help text of an item. Otherwise like slot 13. */
  int (*get_help_text)(const char* key, char** text);
  data_provider_reserved reserved_15[1];

  /*
   * Slot 16, offset 128. The choices of the language or the type. Each request builds a new list.
   * Languages are in the order of the device. Types are in the order of the keyboard configuration.
   * Languages that the provider does not know are left out. If the device reports neither "en_US"
   * nor "en_GB", "en_GB" is added at the end.
   *
   * The array has `*count` items. Slots 17 and 19 read an item, slot 24 frees the list.
   *
   *   result  `*count`   meaning
   *   list    above 0    the choices
   *   list    0          no choices; the list must be given back. If calloc() returns null for
   *                      size 0 (not in glibc), the list is null.
   *   null    0          an allocation failed, or the platform threw an exception
   *   null    unchanged  unknown key, the page, or a null `count`
   *   null    unchanged  types requested, but no language is stored or it cannot be read
   */
  void** (*get_list_items)(const char* key, int* count);

  /*
   * Slot 17, offset 136. The display name of a choice. The host should look it up in
   * DATA_PROVIDER_TEXT_DOMAIN, unless it is empty: gettext returns the header of the catalogue for
   * an empty name. The string belongs to the list and must not be released. If `item` is null,
   * `*value` is null. Always returns 0.
   *
   * language  The message id of its name. Two languages may share it.
   * type      Its English name, which the installed catalogues translate. A name without a
   *           translation is shown as it is. The name is truncated after DATA_PROVIDER_TYPE_LENGTH
   *           bytes, even in the middle of a UTF-8 character.
   */
  int (*get_list_item_display_value)(void* item, char** value);
  data_provider_reserved reserved_18[1];

  /*
   * Slot 19, offset 152. The value of a choice, in the form that `set_string` takes and
   * `get_string` returns. For a language: its locale code ("ko_KR"). For a type: the stored
   * language, a full stop and the type id ("ko_KR.kr_ibm106"). The value is truncated like the name
   * in slot 17. Ownership and null: as in slot 17.
   */
  int (*get_list_item_string_value)(void* item, char** value);

  /* Slot 20, offset 160. Leaves `*value` unchanged: no choice has an integer value. Returns 0. */
  int (*get_list_item_int_value)(void* item, int* value);
  data_provider_reserved reserved_21[3];

  /*
   * Slot 24, offset 192. Frees a list of `count` items, their strings and the array. The list and
   * its items may be null. If `count` is below 1, only the array is freed. Always returns 0.
   */
  int (*free_list_items)(void** list, int count);
  data_provider_reserved reserved_25[19];

  /*
   * Slot 44, offset 352. The module information for one of the three keys above. `*value` is null
   * on allocation failure. Always returns 0.
   */
  int (*get_module_info)(const char* key, char** value);
  data_provider_reserved reserved_45[3];

  /*
   * Slot 48, offset 384. The path of the page's help image: an Edje layout (.edj) on a device with
   * Bluetooth smart control. On any other device, or if the capability cannot be read, it is a WebP
   * image. `*path` is null on allocation failure. Returns 0 for the page, -1 for any other key.
   */
  int (*get_help_image_path)(const char* key, char** path);
  data_provider_reserved reserved_49[27];
} data_provider_cbs;

/* The slots that the provider writes: X(name of the member, index of the slot). */
#define DATA_PROVIDER_SLOTS(X)       \
  X(set_int, 0)                      \
  X(set_string, 6)                   \
  X(get_int, 8)                      \
  X(get_string, 11)                  \
  X(release_string, 12)              \
  X(get_display_name, 13)            \
  X(get_help_text, 14)               \
  X(get_list_items, 16)              \
  X(get_list_item_display_value, 17) \
  X(get_list_item_string_value, 19)  \
  X(get_list_item_int_value, 20)     \
  X(free_list_items, 24)             \
  X(get_module_info, 44)             \
  X(get_help_image_path, 48)

#define DATA_PROVIDER_CHECK_SLOT(member, index)                                 \
  static_assert(offsetof(data_provider_cbs, member) == (index) * sizeof(void*), \
                #member " is not in slot " #index);
DATA_PROVIDER_SLOTS(DATA_PROVIDER_CHECK_SLOT)
#undef DATA_PROVIDER_CHECK_SLOT
static_assert(sizeof(data_provider_cbs) == 76 * sizeof(void*),
              "the table must have 76 pointers: 608 bytes on a 64-bit machine");

/*
 * Defined by the host. Writes the host's defaults into all slots of a new, zeroed table. Each
 * `create_provider` calls it once, on the same thread, before the provider writes its slots. If it
 * throws an exception, the process ends.
 */
DATA_PROVIDER_EXPORT void init_data_provider_cbs(data_provider_cbs* table);

/*
 * Exported by the provider. Creates a table and writes its address, a `data_provider_cbs*`, to
 * `*handle` when the table is complete. Each call creates another, independent table. Loads no
 * configuration. Returns 0. On allocation failure returns 1 and sets `*handle` to null. Returns 1
 * for a null `handle`.
 */
DATA_PROVIDER_EXPORT int create_provider(void** handle) DATA_PROVIDER_NOEXCEPT;

/*
 * Exported by the provider. Frees the table in `*handle`, which may be null. Does not reset
 * `*handle`. Returns 0, or 1 for a null `handle`.
 */
DATA_PROVIDER_EXPORT int delete_provider(void** handle) DATA_PROVIDER_NOEXCEPT;

/* The type of both functions, for use with dlsym(). */
typedef int (*data_provider_entry)(void** handle);

#ifdef __cplusplus
}
#endif

#endif
