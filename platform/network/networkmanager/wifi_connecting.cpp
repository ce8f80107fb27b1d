// Connecting to an access point.
#include <algorithm>

#include "radio_request.h"
#include "wifi_manager.h"
#include "wifi_network.h"
#include "wifi_question.h"

namespace network {
namespace {

constexpr double kConnectLimit = 30;     // seconds
constexpr double kReasonSettling = 0.2;  // the device's reason may follow the end of its activation

struct ReasonRow {
    NMDeviceStateReason reason;
    int result;
};

// NetworkManager has no reason for a wrong passphrase: it asks for a new one, and nobody has any.
constexpr ReasonRow kReasons[] = {
    {NM_DEVICE_STATE_REASON_NO_SECRETS, CONNECTION_ERROR_INVALID_KEY},
    {NM_DEVICE_STATE_REASON_IP_CONFIG_UNAVAILABLE, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_IP_CONFIG_EXPIRED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_START_FAILED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_ERROR, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_FAILED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_SSID_NOT_FOUND, CONNECTION_ERROR_NO_CONNECTION},
    {NM_DEVICE_STATE_REASON_SUPPLICANT_TIMEOUT, CONNECTION_ERROR_NO_REPLY},
    {NM_DEVICE_STATE_REASON_USER_REQUESTED, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_NEW_ACTIVATION, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_CONNECTION_REMOVED, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_SLEEPING, CONNECTION_ERROR_OPERATION_ABORTED},
};

int resultOf(NMDeviceStateReason reason) {
    const auto* row = std::ranges::find(kReasons, reason, &ReasonRow::reason);
    return row == std::end(kReasons) ? CONNECTION_ERROR_OPERATION_FAILED : row->result;
}

bool canBeKey(int security, const std::string& passphrase) {
    switch (security) {
        case WIFI_SECURITY_WEP:
            return nm_utils_wep_key_valid(passphrase.c_str(), NM_WEP_KEY_TYPE_UNKNOWN);
        case WIFI_SECURITY_WPA_PSK:
        case WIFI_SECURITY_WPA2_PSK:
            return nm_utils_wpa_psk_valid(passphrase.c_str());
        default:
            return !passphrase.empty();
    }
}

// Replaces what the profile says of security, except in profiles of which only the passphrase changes.
void setPassphrase(NMConnection* profile, int security, const std::string& passphrase) {
    NMSettingWirelessSecurity* setting = nm_connection_get_setting_wireless_security(profile);
    const bool isNew = setting == nullptr;
    if (isNew) setting = NM_SETTING_WIRELESS_SECURITY(nm_setting_wireless_security_new());
    if (security == WIFI_SECURITY_WEP) {
        if (isNew) g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_KEY_MGMT, "none", nullptr);
        g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_WEP_KEY0, passphrase.c_str(), nullptr);
    } else {
        const char* management = security == WIFI_SECURITY_SAE ? "sae" : "wpa-psk";
        if (isNew) g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_KEY_MGMT, management, nullptr);
        g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_PSK, passphrase.c_str(), nullptr);
    }
    if (isNew) nm_connection_add_setting(profile, NM_SETTING(setting));
}

class Connecting final : public RadioRequest {
  public:
    Connecting(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint, Answer answer)
        : RadioRequest(device, std::move(answer)),
          client_(NM_CLIENT(g_object_ref(client))),
          path_(nm_object_get_path(NM_OBJECT(accessPoint))) {}

    void start(NMAccessPoint* accessPoint, const std::string& passphrase) {
        limitTo(kConnectLimit);
        const int security = securityOf(accessPoint);
        if (!passphrase.empty() && security != WIFI_SECURITY_NONE && !canBeKey(security, passphrase)) {
            return finishLater(CONNECTION_ERROR_INVALID_KEY);
        }
        NMRemoteConnection* profile = profileFor(client_.get(), accessPoint);
        if (profile == nullptr) return connectAnew(security, passphrase);
        profile_.reset(NM_REMOTE_CONNECTION(g_object_ref(profile)));
        if (passphrase.empty() || security == WIFI_SECURITY_NONE) return activate();
        replacePassphrase(security, passphrase);
    }

    // An activation that the daemon has not told of yet is ended when it does.
    void abort() {
        isAborted_ = true;
        if (active_ == nullptr || isFinished()) return;
        settle_.stop();
        timeOut();
        finishLater(CONNECTION_ERROR_OPERATION_ABORTED);
    }

  private:
    void connectAnew(int security, const std::string& passphrase) {
        if (security == WIFI_SECURITY_EAP) return finishLater(WIFI_ERROR_SECURITY_RESTRICTED);
        if (security != WIFI_SECURITY_NONE && passphrase.empty()) return finishLater(CONNECTION_ERROR_INVALID_KEY);
        isNew_ = true;
        const Object<NMConnection> profile(nm_simple_connection_new());
        if (security != WIFI_SECURITY_NONE) setPassphrase(profile.get(), security, passphrase);
        nm_client_add_and_activate_connection_async(client_.get(), profile.get(), device_.get(), path_.c_str(),
                                                    cancellable_.get(), &Connecting::onActivating, weak());
    }

