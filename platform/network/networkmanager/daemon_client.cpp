#include "daemon_client.h"

#include <utility>

#include "platform_log.h"

namespace network {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFarewellLimit{500};
constexpr const char* kClientSignals[] = {"notify::" NM_CLIENT_NM_RUNNING, "notify::" NM_CLIENT_STARTUP,
                                          "notify::" NM_CLIENT_DEVICES, "notify::" NM_CLIENT_ACTIVE_CONNECTIONS,
                                          "notify::" NM_CLIENT_CONNECTIONS};
constexpr const char* kDeviceSignals[] = {"notify::" NM_DEVICE_STATE, "notify::" NM_DEVICE_INTERFACE_FLAGS,
                                          "notify::" NM_DEVICE_IP4_CONFIG, "notify::" NM_DEVICE_IP6_CONFIG};
constexpr const char* kActivationSignal = "notify::" NM_ACTIVE_CONNECTION_STATE;
constexpr const char* kAddressSignal = "notify::" NM_IP_CONFIG_ADDRESSES;

bool isWatched(NMDevice* device) {
    const NMDeviceType type = nm_device_get_device_type(device);
    return type == NM_DEVICE_TYPE_ETHERNET || type == NM_DEVICE_TYPE_VETH || type == NM_DEVICE_TYPE_WIFI;
}

// libnm drops what it still has under way in its own time; its context must run until then.
void letGo(Object<NMClient>& client) {
    const auto setFlag = [](gpointer flag, GObject*) { *static_cast<bool*>(flag) = true; };
    bool gone = false;
    GObject* watcher = nm_client_get_context_busy_watcher(client.get());
    g_object_weak_ref(watcher, setFlag, &gone);
    client.reset();
    if (iterateUntil(
            g_main_context_default(), [&] { return gone; }, kFarewellLimit))
        return;
    g_object_weak_unref(watcher, setFlag, &gone);
}

}  // namespace

void SignalConnections::add(gpointer object, const char* signal, Handler handler, gpointer owner) {
    if (object == nullptr) return;
    const gulong id = g_signal_connect_swapped(object, signal, G_CALLBACK(handler), owner);
    connections_.push_back({Object<GObject>(G_OBJECT(g_object_ref(object))), id});
}

void SignalConnections::clear() {
    for (const Connection& connection : connections_) {
        g_signal_handler_disconnect(connection.object.get(), connection.id);
    }
    connections_.clear();
}

// Lives on in the callbacks of calls under way; `owner` is null once nobody waits for them.
struct DaemonClient::Opening {
    DaemonClient* owner = nullptr;
    Object<GCancellable> cancellable{g_cancellable_new()};
    std::string error;
    bool finished = false;

    using Shared = std::shared_ptr<Opening>;
    static Shared take(gpointer data) { return std::move(*std::unique_ptr<Shared>(static_cast<Shared*>(data))); }

    void fail(GError* failure) {
        error = failure->message;
        finished = true;
        g_error_free(failure);
    }

    static void onBus(GObject*, GAsyncResult* result, gpointer data) {
        const Shared self = take(data);
        GError* failure = nullptr;
        const Object<GDBusConnection> bus(g_bus_get_finish(result, &failure));
        if (bus == nullptr) return self->fail(failure);
        // A bus that goes away must not take the program with it, which is what GLib would do.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        nm_client_new_async(self->cancellable.get(), &Opening::onClient, new Shared(self));
    }

    static void onClient(GObject*, GAsyncResult* result, gpointer data) {
        const Shared self = take(data);
        GError* failure = nullptr;
        Object<NMClient> client(nm_client_new_finish(result, &failure));
        if (client == nullptr) return self->fail(failure);
        self->finished = true;
        if (self->owner != nullptr) self->owner->adopt(client.release());
    }
};

DaemonClient::DaemonClient(std::function<void()> changed)
    : changed_(std::move(changed)), opening_(std::make_shared<Opening>()) {
    opening_->owner = this;
}

DaemonClient::~DaemonClient() {
    opening_->owner = nullptr;
    g_cancellable_cancel(opening_->cancellable.get());
    signals_.clear();
    if (client_ != nullptr) letGo(client_);
}

bool DaemonClient::open(milliseconds limit, std::string& error) {
    g_bus_get(G_BUS_TYPE_SYSTEM, opening_->cancellable.get(), &Opening::onBus, new Opening::Shared(opening_));
    iterateUntil(
        g_main_context_default(), [&] { return opening_->finished; }, limit);
    if (!opening_->finished) {
        __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK", "NetworkManager is slow to answer; going on without it");
    }
    if (opening_->error.empty()) return true;
    error = "NetworkManager cannot be reached: " + opening_->error;
    return false;
}

NMClient* DaemonClient::running() const {
    return client_ != nullptr && nm_client_get_nm_running(client_.get()) ? client_.get() : nullptr;
}

void DaemonClient::adopt(NMClient* client) {
    client_.reset(client);
    changeSeen();
}

// Objects come and go, so the connections are made anew after each change.
void DaemonClient::watch() {
    signals_.clear();
    if (client_ == nullptr) return;
    const auto handler = [](gpointer self) { static_cast<DaemonClient*>(self)->changeSeen(); };
    for (const char* signal : kClientSignals) {
        signals_.add(client_.get(), signal, handler, this);
    }
    const GPtrArray* devices = nm_client_get_devices(client_.get());
    for (guint i = 0; i < devices->len; ++i) {
        auto* const device = NM_DEVICE(devices->pdata[i]);
        if (!isWatched(device)) continue;
        for (const char* signal : kDeviceSignals) {
            signals_.add(device, signal, handler, this);
        }
        signals_.add(nm_device_get_active_connection(device), kActivationSignal, handler, this);
        signals_.add(nm_device_get_ip4_config(device), kAddressSignal, handler, this);
        signals_.add(nm_device_get_ip6_config(device), kAddressSignal, handler, this);
    }
}

void DaemonClient::changeSeen() {
    if (job_ != nullptr) return;
    const auto work = [](void* data) {
        auto* const self = static_cast<DaemonClient*>(data);
        (void)self->job_.release();  // a job that runs is over
        self->watch();
        self->changed_();
    };
    job_.reset(ecore_job_add(work, this));
}

}  // namespace network
