// Entry and exit of the IPv6 settings screen, for the status screen.
#pragma once

#include <Evas.h>

#include "connection_manager.h"

struct sglobalIPValues;

// What the settings screen is launched with. OK calls the first one, Cancel and the Back key the second; the Close and
// Menu keys call neither.
struct sIPSettingCallbacks {
    void (*confirmed)(void* data, const sglobalIPValues* values);  // the values live for the call only
    void (*closed)(void* data);
    connection_handle connection;
    void* data;
};

/**
 * Opens the settings screen.
 * @param parent      the popup that it stands in
 * @param networkType 1 wired, 2 wireless
 * @return 1, or -1 when it cannot be opened
 */
int LaunchIPSettings(Evas_Object* parent, int networkType, const sIPSettingCallbacks* callbacks);

// Closes the settings screen without applying anything, and without calling either callback.
// Returns 0, or 1 when it was not open.
int DestroyIPSettings();