    void replacePassphrase(int security, const std::string& passphrase) {
        const Object<NMConnection> changed(nm_simple_connection_new_clone(NM_CONNECTION(profile_.get())));
        setPassphrase(changed.get(), security, passphrase);
        nm_remote_connection_update2(profile_.get(), nm_connection_to_dbus(changed.get(), NM_CONNECTION_SERIALIZE_ALL),
                                     NM_SETTINGS_UPDATE2_FLAG_TO_DISK, nullptr, cancellable_.get(),
                                     &Connecting::onReplaced, weak());
    }

    static void onReplaced(GObject* profile, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        GVariant* reply = nm_remote_connection_update2_finish(NM_REMOTE_CONNECTION(profile), result, &failure);
        if (reply != nullptr) g_variant_unref(reply);
        auto* const self = take<Connecting>(data);
        if (self != nullptr && failure != nullptr) return self->refuse("storing the passphrase", failure);
        if (self != nullptr) self->activate();
        g_clear_error(&failure);
    }

    void activate() {
        nm_client_activate_connection_async(client_.get(), NM_CONNECTION(profile_.get()), device_.get(), path_.c_str(),
                                            cancellable_.get(), &Connecting::onActivating, weak());
    }

    static void onActivating(GObject* client, GAsyncResult* result, gpointer data) {
        auto* const self = take<Connecting>(data);
        const bool isNew = self != nullptr && self->isNew_;
        const auto end = isNew ? &nm_client_add_and_activate_connection_finish : &nm_client_activate_connection_finish;
        GError* failure = nullptr;
        Object<NMActiveConnection> active(self == nullptr ? nullptr : end(NM_CLIENT(client), result, &failure));
        if (self == nullptr || self->isFinished()) return g_clear_error(&failure);
        if (failure != nullptr) return self->refuse("connecting", failure);
        self->watch(std::move(active));
    }

    void watch(Object<NMActiveConnection> active) {
        active_ = std::move(active);
        const auto look = [](gpointer self) { static_cast<Connecting*>(self)->look(); };
        signals_.add(active_.get(), "notify::" NM_ACTIVE_CONNECTION_STATE, look, this);
        signals_.add(device_.get(), "notify::" NM_DEVICE_STATE, look, this);
        signals_.add(device_.get(), "notify::" NM_DEVICE_ACTIVE_CONNECTION, look, this);
        if (isAborted_) return abort();
        this->look();
    }

    bool isOver() const {
        NMActiveConnection* current = nm_device_get_active_connection(device_.get());
        return nm_active_connection_get_state(active_.get()) == NM_ACTIVE_CONNECTION_STATE_DEACTIVATED ||
               (wasCurrent_ && current != active_.get());
    }

    // The device ends what it did before first, so only a failure of its own activation counts.
    void look() {
        const bool isCurrent = nm_device_get_active_connection(device_.get()) == active_.get();
        wasCurrent_ = wasCurrent_ || isCurrent;
        if (nm_active_connection_get_state(active_.get()) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED) {
            return finishLater(CONNECTION_ERROR_NONE);
        }
        if (isCurrent && nm_device_get_state(device_.get()) == NM_DEVICE_STATE_FAILED) return fail();
        if (isOver()) settle_.start(kReasonSettling, [this] { fail(); });
    }

    void fail() {
        settle_.stop();
        if (isFinished()) return;
        forget();
        finishLater(resultOf(nm_device_get_state_reason(device_.get())));
    }

    // Ends the activation, too.
    void timeOut() override {
        if (active_ != nullptr) {
            nm_client_deactivate_connection_async(client_.get(), active_.get(), nullptr, nullptr, nullptr);
        }
        forget();
    }

    void forget() {
        NMRemoteConnection* made =
            isNew_ && active_ != nullptr ? nm_active_connection_get_connection(active_.get()) : nullptr;
        if (made != nullptr) nm_remote_connection_delete_async(made, nullptr, nullptr, nullptr);
    }

    Object<NMClient> client_;
    const std::string path_;
    Object<NMRemoteConnection> profile_;
    Object<NMActiveConnection> active_;
    bool isNew_ = false;
    bool isAborted_ = false;
    bool wasCurrent_ = false;
    Timer settle_;
};

}  // namespace

std::unique_ptr<Question> connectWifi(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint,
                                      const std::string& passphrase, Answer answer) {
    auto request = std::make_unique<Connecting>(client, device, accessPoint, std::move(answer));
    request->start(accessPoint, passphrase);
    return request;
}

void abortConnecting(Question& connecting) {
    static_cast<Connecting&>(connecting).abort();
}

}  // namespace network
