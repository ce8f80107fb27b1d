#include "profile_store.h"

#include <algorithm>
#include <utility>

#include "connection_manager.h"
#include "daemon_error.h"
#include "handles.h"
#include "ipv6_change.h"
#include "live_values.h"
#include "network/ipv6_settings.h"
#include "network/timer.h"
#include "platform_log.h"

namespace network {
namespace {

constexpr int kCallLimitMs = 10000;
constexpr const char* kSettingsInterface = "org.freedesktop.NetworkManager.Settings.Connection";

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

bool isEmpty(const Ipv6Settings& settings) {
    return !settings.isStatic && !settings.address && !settings.prefixLength && !settings.gateway &&
           !settings.dnsIsStatic && settings.dns.empty();
}

// Profiles of a single user ask for less than those of the system.
bool mayChange(NMClient* client, NMConnection* profile) {
    NMSettingConnection* setting = nm_connection_get_setting_connection(profile);
    const bool own = setting != nullptr && nm_setting_connection_get_num_permissions(setting) > 0;
    const auto permission =
        own ? NM_CLIENT_PERMISSION_SETTINGS_MODIFY_OWN : NM_CLIENT_PERMISSION_SETTINGS_MODIFY_SYSTEM;
    return nm_client_get_permission_result(client, permission) != NM_CLIENT_PERMISSION_RESULT_NO;
}

bool isReadOnly(NMConnection* profile) {
    NMSettingConnection* setting = nm_connection_get_setting_connection(profile);
    return setting != nullptr && nm_setting_connection_get_read_only(setting);
}

bool sameSettings(NMConnection* first, NMConnection* second) {
    return nm_connection_compare(first, second, NM_SETTING_COMPARE_FLAG_EXACT);
}

// Whether NetworkManager would take the profile with these settings.
bool wouldBeTaken(NMConnection* profile, const Ipv6Settings& settings, const Ipv6Values& live) {
    const Object<NMConnection> changed(nm_simple_connection_new_clone(profile));
    changeIpv6(changed.get(), settings, live);
    GError* refusal = nullptr;
    const bool taken = nm_connection_normalize(changed.get(), nullptr, nullptr, &refusal);
    if (!taken) logDaemonError("settings cannot be stored", refusal);
    g_clear_error(&refusal);
    return taken;
}

NMDevice* deviceOn(NMClient* client, const std::string& id) {
    const GPtrArray* devices = nm_client_get_devices(client);
    for (guint i = 0; i < devices->len; ++i) {
        auto* const device = NM_DEVICE(devices->pdata[i]);
        NMActiveConnection* active = nm_device_get_active_connection(device);
        if (active != nullptr && id == nm_active_connection_get_uuid(active)) return device;
    }
    return nullptr;
}

}  // namespace

// The writing of one profile. Reads the profile anew from the daemon before each change, because libnm's copy may be
// older than the last change. Lives on in the callbacks of its calls; after `cancel` those do nothing.
struct ProfileStore::Work : std::enable_shared_from_this<Work> {
    using Self = std::shared_ptr<Work>;

    Work(NMClient* nmClient, std::string uuid) : client(NM_CLIENT(g_object_ref(nmClient))), id(std::move(uuid)) {}

    void cancel() {
        g_cancellable_cancel(cancellable.get());
        begin.stop();
    }

    // In a later iteration, so that the settings of this one are written together.
    void wake() {
        if (!busy && !begin.isRunning()) begin.start(0, [this] { read(); });
    }

    void read() {
        NMRemoteConnection* stored = nm_client_get_connection_by_uuid(client.get(), id.c_str());
        if (stored == nullptr) return giveUp("the profile is gone before its settings were stored: NO_CONNECTION");
        path = nm_connection_get_path(NM_CONNECTION(stored));
        busy = true;
        call("GetSettings", nullptr, &Work::onRead);
    }

    // A polkit agent may wait for a person who never comes, so every call has an end.
    void call(const char* method, GVariant* arguments, GAsyncReadyCallback answered) {
        g_dbus_connection_call(nm_client_get_dbus_connection(client.get()), NM_DBUS_SERVICE, path.c_str(),
                               kSettingsInterface, method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, kCallLimitMs,
                               cancellable.get(), answered, new Self(shared_from_this()));
    }

    static Self take(gpointer data) { return std::move(*std::unique_ptr<Self>(static_cast<Self*>(data))); }

