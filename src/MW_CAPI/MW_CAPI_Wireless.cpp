#include "MW_CAPI/MW_CAPI_Wireless.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <utility>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Run_State.h"
#include "Common/Text.h"
#include "MW_CAPI/Connected_Ap.h"
#include "View/NS_Gateway_Check.h"

namespace {

constexpr int kFamily = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kPrimaryDns = 1;
constexpr int kInitialised = 0;
constexpr int kInitialisedBefore = 3;
constexpr int kInitialiseFailed = 1;

// Handles that gateway checks were asked on. An answer does not tell whose it is, so they go when all have come.
constinit std::array<wifi_ap_handle, 16> askedAps{};
constinit std::size_t askedCount = 0;
constinit std::size_t unanswered = 0;
// The access point that is being disconnected: its handle must outlive the request.
constinit wifi_ap_handle leavingAp = nullptr;

void releaseLeavingAp() {
    if (leavingAp) wifi_ap_destroy(std::exchange(leavingAp, nullptr));
}

void releaseAskedAps() {
    for (wifi_ap_handle& ap : std::span(askedAps).first(askedCount))
        wifi_ap_destroy(std::exchange(ap, nullptr));
    askedCount = unanswered = 0;
}

bool isWifiOn() {
    bool activated = false;
    return wifi_is_activated(&activated) == WIFI_ERROR_NONE && activated;
}

void wlan_manager_register_cbs() {
    LOG_SCOPE();
}

void connected_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Wi-Fi Connection Succeeded\n");
        check_gateway_wireless(existingNetworkStatus());
        return;
    }
    LOG_DEBUG("Wi-Fi Connection Failed! error : %s \n", convertWifiErrorToString(result));
    giveUpGateway();
}

// Hands the passphrase over where the access point wants one. False when it was refused.
bool givePassphrase(wifi_ap_handle ap, const char* passphrase) {
    bool required = false;
    if (wifi_ap_is_passphrase_required(ap, &required) != WIFI_ERROR_NONE || !required) return true;
    LOG_DEBUG("Passphrase is required to connect with AP\n");
    const int result = wifi_ap_set_passphrase(ap, passphrase);
    if (result == WIFI_ERROR_NONE) return true;
    LOG_DEBUG("Fail to set passphrase : %s\n", convertWifiErrorToString(result));
    return false;
}

void requestConnection(wifi_ap_handle ap, const char* name) {
    const int result = wifi_connect(ap, connected_callback, nullptr);
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Success to connection request [%s]\n", name);
    } else {
        LOG_DEBUG("Fail to connection request [%s] : %s\n", name, convertWifiErrorToString(result));
    }
}

// Connects to the first access point whose name begins with the wanted one; true asks for the next access point.
bool found_connect_ap_callback(wifi_ap_handle ap, void* data) {
    LOG_SCOPE();
    const auto* request = static_cast<const sAPConnectData*>(data);
    if (!request) {
        LOG_DEBUG("returning\n");
        return false;
    }
    PlatformText name;
    const int result = fetchText(name, wifi_ap_get_essid, ap);
    if (result != WIFI_ERROR_NONE || !name) {
        LOG_DEBUG("Fail to get AP name [%s]\n", convertWifiErrorToString(result));
        return false;
    }
    LOG_DEBUG("ap_name  = %s\n ,  ap_name_part  = %s\n", name.get(), request->apName);
    if (std::strncmp(name.get(), request->apName, std::strlen(request->apName)) != 0) return true;
    if (givePassphrase(ap, request->apPass)) requestConnection(ap, name.get());
    return false;
}

// Fills a field from what a getter gave, or with "::". False when there was nothing to read.
bool fillField(std::span<char> field, int result, const PlatformText& text) {
    const bool given = result == WIFI_ERROR_NONE && text;
    copyText(field, given ? text.get() : kNoAddress);
    return given;
}

void Get_Gateway_Addres(sGlobalIPInfo& info, wifi_ap_handle ap) {
    LOG_SCOPE();
    PlatformText text;
    const int result = fetchText(text, wifi_ap_get_gateway_address, ap, kFamily);
    if (!fillField(info.global_GATEWAY, result, text)) LOG_DEBUG("Failed To Get Gateway : \n");
}

void Get_DNS_Address(sGlobalIPInfo& info, wifi_ap_handle ap) {
    LOG_SCOPE();
    PlatformText text;
    const int result = fetchText(text, wifi_ap_get_dns_address, ap, kPrimaryDns, kFamily);
    if (!fillField(info.global_DNS, result, text)) LOG_DEBUG("Failed To Get DNS : \n");
}

