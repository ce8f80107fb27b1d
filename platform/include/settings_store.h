/* Settings store: text and integer values under slash-separated keys, kept across restarts. */
#pragma once

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

/** @return a heap copy of the text under `key` (the caller frees it), or null when the key has no text value. */
PLATFORM_API char* vconf_get_str(const char* key);

/** Stores a text; it is on the disk when the call returns. @return 0, or -1 (nothing changed). */
PLATFORM_API int vconf_set_str(const char* key, const char* value);

/** Reads a 32-bit integer into `value`. @return 0, or -1 when the key has no integer value (`value` untouched). */
PLATFORM_API int vconf_get_int(const char* key, int* value);

/** Stores a 32-bit integer. For the host and its tools. @return 0, or -1 (nothing changed). */
PLATFORM_API int vconf_set_int(const char* key, int value);

PLATFORM_END_DECLS
