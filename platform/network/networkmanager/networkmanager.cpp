#include "networkmanager.h"

#include <chrono>
#include <optional>
#include <utility>

#include "connection_manager.h"
#include "daemon_client.h"
#include "gateway_probe.h"
#include "glib_bridge.h"
#include "network/backend.h"
#include "network/timer.h"
#include "online_question.h"
#include "platform_log.h"
#include "profile_store.h"
#include "wired_network.h"

namespace network {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kOpenLimit{2000};
constexpr milliseconds kNameLimit{1000};
constexpr double kSettleSeconds = 0.5;

class NetworkManagerBackend final : public Backend {
  public:
    explicit NetworkManagerBackend(Options options) : options_(std::move(options)), daemon_([this] { compare(); }) {}

    bool open(std::string& error) {
        if (!daemon_.open(kOpenLimit, error)) return false;
        if (NMClient* client = daemon_.running()) {
            link_ = knownLink(client);
            addresses_ = shownAddresses(client);
        }
        return true;
    }

    int ethernetState(int& state) override {
        NMClient* client = daemon_.running();
        const auto found = client == nullptr ? std::nullopt : linkState(client);
        if (!found) return CONNECTION_ERROR_OPERATION_FAILED;
        state = *found;
        return CONNECTION_ERROR_NONE;
    }

    // A hardware address outlives the daemon: the last one is kept for the time without it.
    int macAddress(int connectionType, std::string& mac) override {
        if (connectionType != CONNECTION_TYPE_ETHERNET) return CONNECTION_ERROR_NO_CONNECTION;
        if (NMClient* client = daemon_.running()) rememberMac(client);
        if (mac_.empty()) return CONNECTION_ERROR_NO_CONNECTION;
        mac = mac_;
        return CONNECTION_ERROR_NONE;
    }

    int profiles(int which, std::vector<std::string>& ids) override {
        NMClient* client = daemon_.running();
        if (client == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        ids = wiredProfiles(client, which);
        return CONNECTION_ERROR_NONE;
    }

    int profile(const std::string& id, Profile& profile) override {
        NMClient* client = daemon_.running();
        auto found = client == nullptr ? std::nullopt : readProfile(client, id);
        if (!found) return CONNECTION_ERROR_NO_CONNECTION;
        profile = std::move(*found);
        profile.ipv6.dnsIsStatic = store_.askedDnsIsStatic(id).value_or(profile.ipv6.dnsIsStatic);
        return CONNECTION_ERROR_NONE;
    }

    int store(const std::string& id, const Ipv6Settings& settings) override {
        NMClient* client = daemon_.running();
        return client == nullptr ? CONNECTION_ERROR_OPERATION_FAILED : store_.store(client, id, settings);
    }

    int askGateway(const std::string& profileId, Answer answer, std::unique_ptr<Question>& question) override {
        Profile asked;
        if (const int error = profile(profileId, asked); error != CONNECTION_ERROR_NONE) return error;
        if (asked.state != CONNECTION_PROFILE_STATE_CONNECTED) return CONNECTION_ERROR_NO_CONNECTION;
        const auto gateway = gatewayOf(daemon_.running(), profileId);
        if (!gateway) return CONNECTION_ERROR_INVALID_GATEWAY;
        auto probe = probeGateway(*gateway, std::move(answer));
        if (probe == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        question = std::move(probe);
        return CONNECTION_ERROR_NONE;
    }

    int askOnline(Answer answer, std::unique_ptr<Question>& question) override {
        NMClient* client = daemon_.running();
        if (client == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        NMDevice* device = wiredDevice(client);
        if (device == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
        return askOnlineOver(client, device, options_.onlineUrl, std::move(answer), question);
    }

    void observe(Observer* observer) override { observer_ = observer; }

  private:
    void rememberMac(NMClient* client) {
        NMDevice* device = wiredDevice(client);
        const char* found = device == nullptr ? nullptr : nm_device_get_hw_address(device);
        if (found != nullptr) mac_ = found;
    }

    // What is told of the cable. An unmanaged device says nothing about it, and neither do devices that go just before
    // the daemon itself does.
    std::optional<int> knownLink(NMClient* client) {
        const auto link = linkState(client);
        if (link != CONNECTION_ETHERNET_DEACTIVATED) {
            withoutDeviceSince_.reset();
            return link;
        }
        if (wiredDevice(client) != nullptr) return std::nullopt;
        const double now = ecore_time_get();
        if (!withoutDeviceSince_) withoutDeviceSince_ = now;
        if (now - *withoutDeviceSince_ >= kSettleSeconds) return link;
        settle_.start(kSettleSeconds, [this] { compare(); });
        return std::nullopt;
    }

    // What is unknown while the daemon is away is no change; that it is known again is one.
    void compare() {
        NMClient* client = daemon_.running();
        if (client != nullptr) rememberMac(client);
        const auto link = client == nullptr ? std::nullopt : knownLink(client);
        const bool linkChanged = link && link != link_;
        link_ = link;
        const ShownAddresses addresses = client == nullptr ? addresses_ : shownAddresses(client);
        const bool addressesChanged = !(addresses == addresses_);
        addresses_ = addresses;
        if (!addresses.settled) settle_.start(kSettleSeconds, [this] { compare(); });
        notify(linkChanged, addressesChanged);
    }

    // An observer may take this backend away from inside its callback.
    void notify(bool linkChanged, bool addressesChanged) {
        const std::weak_ptr<bool> alive = alive_;
        const bool connected = link_ == CONNECTION_ETHERNET_CONNECTED;
        if (linkChanged && observer_ != nullptr) {
            observer_->connectionTypeChanged(connected ? CONNECTION_TYPE_ETHERNET : CONNECTION_TYPE_DISCONNECTED);
        }
        if (addressesChanged && !alive.expired() && observer_ != nullptr) {
            observer_->addressChanged(addresses_.ipv4, addresses_.ipv6);
        }
    }

    const Options options_;
    Observer* observer_ = nullptr;
    std::optional<int> link_;  // nullopt: unknown
    std::optional<double> withoutDeviceSince_;
    ShownAddresses addresses_;
    std::string mac_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Timer settle_;
    DaemonClient daemon_;
    ProfileStore store_{[](NMClient* client, const std::string& id) {
        const auto found = readProfile(client, id);
        return found ? found->ipv6 : Ipv6Values{};
    }};
};

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

std::unique_ptr<Backend> openNetworkManager(const Options& options, std::string& error) {
    auto backend = std::make_unique<NetworkManagerBackend>(options);
    if (!backend->open(error)) return nullptr;
    return backend;
}

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
