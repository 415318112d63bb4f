/*
 * The platform log.
 *
 * On the device messages go to the system's log buffers. This stand-in writes each message as a
 * line to standard error: "<priority> <tag>: <text>", for example "warning IME_QEL: ...". A newline
 * at the end of the text is removed. Other control characters and invalid UTF-8 become '?'. A text
 * is truncated after 4095 bytes. The environment variable QLOG_LEVEL is the threshold: "info",
 * "warning" (the default), "error" or "none". All functions may be called from any thread.
 */
#ifndef QLOG_H
#define QLOG_H

#ifdef __cplusplus
extern "C" {
#endif

/* The id of a log. The stand-in has one log and accepts any id. */
enum { QLOG_ID_MAIN = 0 };

enum { QLOG_PRIORITY_INFO = 4, QLOG_PRIORITY_WARNING = 5, QLOG_PRIORITY_ERROR = 6 };

/*
 * Logs a message with a format like printf(). Returns the number of bytes written (0 if the message
 * is below the threshold), or a negative value on failure.
 */
__attribute__((visibility("default"), format(printf, 4, 5))) int __qlog_print(
    int log_id, int priority, const char* tag, const char* format, ...);

#ifdef __cplusplus
}
#endif

#endif
