/*
 * Registry maintenance, which the device's interface does not have: a readability check, and
 * removal of a key.
 */
#ifndef KVREG_ADMIN_H
#define KVREG_ADMIN_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Why a function failed. */
enum {
  KVREG_FAILED = -1,    /* another reason, such as a full disk */
  KVREG_BAD_VALUE = -2, /* the value is not a string */
  KVREG_FOREIGN = -3,   /* the file is not a registry */
  KVREG_DAMAGED = -4    /* the file is a damaged registry */
};

/*
 * Returns 0 if `key` can be read, even if it has no value. Otherwise returns one of the above and
 * writes the reason to `reason`, cut to `size` bytes including the NUL. Logs nothing.
 */
__attribute__((visibility("default"))) int kvreg_try(const char* key, char* reason, size_t size);

/*
 * Removes `key`. Returns 0, also if the key has no value. Adds nothing to a file that is not a
 * registry. Otherwise returns the result and writes the reason as above.
 */
__attribute__((visibility("default"))) int kvreg_unset(const char* key, char* reason, size_t size);

#ifdef __cplusplus
}
#endif

#endif
