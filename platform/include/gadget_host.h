/* Gadget host: how a gadget meets the program that loads it. */
#pragma once

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

typedef struct ug_gadget* ug_handle; /* one loaded gadget */
typedef struct ug_bundle* ug_data;   /* launch data or message; opaque to the gadget */

/**
 * The lifecycle callbacks a gadget fills in from UG_MODULE_INIT. All of them run on the host's main loop, receive
 * the gadget's handle first and `priv` last, and may be null.
 */
struct ug_operations {
    void* (*create)(ug_handle ug, int mode, ug_data data, void* priv); /* returns the root Evas_Object or null */
    void (*start)(ug_handle ug, ug_data data, void* priv);
    void (*pause)(ug_handle ug, ug_data data, void* priv);
    void (*resume)(ug_handle ug, ug_data data, void* priv);
    void (*destroy)(ug_handle ug, ug_data data, void* priv);
    void (*message)(ug_handle ug, ug_data message, ug_data data, void* priv);
    void (*event)(ug_handle ug, int event, ug_data data, void* priv);
    void (*key_event)(ug_handle ug, int event, ug_data data, void* priv);
    void* reserved[4];
    void* priv;
    int option;
};

/** The host's window as an Evas_Object, or null when there is none. The host keeps it. */
PLATFORM_API void* ug_get_window(void);

/**
 * Asks the host to destroy the gadget in a later iteration of the main loop.
 * @return 0, also when it was asked before; -22 (INVALID_PARAMETER) for a null or unknown handle.
 */
PLATFORM_API int ug_destroy_me(ug_handle ug);

/** Exported by the gadget. Fills `operations`. @return 0, or -1 when the gadget cannot run. */
PLATFORM_API int UG_MODULE_INIT(struct ug_operations* operations);
/** Exported by the gadget. Called once, after destroy. */
PLATFORM_API void UG_MODULE_EXIT(struct ug_operations* operations);

PLATFORM_END_DECLS
