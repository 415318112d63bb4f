// The library's log lines. Each has the tag "IME_QEL" and begins with its source file, function and
// line. A log statement must fit on one line. Otherwise __LINE__ depends on the compiler.
#ifndef MORVITH_LOG_H
#define MORVITH_LOG_H

#include "qlog.h"

#define QEL_LOG(priority, format, ...)                                                     \
  __qlog_print(QLOG_ID_MAIN, (priority), "IME_QEL", "%s: %s(%d) > " format, __FILE_NAME__, \
               __func__, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

#define QEL_INFO(...) QEL_LOG(QLOG_PRIORITY_INFO, __VA_ARGS__)
#define QEL_WARNING(...) QEL_LOG(QLOG_PRIORITY_WARNING, __VA_ARGS__)
#define QEL_ERROR(...) QEL_LOG(QLOG_PRIORITY_ERROR, __VA_ARGS__)

#endif
