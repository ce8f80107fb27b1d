/* Log service. */
#pragma once

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

enum { DLOG_ID_MAIN = 0 };

enum {
    DLOG_VERBOSE = 2,
    DLOG_DEBUG = 3,
    DLOG_INFO = 4,
    DLOG_WARN = 5,
    DLOG_ERROR = 6,
    DLOG_FATAL = 7,
    DLOG_SILENT = 8
};

/**
 * Writes one line, formatted as printf does. A line of any length is accepted.
 * @param log_id   DLOG_ID_MAIN
 * @param priority one of the DLOG_ numbers
 * @param tag      names the program part that speaks; null counts as the empty tag
 * @return the number of bytes of the formatted text, 0 when nobody listens at that priority, or a negative error.
 */
PLATFORM_API int __dlog_print(int log_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

PLATFORM_END_DECLS
