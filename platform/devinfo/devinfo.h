/*
 * The system-information service: what this model of the device is and can do.
 *
 * On the device a system service answers. This stand-in answers from a device profile, a GLib key
 * file named by the environment variable DEVINFO_PROFILE and read anew on every call:
 *
 *   [device]
 *   system_language_ids=0;1;17
 *
 *   [custom_bool]
 *   com.velmora/featureconf/bt_profile_bt_smart_control=true
 *
 * An entry of system_language_ids that is no 32-bit integer is skipped with a warning. Failures
 * are logged with the tag "DEVINFO". Any thread may call.
 */
#ifndef DEVINFO_H
#define DEVINFO_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Key of the ids of the system languages that the device supports, in the device's order. */
#define DEVINFO_KEY_SYS_LANG_IDS 227

/* An array of integers. The caller zeroes the record, and frees `values` with free(). */
typedef struct devinfo_int_array {
  int count;   /* number of integers in `values` */
  int* values; /* on the C heap; may be null when there are none */
} devinfo_int_array;

/*
 * Fills `*out` with the integers of `key`. Returns 0; another value if the service has no such key
 * or fails, and then leaves `*out` as it was.
 */
__attribute__((visibility("default"))) int devinfo_get_value_int_array(int key,
                                                                       devinfo_int_array* out);

/*
 * Sets `*value` to the boolean that the device's maker gave the name `key`. Returns 0; another
 * value if there is none, and then leaves `*value` as it was.
 */
__attribute__((visibility("default"))) int devinfo_get_custom_bool(const char* key, bool* value);

#ifdef __cplusplus
}
#endif

#endif
