/*
 * The root filesystem of a device, in a folder of this machine.
 *
 * A device does not need this stand-in, because /usr/share/lib-morvith-tv exists there. The
 * stand-in replaces the two functions with which the library opens files: bindtextdomain() and
 * json_parser_load_from_file(). For a path in /usr/share/lib-morvith-tv they open
 * $ROOTFS_DIR/usr/share/lib-morvith-tv/... instead. Other paths stay unchanged. Each call reads the
 * environment variable ROOTFS_DIR. If it is unset or empty, the root is "/". Nothing is allocated.
 * All functions may be called from any thread.
 */
#ifndef ROOTFS_H
#define ROOTFS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The folder on the device with all files that the library reads. */
#define ROOTFS_RESOURCES "/usr/share/lib-morvith-tv"

/*
 * Translates the device path `path` to a path on this machine and writes it to `located`, which has
 * `size` bytes. Returns 0. If the path does not fit, truncates it and returns a negative value.
 */
__attribute__((visibility("default"))) int rootfs_locate(const char* path, char* located,
                                                         size_t size);

#ifdef __cplusplus
}
#endif

#endif
