/*
 * The platform log.
 *
 * On the device messages go to the system's log buffers. This stand-in writes one line a message to
 * standard error, "<priority> <tag>: <text>" ("warning IME_QEL: ..."): a newline at the end of the
 * text is dropped, other control characters and bytes that are not UTF-8 are shown as '?', and a
 * line is cut after 4 KiB. The environment variable QLOG_LEVEL is the threshold: "info", "warning"
 * (the default), "error" or "none". Any thread may call.
 */
#ifndef QLOG_H
#define QLOG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Which log a message goes to. The stand-in has one log and takes any id. */
enum { QLOG_ID_MAIN = 0 };

enum { QLOG_PRIORITY_INFO = 4, QLOG_PRIORITY_WARNING = 5, QLOG_PRIORITY_ERROR = 6 };

/*
 * Logs one message, `format` and what follows as for printf. Returns the number of bytes written
 * (0 for a message below the threshold), or a negative value on failure.
 */
__attribute__((visibility("default"), format(printf, 4, 5))) int __qlog_print(
    int log_id, int priority, const char* tag, const char* format, ...);

#ifdef __cplusplus
}
#endif

#endif
