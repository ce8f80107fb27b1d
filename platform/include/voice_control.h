/* Voice control of toolkit widgets. Every call returns 0, or -38 (INVALID_OPERATION) when it comes out of order. */
#pragma once

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

PLATFORM_API int vc_elm_initialize(void);
/** @param mode 1: new widgets are registered by themselves; 0: they are not. @param click 1: a spoken label clicks. */
PLATFORM_API int vc_elm_set_auto_register_mode(int mode, int click);
PLATFORM_API int vc_elm_deinitialize(void);

PLATFORM_END_DECLS
