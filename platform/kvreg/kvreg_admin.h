/*
 * What this stand-in offers beside the device's interface, for programs that set it up: a registry
 * that can be told apart from an empty one, and emptied.
 */
#ifndef KVREG_ADMIN_H
#define KVREG_ADMIN_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Returns 0 if `key` can be read, whether or not it has a value. Otherwise a negative value, with
 * the reason in `reason`, cut to its `size` in bytes and terminated. Nothing is logged.
 */
__attribute__((visibility("default"))) int kvreg_try(const char* key, char* reason, size_t size);

/*
 * Takes the value of `key` away. Returns 0, also when there was none; otherwise a negative value,
 * with the reason as above.
 */
__attribute__((visibility("default"))) int kvreg_unset(const char* key, char* reason, size_t size);

#ifdef __cplusplus
}
#endif

#endif
