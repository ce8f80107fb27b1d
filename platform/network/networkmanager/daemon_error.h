// NetworkManager's errors in the terms of the connection manager.
#pragma once

#include <glib.h>

#include <string_view>

namespace network {

struct DaemonError {
    int code;               // CONNECTION_ERROR_*
    std::string_view name;  // the code's name without its prefix, for the log
};

// OPERATION_FAILED for what has no code of its own.
DaemonError daemonErrorOf(const GError* error);

// Whether the error's D-Bus name ends so. Null is no error.
bool hasErrorName(const GError* error, std::string_view ending);

// One warning in the log: what failed, the code's name, and the daemon's own words.
void logDaemonError(const char* what, const GError* error);

}  // namespace network
