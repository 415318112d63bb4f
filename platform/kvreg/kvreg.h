/*
 * The settings registry: string values under string keys, kept across restarts.
 *
 * On the device a system service holds the registry. This stand-in keeps it in one SQLite file,
 * named by the environment variable KVREG_FILE, in the table `registry (key TEXT PRIMARY KEY,
 * value TEXT NOT NULL)`; the file is made by the first write, its folder must exist. Each call
 * opens and closes the file, so nothing is held between calls and any thread may call. A write is
 * one transaction: a process killed in it leaves the old value or the new one, and writers in
 * several processes wait for each other, up to 5 seconds. A name that begins with a colon is no
 * file to SQLite, and is refused. Failures are logged with the tag "KVREG".
 */
#ifndef KVREG_H
#define KVREG_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Returns the value of `key` as a new string of the C heap, which the caller frees with free().
 * Null when the key has no value, when the registry cannot be read, and when memory is exhausted.
 */
__attribute__((visibility("default"))) char* kvreg_get_str(const char* key);

/* Stores a copy of `value` under `key`. Returns 0; a negative value if it could not be stored. */
__attribute__((visibility("default"))) int kvreg_set_str(const char* key, const char* value);

#ifdef __cplusplus
}
#endif

#endif
