/*
 * The device's file system, where it is not the one of this machine.
 *
 * On the device there is nothing of this: the library reads /usr/share/lib-morvith-tv as it stands.
 * A program that links this stand-in has, in front of the C library's and JSON-GLib's, the two
 * functions by which the library reads: bindtextdomain() and json_parser_load_from_file(). They
 * look for what lies in that folder below the root that the environment variable ROOTFS_DIR names,
 * a folder laid out like a device, and leave every other path alone. The variable is read anew on
 * each call; unset or empty, the root is "/". Nothing is allocated, and any thread may call.
 */
#ifndef ROOTFS_H
#define ROOTFS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Where all that the library reads lies on the device. */
#define ROOTFS_RESOURCES "/usr/share/lib-morvith-tv"

/*
 * Writes into `located`, of `size` bytes, where the device's file `path` lies on this machine.
 * Returns 0; a negative value if it does not fit, and `located` is then cut, with its NUL.
 */
__attribute__((visibility("default"))) int rootfs_locate(const char* path, char* located,
                                                         size_t size);

#ifdef __cplusplus
}
#endif

#endif
