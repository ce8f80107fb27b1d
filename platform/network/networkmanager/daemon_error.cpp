#include "daemon_error.h"

#include <gio/gio.h>

#include <algorithm>
#include <memory>

#include "connection_manager.h"
#include "platform_log.h"

namespace network {
namespace {

constexpr DaemonError kGone{CONNECTION_ERROR_NO_CONNECTION, "NO_CONNECTION"};
constexpr DaemonError kSilent{CONNECTION_ERROR_NO_REPLY, "NO_REPLY"};
constexpr DaemonError kRefused{CONNECTION_ERROR_INVALID_PARAMETER, "INVALID_PARAMETER"};
constexpr DaemonError kReadOnly{CONNECTION_ERROR_INVALID_OPERATION, "INVALID_OPERATION"};
constexpr DaemonError kFailed{CONNECTION_ERROR_OPERATION_FAILED, "OPERATION_FAILED"};
constexpr DaemonError kAborted{CONNECTION_ERROR_OPERATION_ABORTED, "OPERATION_ABORTED"};

struct NamedError {
    std::string_view ending;  // of the D-Bus error name
    DaemonError error;
};

// NetworkManager's D-Bus API, "Errors"; the first ones are D-Bus's own.
constexpr NamedError kErrors[] = {
    {"DBus.Error.UnknownMethod", kGone},  // of an object that is gone
    {"DBus.Error.UnknownObject", kGone},
    {"DBus.Error.NoReply", kSilent},
    {"DBus.Error.Timeout", kSilent},
    {"DBus.Error.TimedOut", kSilent},
    {"Settings.InvalidConnection", kRefused},
    {"Settings.ReadOnlyConnection", kReadOnly},
    {"Device.NotActive", kGone},
    {"Device.SpecificObjectNotFound", kGone},
    {"Device.IncompatibleConnection", kRefused},
    {"Connection.InvalidProperty", kRefused},
    {"Connection.MissingProperty", kRefused},
    {"Connection.InvalidSetting", kRefused},
    {"Connection.MissingSetting", kRefused},
};

}  // namespace

bool hasErrorName(const GError* error, std::string_view ending) {
    if (error == nullptr) return false;
    const std::unique_ptr<char, decltype(&g_free)> name(g_dbus_error_encode_gerror(error), &g_free);
    return std::string_view(name.get()).ends_with(ending);
}

DaemonError daemonErrorOf(const GError* error) {
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) return kSilent;
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) return kAborted;
    const auto* known =
        std::ranges::find_if(kErrors, [&](const NamedError& row) { return hasErrorName(error, row.ending); });
    return known == std::end(kErrors) ? kFailed : known->error;
}

void logDaemonError(const char* what, const GError* error) {
    const std::string_view name = daemonErrorOf(error).name;
    const std::string_view words = error->message;
    const auto length = static_cast<int>(std::min(words.find('\n'), words.size()));
    __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK", "%s: %.*s (%.*s)", what, static_cast<int>(name.size()),
                 name.data(), length, words.data());
}

}  // namespace network
