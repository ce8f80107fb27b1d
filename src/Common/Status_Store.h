// The status screen's keys in the settings store, and their defaults.
#pragma once

#include "Common/Text.h"

inline constexpr const char* kNetworkTypeKey = "db/menu/network/network_type";
inline constexpr const char* kApNameKey = "db/menu/network/ap_name";
inline constexpr const char* kStopFlagKey = "db/menu/network/is_stop";
inline constexpr const char* kApPassKey = "db/menu/network/ap_pass";

// The text under a key, or null.
PlatformText readStore(const char* key);
// Stores the text; says so in the log when the store refuses.
void writeStore(const char* key, const char* value);

// Stores the value, and says so with those words in the log, only when the key has none or holds "NULL".
// Returns whether it did.
bool seedStore(const char* key, const char* value, const char* said);

// Writes the value only when the key has none or holds "NULL".
void set_vconf(const char* key, const char* value);
// Seeds all sixteen keys of the screen.
void vconf_set_init_values();
// Seeds the four mode keys.
void set_vconf_default_keys();
// Seeds the two wired mode keys.
void set_autoIn_vconf();
