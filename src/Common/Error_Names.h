// Names of platform error codes, for the log.
#pragma once

// Constant text; unknown codes give "DEFAULT".
const char* convertWifiErrorToString(int code);
// Constant text; unknown codes give "UNKNOWN".
const char* convertWiredErrorToString(int code);
