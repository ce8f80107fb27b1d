#include "wifi_passphrase.h"

#include <utility>

#include "daemon_error.h"
#include "wifi_manager.h"

namespace network {
namespace {

constexpr const char* kSecurity = NM_SETTING_WIRELESS_SECURITY_SETTING_NAME;

GError* failureOfUpdate(GObject* profile, GAsyncResult* result) {
    GError* failure = nullptr;
    GVariant* reply = nm_remote_connection_update2_finish(NM_REMOTE_CONNECTION(profile), result, &failure);
    if (reply != nullptr) g_variant_unref(reply);
    return failure;
}

// Null settings: those that the daemon has now.
void writeToDisk(NMRemoteConnection* profile, GVariant* settings) {
    const auto written = [](GObject* source, GAsyncResult* result, gpointer) {
        GError* failure = failureOfUpdate(source, result);
        if (failure != nullptr) logDaemonError("storing the passphrase", failure);
        g_clear_error(&failure);
    };
    nm_remote_connection_update2(profile, settings, NM_SETTINGS_UPDATE2_FLAG_TO_DISK, nullptr, nullptr, written,
                                 nullptr);
}

}  // namespace

bool takesPassphrase(int security) {
    return security != WIFI_SECURITY_NONE && security != WIFI_SECURITY_EAP;
}

bool canBePassphrase(int security, const std::string& passphrase) {
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

void setPassphrase(NMConnection* profile, int security, const std::string& passphrase) {
    NMSettingWirelessSecurity* setting = nm_connection_get_setting_wireless_security(profile);
    if (setting == nullptr) {
        constexpr auto kManagement = [](int type) {
            return type == WIFI_SECURITY_WEP ? "none" : type == WIFI_SECURITY_SAE ? "sae" : "wpa-psk";
        };
        setting = NM_SETTING_WIRELESS_SECURITY(nm_setting_wireless_security_new());
        g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_KEY_MGMT, kManagement(security), nullptr);
        nm_connection_add_setting(profile, NM_SETTING(setting));
    }
    // Nobody else is there to keep it for NetworkManager.
    constexpr auto kStored = NM_SETTING_SECRET_FLAG_NONE;
    if (security == WIFI_SECURITY_WEP) {
        g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_WEP_KEY0, passphrase.c_str(),
                     NM_SETTING_WIRELESS_SECURITY_WEP_TX_KEYIDX, 0U, NM_SETTING_WIRELESS_SECURITY_WEP_KEY_FLAGS,
                     kStored, nullptr);
    } else {
        g_object_set(setting, NM_SETTING_WIRELESS_SECURITY_PSK, passphrase.c_str(),
                     NM_SETTING_WIRELESS_SECURITY_PSK_FLAGS, kStored, nullptr);
    }
}

PassphraseTrial::PassphraseTrial(NMRemoteConnection* profile)
    : profile_(NM_REMOTE_CONNECTION(g_object_ref(profile))),
      old_(nm_simple_connection_new_clone(NM_CONNECTION(profile))),
      changed_(nm_simple_connection_new_clone(NM_CONNECTION(profile))) {}

void PassphraseTrial::start(int security, const std::string& passphrase, Done done) {
    setPassphrase(changed_.get(), security, passphrase);
    done_ = std::move(done);
    nm_remote_connection_get_secrets_async(profile_.get(), kSecurity, cancellable_.get(), &PassphraseTrial::onOldKnown,
                                           self_.data());
}

// A profile may have no passphrase yet. Who may not read one may not change it either, which the daemon says then.
void PassphraseTrial::onOldKnown(GObject* profile, GAsyncResult* result, gpointer data) {
    auto* const self = WeakSelf<PassphraseTrial>::take(data);
    GVariant* secrets = nm_remote_connection_get_secrets_finish(NM_REMOTE_CONNECTION(profile), result, nullptr);
    if (self != nullptr && secrets != nullptr) {
        nm_connection_update_secrets(self->old_.get(), kSecurity, secrets, nullptr);
    }
    if (secrets != nullptr) g_variant_unref(secrets);
    if (self != nullptr && !g_cancellable_is_cancelled(self->cancellable_.get())) self->putIn();
}

void PassphraseTrial::putIn() {
    if (nm_connection_compare(old_.get(), changed_.get(), NM_SETTING_COMPARE_FLAG_EXACT)) return done_(nullptr);
    isPutIn_ = true;
    nm_remote_connection_update2(profile_.get(), nm_connection_to_dbus(changed_.get(), NM_CONNECTION_SERIALIZE_ALL),
                                 NM_SETTINGS_UPDATE2_FLAG_IN_MEMORY, nullptr, cancellable_.get(),
                                 &PassphraseTrial::onPutIn, self_.data());
}

void PassphraseTrial::onPutIn(GObject* profile, GAsyncResult* result, gpointer data) {
    auto* const self = WeakSelf<PassphraseTrial>::take(data);
    GError* failure = failureOfUpdate(profile, result);
    if (self == nullptr || g_cancellable_is_cancelled(self->cancellable_.get())) return g_clear_error(&failure);
    self->isPutIn_ = failure == nullptr;
    self->done_(failure);
}

void PassphraseTrial::keep() {
    if (std::exchange(isPutIn_, false)) writeToDisk(profile_.get(), nullptr);
}

// Other settings of the profile may have been changed meanwhile.
void PassphraseTrial::undo() {
    g_cancellable_cancel(cancellable_.get());
    if (!std::exchange(isPutIn_, false)) return;
    const Object<NMConnection> restored(nm_simple_connection_new_clone(NM_CONNECTION(profile_.get())));
    NMSetting* security = nm_connection_get_setting_by_name(old_.get(), kSecurity);
    nm_connection_remove_setting(restored.get(), G_OBJECT_TYPE(security));
    nm_connection_add_setting(restored.get(), nm_setting_duplicate(security));
    writeToDisk(profile_.get(), nm_connection_to_dbus(restored.get(), NM_CONNECTION_SERIALIZE_ALL));
}

}  // namespace network
