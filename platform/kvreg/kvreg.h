/*
 * The settings registry: string values under string keys, kept across restarts.
 *
 * On the device a system service holds the registry. This stand-in stores it in a SQLite file, in
 * the table `registry (key TEXT PRIMARY KEY, value TEXT NOT NULL)`. The environment variable
 * KVREG_FILE is the path of the file. The first write creates the file; its folder must exist.
 *
 * Each call opens and closes the file, so all functions may be called from any thread. A write is
 * one transaction: if the process is killed, the file has the old value or the new value. A write
 * does not wait for the disk, so a power failure can damage the file. While another process writes,
 * a read waits up to 0.1 seconds and a write up to 0.4 seconds. A path that begins with a colon is
 * rejected, because SQLite does not treat it as a file. Failures are logged with the tag "KVREG".
 */
#ifndef KVREG_H
#define KVREG_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Returns the value of `key` as a new string on the C heap, which the caller frees with free().
 * Returns null if the key has no value, if the registry cannot be read, or on allocation failure.
 */
__attribute__((visibility("default"))) char* kvreg_get_str(const char* key);

/* Stores a copy of `value` under `key`. Returns 0, or a negative value on failure. */
__attribute__((visibility("default"))) int kvreg_set_str(const char* key, const char* value);

#ifdef __cplusplus
}
#endif

#endif