void readPrefixLength(sGlobalIPInfo& info, wifi_ap_handle ap) {
    std::uint8_t length = 0;
    if (wifi_ap_get_prefix_length(ap, &length) != WIFI_ERROR_NONE) {
        LOG_DEBUG("Failed To Get Prefix Length : \n");
        copyText(info.global_PREFIX_LENGTH, kNoPrefix);
        return;
    }
    std::snprintf(info.global_PREFIX_LENGTH, sizeof info.global_PREFIX_LENGTH, "%d", length);
}

void readMatch(sGlobalIPInfo& info, wifi_ap_handle ap) {
    PlatformText text;
    if (fetchText(text, wifi_ap_get_bssid, ap) == WIFI_ERROR_NONE && text) {
        copyText(info.global_MAC_ADDRESS, text.get());
    }
    int value = 0;
    if (wifi_ap_get_rssi(ap, &value) == WIFI_ERROR_NONE) strength_signal = value;
    const int result = fetchText(text, wifi_ap_get_ip_address, ap, kFamily);
    if (!fillField(info.global_IP_ADDRESS, result, text)) LOG_DEBUG("Failed To Get IP Address : \n");
    readPrefixLength(info, ap);
    Get_Gateway_Addres(info, ap);
    Get_DNS_Address(info, ap);
    if (wifi_ap_get_security_type(ap, &value) == WIFI_ERROR_NONE) {
        wifi_security_type = value == WIFI_SECURITY_NONE ? kOpenNetwork : kSecuredNetwork;
    }
}

// Reads the access point of exactly the wanted name; true asks for the next access point.
bool get_ap_info_callback(wifi_ap_handle ap, void* data) {
    LOG_SCOPE();
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("sGlobalIPInfo Object is NULL\n");
        return false;
    }
    const auto* wanted = static_cast<const char*>(data);
    if (!wanted) {
        LOG_DEBUG("get_ap_info_callback : ap_name_part  null \n");
        setDefaultValGlobalIPInfo();
    }
    PlatformText name;
    const int result = fetchText(name, wifi_ap_get_essid, ap);
    if (result != WIFI_ERROR_NONE) {
        setDefaultValGlobalIPInfo();
        LOG_DEBUG("Failed to get wifi_ap_get_essid %s\n", convertWifiErrorToString(result));
        return false;
    }
    if (string_cmp(name.get(), wanted) != 0) return true;
    readMatch(*info, ap);
    return false;
}

void check_online_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == WIFI_ERROR_NONE) {
        LOG_INFO("Online Check Succeeded : WIFI_ONLINE\n");
    } else if (result == WIFI_ERROR_OFFLINE) {
        LOG_DEBUG("Online Check Succeeded : %s\n", convertWifiErrorToString(result));
    } else {
        LOG_DEBUG("Online Check Failed! error : %s\n", convertWifiErrorToString(result));
    }
    sConnectivityStatus* results = checkResults();
    if (!results) return;
    results->internetOnline = result == WIFI_ERROR_NONE;
    results->internetCheckDone = 1;
}

void scan_request_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Scan callback Success\n");
    } else {
        LOG_DEBUG("Scan Request Callback Error %d\n", result);
    }
}

void disconnected_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Wi-Fi Disconnection Succeeded\n");
    } else {
        LOG_DEBUG("Wi-Fi Disconnection Failed! error : %s\n", convertWifiErrorToString(result));
    }
    releaseLeavingAp();
}

}  // namespace

int wifi_init() {
    LOG_SCOPE();
    const int result = wifi_initialize();
    if (result == WIFI_ERROR_INVALID_OPERATION) return kInitialisedBefore;
    if (result != WIFI_ERROR_NONE) return kInitialiseFailed;
    wlan_manager_register_cbs();
    return kInitialised;
}

void wlan_manager_deregister_cbs() {
    LOG_SCOPE();
    LOG_DEBUG(" ------  wlan_manager_deregister_cbs  ------   \n");
    ConnectedAp ap;
    if (fetchConnectedAp(ap) != WIFI_ERROR_NONE) {
        LOG_DEBUG(" wifi_get_connected_ap Failed   \n");
    } else if (wifi_ap_unset_async_cb(ap.get()) != WIFI_ERROR_NONE) {
        LOG_DEBUG(" wifi_ap_unset_async_cb Failed   \n");
    }
    ap.reset();
    releaseAskedAps();
    releaseLeavingAp();
    wifi_deinitialize();
}

