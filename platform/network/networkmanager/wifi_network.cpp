#include "wifi_network.h"

#include <algorithm>

#include "connection_manager.h"
#include "ipv6_change.h"
#include "live_values.h"
#include "wifi_manager.h"

namespace network {
namespace {

struct SecurityRow {
    guint32 rsn, wpa;  // NM80211ApSecurityFlags: any of these bits in the RSN or WPA element
    int security;
};

constexpr guint32 kEnterprise = NM_802_11_AP_SEC_KEY_MGMT_802_1X | NM_802_11_AP_SEC_KEY_MGMT_EAP_SUITE_B_192;

// The first row that fits. An access point of a WPA2/WPA3 transition takes the passphrase the older way, too.
constexpr SecurityRow kSecurities[] = {
    {NM_802_11_AP_SEC_KEY_MGMT_PSK, 0, WIFI_SECURITY_WPA2_PSK},
    {NM_802_11_AP_SEC_KEY_MGMT_SAE, 0, WIFI_SECURITY_SAE},
    {0, NM_802_11_AP_SEC_KEY_MGMT_PSK, WIFI_SECURITY_WPA_PSK},
    {kEnterprise, kEnterprise, WIFI_SECURITY_EAP},
};

// NetworkManager tells the strength in percent only; this is the scale that Wi-Fi drivers use for it.
int dbmOf(guint8 percent) {
    return percent / 2 - 100;
}

std::string nameOf(NMAccessPoint* accessPoint) {
    GBytes* name = nm_access_point_get_ssid(accessPoint);
    if (name == nullptr) return "";
    gsize size = 0;
    const auto* bytes = static_cast<const char*>(g_bytes_get_data(name, &size));
    return {bytes, size};
}

std::uint64_t lastUse(NMConnection* profile) {
    NMSettingConnection* setting = nm_connection_get_setting_connection(profile);
    return setting == nullptr ? 0 : nm_setting_connection_get_timestamp(setting);
}

}  // namespace

NMDeviceWifi* wifiDevice(NMClient* client) {
    for (auto* device : itemsOf<NMDevice>(nm_client_get_devices(client))) {
        if (NM_IS_DEVICE_WIFI(device) && nm_device_get_state(device) > NM_DEVICE_STATE_UNMANAGED) {
            return NM_DEVICE_WIFI(device);
        }
    }
    return nullptr;
}

bool wifiIsOn(NMClient* client) {
    return wifiDevice(client) != nullptr && nm_client_wireless_get_enabled(client) &&
           nm_client_wireless_hardware_get_enabled(client);
}

std::vector<std::string> foundAccessPoints(NMDeviceWifi* device) {
    std::vector<std::string> bssids;
    for (auto* accessPoint : itemsOf<NMAccessPoint>(nm_device_wifi_get_access_points(device))) {
        const char* bssid = nm_access_point_get_bssid(accessPoint);
        if (bssid != nullptr && !nameOf(accessPoint).empty()) bssids.emplace_back(bssid);
    }
    return bssids;
}

NMAccessPoint* findAccessPoint(NMDeviceWifi* device, const std::string& bssid) {
    for (auto* accessPoint : itemsOf<NMAccessPoint>(nm_device_wifi_get_access_points(device))) {
        if (bssid == textOf(nm_access_point_get_bssid(accessPoint))) return accessPoint;
    }
    return nullptr;
}

NMActiveConnection* wifiConnection(NMDeviceWifi* device) {
    NMActiveConnection* active = nm_device_get_active_connection(NM_DEVICE(device));
    const bool connected =
        active != nullptr && nm_active_connection_get_state(active) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED;
    return connected ? active : nullptr;
}

int securityOf(NMAccessPoint* accessPoint) {
    const guint32 rsn = nm_access_point_get_rsn_flags(accessPoint), wpa = nm_access_point_get_wpa_flags(accessPoint);
    const auto fits = [&](const SecurityRow& row) { return (rsn & row.rsn) != 0 || (wpa & row.wpa) != 0; };
    const auto* row = std::ranges::find_if(kSecurities, fits);
    if (row != std::end(kSecurities)) return row->security;
    const bool isPrivate = (nm_access_point_get_flags(accessPoint) & NM_802_11_AP_FLAGS_PRIVACY) != 0;
    return isPrivate && rsn == 0 && wpa == 0 ? WIFI_SECURITY_WEP : WIFI_SECURITY_NONE;
}

NMRemoteConnection* profileFor(NMClient* client, NMAccessPoint* accessPoint) {
    const std::unique_ptr<GPtrArray, decltype(&g_ptr_array_unref)> fitting(
        nm_access_point_filter_connections(accessPoint, nm_client_get_connections(client)), &g_ptr_array_unref);
    const auto profiles = itemsOf<NMConnection>(fitting.get());
    const auto last = std::ranges::max_element(profiles, {}, lastUse);
    return last == profiles.end() ? nullptr : NM_REMOTE_CONNECTION(*last);
}

AccessPoint readAccessPoint(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint) {
    AccessPoint found;
    found.essid = nameOf(accessPoint);
    found.bssid = textOf(nm_access_point_get_bssid(accessPoint));
    found.rssi = dbmOf(nm_access_point_get_strength(accessPoint));
    found.security = securityOf(accessPoint);
    found.passphraseRequired = found.security != WIFI_SECURITY_NONE && profileFor(client, accessPoint) == nullptr;
    NMActiveConnection* active = wifiConnection(device);
    if (active == nullptr || nm_device_wifi_get_active_access_point(device) != accessPoint) return found;
    readLiveValues(active, found.ipv6);
    NMRemoteConnection* profile = nm_active_connection_get_connection(active);
    found.ipv6.dnsIsStatic = profile != nullptr && dnsIsStatic(NM_CONNECTION(profile));
    return found;
}

}  // namespace network
