/*
 * The system-information service: properties of this model of the device.
 *
 * On the device a system service answers. This stand-in reads a device profile on every call: a
 * GLib key file, whose path is in the environment variable DEVINFO_PROFILE.
 *
 *   [device]
 *   system_language_ids=0;1;17
 *
 *   [custom_bool]
 *   com.velmora/featureconf/bt_profile_bt_smart_control=true
 *
 * An entry of system_language_ids that is not a 32-bit integer is skipped with a warning. Failures
 * are logged with the tag "DEVINFO". All functions may be called from any thread.
 */
#ifndef DEVINFO_H
#define DEVINFO_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The key of the system language ids that the device supports, in the order of the device. */
#define DEVINFO_KEY_SYS_LANG_IDS 227

/* An array of integers. The caller zeroes the record and later frees `values` with free(). */
typedef struct devinfo_int_array {
  int count;   /* number of integers in `values` */
  int* values; /* on the C heap; may be null if `count` is 0 */
} devinfo_int_array;

/*
 * Fills `*out` with the integers of `key` and returns 0. On failure, also for an unknown key,
 * leaves `*out` unchanged and returns another value.
 */
__attribute__((visibility("default"))) int devinfo_get_value_int_array(int key,
                                                                       devinfo_int_array* out);

/*
 * Sets `*value` to the boolean that the maker of the device defined as `key`, and returns 0. On
 * failure, also for an unknown key, leaves `*value` unchanged and returns another value.
 */
__attribute__((visibility("default"))) int devinfo_get_custom_bool(const char* key, bool* value);

#ifdef __cplusplus
}
#endif

#endif
