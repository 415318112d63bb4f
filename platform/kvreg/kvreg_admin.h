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

/*
 * Returns 0 if `key` can be read, even if it has no value. Otherwise returns a negative value and
 * writes the reason to `reason`, cut to `size` bytes including the NUL. Logs nothing.
 */
__attribute__((visibility("default"))) int kvreg_try(const char* key, char* reason, size_t size);

/*
 * Removes `key`. Returns 0, even if the key has no value. On failure, for example if the file is
 * not a registry, changes nothing, returns a negative value and writes the reason as above.
 */
__attribute__((visibility("default"))) int kvreg_unset(const char* key, char* reason, size_t size);

#ifdef __cplusplus
}
#endif

#endif