    // The reply of a call, or null, with the failure logged and the work over.
    Variant replyOf(GObject* bus, GAsyncResult* result) {
        GError* failure = nullptr;
        Variant reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &failure));
        if (reply == nullptr) fail(failure);
        return reply;
    }

    static void onRead(GObject* bus, GAsyncResult* result, gpointer data) {
        const Self self = take(data);
        const Variant reply = self->replyOf(bus, result);
        if (reply == nullptr) return;
        const Variant settings(g_variant_get_child_value(reply.get(), 0));
        GError* failure = nullptr;
        const Object<NMConnection> profile(nm_simple_connection_new_from_dbus(settings.get(), &failure));
        if (profile == nullptr) return self->fail(failure);
        self->change(profile.get());
    }

    void change(NMConnection* profile) {
        const Object<NMConnection> changed(nm_simple_connection_new_clone(profile));
        written = std::exchange(asked, {});
        asked = changeIpv6(changed.get(), written, liveValuesOf(client.get(), id));
        if (sameSettings(profile, changed.get())) return finish();
        GError* refusal = nullptr;
        if (!nm_connection_normalize(changed.get(), nullptr, nullptr, &refusal)) return fail(refusal);
        // Secrets are not among what is read; the daemon keeps those that it has.
        GVariant* settings = nm_connection_to_dbus(changed.get(), NM_CONNECTION_SERIALIZE_ALL);
        call("Update2",
             g_variant_new("(@a{sa{sv}}u@a{sv})", settings, NM_SETTINGS_UPDATE2_FLAG_TO_DISK,
                           g_variant_new("a{sv}", nullptr)),
             &Work::onWritten);
    }

    static void onWritten(GObject* bus, GAsyncResult* result, gpointer data) {
        const Self self = take(data);
        if (self->replyOf(bus, result) != nullptr) self->apply();
    }

    void apply() {
        NMDevice* device = deviceOn(client.get(), id);
        if (device == nullptr) return finish();
        nm_device_reapply_async(device, nullptr, 0, 0, cancellable.get(), &Work::onApplied,
                                new Self(shared_from_this()));
    }

    static void onApplied(GObject* device, GAsyncResult* result, gpointer data) {
        const Self self = take(data);
        GError* failure = nullptr;
        if (!nm_device_reapply_finish(NM_DEVICE(device), result, &failure)) return self->fail(failure);
        self->finish();
    }

    // Settings that came meanwhile are written next; those that still wait for their values are not.
    void finish() {
        busy = false;
        written = {};
        if (std::exchange(more, false)) wake();
    }

    void fail(GError* failure) {
        if (!g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
            logDaemonError(("settings of profile " + id + " not stored").c_str(), failure);
        }
        g_error_free(failure);
        finish();
    }

    void giveUp(const char* reason) {
        __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK", "%s", reason);
        asked = {};
    }

    Object<NMClient> client;
    const std::string id;
    std::string path;
    Ipv6Settings asked;    // not written yet
    Ipv6Settings written;  // being written
    bool busy = false;
    bool more = false;  // something was asked while busy
    Object<GCancellable> cancellable{g_cancellable_new()};
    Timer begin;
};

ProfileStore::~ProfileStore() {
    for (const auto& [id, work] : works_)
        work->cancel();
}

int ProfileStore::store(NMClient* client, const std::string& id, const Ipv6Settings& settings) {
    NMRemoteConnection* stored = nm_client_get_connection_by_uuid(client, id.c_str());
    if (stored == nullptr) {
        works_.erase(id);
        return CONNECTION_ERROR_NO_CONNECTION;
    }
    NMConnection* profile = NM_CONNECTION(stored);
    if (isReadOnly(profile)) return CONNECTION_ERROR_INVALID_OPERATION;
    if (!mayChange(client, profile)) return CONNECTION_ERROR_OPERATION_FAILED;

    auto& work = works_[id];
    if (work == nullptr) work = std::make_shared<Work>(client, id);
    Ipv6Settings all = work->written;
    merge(work->asked, all);
    merge(settings, all);
    if (isEmpty(all)) return CONNECTION_ERROR_NONE;
    if (!wouldBeTaken(profile, all, liveValuesOf(client, id))) return CONNECTION_ERROR_INVALID_PARAMETER;
    merge(settings, work->asked);
    work->more = work->busy;
    work->wake();
    return CONNECTION_ERROR_NONE;
}

bool ProfileStore::isWriting() const {
    return std::ranges::any_of(works_,
                               [](const auto& row) { return row.second->busy || row.second->begin.isRunning(); });
}

std::optional<bool> ProfileStore::askedDnsIsStatic(const std::string& id) const {
    const auto work = works_.find(id);
    if (work == works_.end()) return std::nullopt;
    const auto& [unused, ours] = *work;
    return ours->asked.dnsIsStatic ? ours->asked.dnsIsStatic : ours->written.dnsIsStatic;
}

}  // namespace network
