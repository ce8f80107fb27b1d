// Whether there is a NetworkManager to talk to.
#include <NetworkManager.h>

#include <chrono>
#include <memory>

#include "glib_bridge.h"
#include "handles.h"
#include "networkmanager.h"

namespace network {
namespace {

constexpr std::chrono::milliseconds kNameLimit{1000};

// A bus connection of its own, so that the answer is complete before this returns.
GDBusConnection* connectToSystemBus(GMainContext* context) {
    const std::unique_ptr<char, decltype(&g_free)> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr), &g_free);
    if (address == nullptr) return nullptr;
    struct Connecting {
        GDBusConnection* bus = nullptr;
        bool finished = false;
    } connecting;
    const Object<GCancellable> cancellable(g_cancellable_new());
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    const auto done = [](GObject*, GAsyncResult* result, gpointer data) {
        auto* const self = static_cast<Connecting*>(data);
        self->bus = g_dbus_connection_new_for_address_finish(result, nullptr);
        self->finished = true;
    };
    g_dbus_connection_new_for_address(address.get(), flags, nullptr, cancellable.get(), done, &connecting);
    const auto finished = [&] { return connecting.finished; };
    if (!iterateUntil(context, finished, kNameLimit)) {
        g_cancellable_cancel(cancellable.get());
        while (!finished())
            g_main_context_iteration(context, TRUE);
    }
    return connecting.bus;
}

bool nameHasOwner(GDBusConnection* bus) {
    GVariant* reply = g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
        g_variant_new("(s)", NM_DBUS_SERVICE), G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<int>(kNameLimit.count()), nullptr, nullptr);
    if (reply == nullptr) return false;
    gboolean owned = FALSE;
    g_variant_get(reply, "(b)", &owned);
    g_variant_unref(reply);
    return owned;
}

}  // namespace

bool networkManagerAnswers() {
    GMainContext* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    bool owned = false;
    if (const Object<GDBusConnection> bus(connectToSystemBus(context)); bus != nullptr) owned = nameHasOwner(bus.get());
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
    return owned;
}

}  // namespace network