int Connect_With_AP(sAPConnectData* request) {
    LOG_SCOPE();
    if (!isWifiOn()) {
        LOG_DEBUG("Fail to connect wifi is not activated\n");
        giveUpGateway();
        return -1;
    }
    const int result = wifi_foreach_found_aps(found_connect_ap_callback, request);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to connect (can't get AP list) [%s]\n", convertWifiErrorToString(result));
        giveUpGateway();
        return -1;
    }
    LOG_DEBUG("Connection step finished\n");
    return 1;
}

int get_ap_info(const char* name) {
    LOG_SCOPE();
    if (!isWifiOn()) {
        LOG_DEBUG("wifi is not activated\n");
        return -1;
    }
    const int result = wifi_foreach_found_aps(get_ap_info_callback, const_cast<char*>(name));
    if (result == WIFI_ERROR_NONE) return 1;
    LOG_DEBUG("Fail to get AP info (can't get AP list) %s\n", convertWifiErrorToString(result));
    return -1;
}

bool Is_Connected_AP() {
    LOG_SCOPE();
    ConnectedAp ap;
    const int result = fetchConnectedAp(ap);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get connected AP %s\n", convertWifiErrorToString(result));
        if (result == WIFI_ERROR_NO_CONNECTION) LOG_DEBUG("No AP is Connected\n");
    }
    if (ap) LOG_DEBUG("AP is Connected\n");
    return ap != nullptr;
}

int Get_Mac_Address() {
    LOG_SCOPE();
    PlatformText mac;
    const int result = fetchText(mac, wifi_get_mac_address);
    if (result != WIFI_ERROR_NONE) {
        LOG_ERROR("Fail to get MAC address %s\n", convertWifiErrorToString(result));
        return -1;
    }
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (mac && info) {
        LOG_INFO("Wifi Mac Address = %s\n", mac.get());
        copyText(info->global_MAC_ADDRESS, mac.get());
    }
    return 1;
}

bool internet_status_of_ap() {
    LOG_SCOPE();
    sConnectivityStatus* results = checkResults();
    if (!results) return true;
    results->internetOnline = 0;
    const int result = wifi_get_is_online_ipv6_async(check_online_callback, nullptr);
    if (result == WIFI_ERROR_NONE) {
        LOG_INFO("wifi_get_is_online_async  %s\n", convertWifiErrorToString(result));
    } else {
        LOG_ERROR("wifi_get_is_online_async failed %s\n", convertWifiErrorToString(result));
        results->internetCheckDone = 1;
    }
    return true;
}

void check_gateway_async_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("check_gateway_async_callback success :\n");
    } else {
        LOG_DEBUG("check_gateway_async_callback Failed! error : %s\n", convertWifiErrorToString(result));
    }
    if (sConnectivityStatus* results = checkResults()) results->gatewayReachable = result == WIFI_ERROR_NONE;
    thread_flag = 0;
    if (unanswered > 0 && --unanswered == 0) releaseAskedAps();
}

void keepUntilAnswered(wifi_ap_handle ap) {
    if (askedCount == askedAps.size()) {
        // So many questions are open only when some are never answered: the oldest one is given up.
        wifi_ap_destroy(askedAps.front());
        std::rotate(askedAps.begin(), askedAps.begin() + 1, askedAps.end());
        --askedCount;
        unanswered = std::min(unanswered, askedCount);
    }
    askedAps[askedCount++] = ap;
    ++unanswered;
}

void Scan_Wifi() {
    LOG_SCOPE();
    wifi_scan(scan_request_callback, nullptr);
}

void MW_DisconnectAP() {
    LOG_SCOPE();
    ConnectedAp ap;
    int result = fetchConnectedAp(ap);
    if (result != WIFI_ERROR_NONE) LOG_WARN("Fail to get connected AP %s\n", convertWifiErrorToString(result));
    if (!ap) return;
    result = wifi_disconnect(ap.get(), disconnected_callback, nullptr);
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Success to disconnection request \n");
        releaseLeavingAp();
        leavingAp = ap.release();
    } else {
        LOG_DEBUG("Fail to disconnection reqeust %s\n", convertWifiErrorToString(result));
    }
}

void proxy_changed_callback(const char* ipv4Address, const char* ipv6Address, void* /*data*/) {
    LOG_SCOPE();
    LOG_DEBUG("Proxy changed callback, IPv4 address : %s, IPv6 address : %s\n", ipv4Address ? ipv4Address : "NULL",
              ipv6Address ? ipv6Address : "NULL");
}
