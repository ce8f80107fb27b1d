#include "MW_CAPI/MW_CAPI_Wired.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "Common/Text.h"
#include "MW_CAPI/Profile_Walk.h"
#include "View/NS_Cable.h"

namespace {

constexpr int kLinkUp = 3;
constexpr int kLinkDown = 0;
constexpr int kPrimaryDns = 1;
constexpr int kFamily = CONNECTION_ADDRESS_FAMILY_IPV6;

// The clone of the first registered Ethernet profile; ours until the client goes.
constinit connection_profile_handle registeredProfile = nullptr;
// Where the gateway check was asked last. The client's own unset does not reach it, and the client may refuse to go.
constinit connection_profile_handle askedProfile = nullptr;

connection_handle client() {
    const sNetworkStatus* status = createNetworkStatus();
    return status ? status->connection : nullptr;
}

void type_changed_callback(int connectionType, void* /*data*/) {
    LOG_SCOPE();
    LOG_INFO("Type Changed Callback  %d\n", connectionType);
    if (connectionType == CONNECTION_TYPE_ETHERNET) {
        LOG_INFO("Type Changed Callback  ETHERNET_STATE_CONNECTED\n");
        check_wired(kLinkUp);
    } else if (connectionType == CONNECTION_TYPE_DISCONNECTED) {
        LOG_INFO("Type Changed Callback  ETHERNET_STATE_NOT_CONNECTED\n");
        check_wired(kLinkDown);
    }
}

// Keeps a clone of the first registered Ethernet profile. False when the manager failed; none at all is no failure.
bool cloneRegisteredProfile(ProfileWalk& walk) {
    while (walk.hasNext()) {
        connection_profile_handle profile = nullptr;
        int type = 0;
        if (walk.next(&profile) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile handle\n");
            return false;
        }
        if (connection_profile_get_type(profile, &type) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile type\n");
            return false;
        }
        if (type != CONNECTION_PROFILE_TYPE_ETHERNET) continue;
        if (connection_profile_clone(&registeredProfile, profile) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Connection clone failure\n");
            return false;
        }
        profile_handle1 = registeredProfile;
        return true;
    }
    return true;
}

void releaseRegisteredProfile() {
    if (registeredProfile) connection_profile_destroy(registeredProfile);
    registeredProfile = nullptr;
    profile_handle1 = nullptr;
}

// What the log says about one value of the profile; its format takes the value that was read.
struct FieldTexts {
    const char* failure;
    const char* success;
    const char* fallback;
};
constexpr FieldTexts kMacTexts{"Fail to Get Mac Address", "Success to Get Mac Address", kDefaultMac};
constexpr FieldTexts kAddressTexts{"Fail to Get IP Address", "Success to Get IP Address", kNoAddress};
constexpr FieldTexts kGatewayTexts{"Fail to Get Gateway Address", "Success to Get Gateway Address", kNoAddress};
constexpr FieldTexts kDnsTexts{"Fail to Get DNS Address", "Success to Get DNS Address", kNoAddress};

// Fills a field from what a getter gave, or with its default.
void fillField(std::span<char> field, int result, const PlatformText& text, const FieldTexts& texts) {
    if (result != CONNECTION_ERROR_NONE || !text) {
        LOG_WARN("%s\n", texts.failure);
        copyText(field, texts.fallback);
        return;
    }
    LOG_WARN("%s : [%s]\n", texts.success, text.get());
    copyText(field, text.get());
}

void fillPrefixLength(sGlobalIPInfo& info, connection_profile_handle profile) {
    std::uint8_t length = 0;
    if (connection_profile_get_prefix_length(profile, kFamily, &length) != CONNECTION_ERROR_NONE) {
        LOG_WARN("Fail to Get Prefix_Length\n");
        copyText(info.global_PREFIX_LENGTH, kNoPrefix);
        return;
    }
    LOG_WARN("Success to Get Prefix Length : [%d]\n", length);
    std::snprintf(info.global_PREFIX_LENGTH, sizeof info.global_PREFIX_LENGTH, "%d", length);
}

void fillFromProfile(sGlobalIPInfo& info, connection_profile_handle profile) {
    PlatformText text;
    int result = fetchText(text, connection_get_mac_address, client(), int{CONNECTION_TYPE_ETHERNET});
    fillField(info.global_MAC_ADDRESS, result, text, kMacTexts);
    result = fetchText(text, connection_profile_get_ip_address, profile, kFamily);
    fillField(info.global_IP_ADDRESS, result, text, kAddressTexts);
    fillPrefixLength(info, profile);
    result = fetchText(text, connection_profile_get_gateway_address, profile, kFamily);
    fillField(info.global_GATEWAY, result, text, kGatewayTexts);
    result = fetchText(text, connection_profile_get_dns_address, profile, kPrimaryDns, kFamily);
    fillField(info.global_DNS, result, text, kDnsTexts);
}

void profile_check_gateway_async_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == CONNECTION_ERROR_NONE) {
        LOG_DEBUG("profile_check_gateway_async_callback success\n");
    } else {
        LOG_DEBUG("profile_check_gateway_async_callback Failed !!!!%s\n", convertWiredErrorToString(result));
    }
    if (sConnectivityStatus* results = checkResults()) results->gatewayReachable = result == CONNECTION_ERROR_NONE;
    thread_flag = 0;
}

int startGatewayCheck(connection_profile_handle profile) {
    askedProfile = profile;
    return connection_profile_check_gateway6_async(profile, profile_check_gateway_async_callback, nullptr);
}

void get_is_online_async_callback(int result, void* /*data*/) {
    LOG_SCOPE();
    if (result == CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Aysnc Check Online Success : CONNECTION_ONLINE\n");
    } else if (result == CONNECTION_ERROR_OFFLINE) {
        LOG_DEBUG("Aysnc Check Online Success : CONNECTION_OFFLINE\n");
    } else {
        LOG_DEBUG("Async Check Online Failed error : %s\n", convertWiredErrorToString(result));
    }
    sConnectivityStatus* results = checkResults();
    if (!results) return;
    results->internetOnline = result == CONNECTION_ERROR_NONE;
    results->internetCheckDone = 1;
}

void unsetClientCallbacks(connection_handle connection) {
    if (connection_unset_type_changed_cb(connection) != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("connection_unset_type_changed_cb is Failed\n");
    }
    if (connection_unset_async_cb(connection) != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("connection_unset_async_cb is Failed\n");
    }
    if (askedProfile) connection_unset_async_cb(std::exchange(askedProfile, nullptr));
}

}  // namespace

int register_client() {
    LOG_SCOPE();
    sNetworkStatus* status = createNetworkStatus();
    const int created = status ? connection_create(&status->connection) : CONNECTION_ERROR_OUT_OF_MEMORY;
    if (created != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Client registration failed %d\n", created);
        return -1;
    }
    LOG_DEBUG("Connection created successfully\n");
    connection_set_type_changed_cb(status->connection, type_changed_callback, nullptr);
    ProfileWalk walk;
    const int opened = walk.open(client(), CONNECTION_ITERATOR_REGISTERED);
    if (opened != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Fail to get profile iterator %d\n", opened);
        return 0;
    }
    return cloneRegisteredProfile(walk) ? 1 : 0;
}

bool deregister_client() {
    LOG_SCOPE();
    if (const connection_handle connection = client()) {
        LOG_DEBUG("Connection is Valid\n");
        unsetClientCallbacks(connection);
        releaseRegisteredProfile();
        const int destroyed = connection_destroy(connection);
        if (destroyed != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Client deregistration fail %s\n", convertWiredErrorToString(destroyed));
            return false;
        }
        LOG_DEBUG("connection_destroy = %s\n", convertWiredErrorToString(destroyed));
    }
    LOG_DEBUG("Client deregistration success\n");
    return true;
}

void check_lan_cable() {
    LOG_SCOPE();
    int state = CONNECTION_ETHERNET_DISCONNECTED;
    const int result = connection_get_ethernet_state(client(), &state);
    const bool connected = result == CONNECTION_ERROR_NONE && state == CONNECTION_ETHERNET_CONNECTED;
    check_wired(connected ? kLinkUp : kLinkDown);
    LOG_DEBUG("%s\n", connected ? "ETHERNET_STATE_CONNECTED" : "ETHERNET_STATE_NOT_CONNECTED");
}

bool Get_Ethernet_State() {
    LOG_SCOPE();
    int state = CONNECTION_ETHERNET_DISCONNECTED;
    if (connection_get_ethernet_state(client(), &state) != CONNECTION_ERROR_NONE) return false;
    // A deactivated port counts as usable: the platform may still be bringing it up.
    if (state != CONNECTION_ETHERNET_CONNECTED && state != CONNECTION_ETHERNET_DEACTIVATED) return false;
    LOG_DEBUG("Ethernet Connected\n");
    return true;
}

bool get_updated_ethernet_profile_handle(connection_profile_handle* profile) {
    LOG_SCOPE();
    if (!profile) return false;
    ProfileWalk walk;
    const int opened = walk.open(client(), CONNECTION_ITERATOR_CONNECTED);
    if (opened != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Fail to get profile iterator %s\n", convertWiredErrorToString(opened));
        return false;
    }
    while (walk.hasNext()) {
        connection_profile_handle connected = nullptr;
        int type = 0;
        if (walk.next(&connected) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile handle\n");
            return false;
        }
        LOG_DEBUG("success to get connection_profile_iterator_next\n");
        if (connection_profile_get_type(connected, &type) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile type\n");
            return false;
        }
        LOG_DEBUG("success to get profile_get_type\n");
        if (type != CONNECTION_PROFILE_TYPE_ETHERNET) continue;
        LOG_DEBUG("profile_type == CONNECTION_PROFILE_TYPE_ETHERNET =  %p\n", connected);
        *profile = connected;
    }
    return true;
}

void refreshEthernetProfile() {
    profile_handle1 = nullptr;
    get_updated_ethernet_profile_handle(&profile_handle1);
}

void get_wired_ip_info(connection_profile_handle profile) {
    LOG_SCOPE();
    set_autoIn_vconf();
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("sGlobalIPInfo Object is NULL\n");
        return;
    }
    if (!profile) {
        set_wired_default_values();
        return;
    }
    fillFromProfile(*info, profile);
    LOG_DEBUG("Global IP Information from MW\n");
    LOG_DEBUG("Global IP : [%s]\n", info->global_IP_ADDRESS);
    LOG_DEBUG("Global Prefix Length : [%s]\n", info->global_PREFIX_LENGTH);
    LOG_DEBUG("Global Gateway : [%s]\n", info->global_GATEWAY);
    LOG_DEBUG("Global DNS : [%s]\n", info->global_DNS);
}

void set_wired_default_values() {
    LOG_SCOPE();
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("sGlobalIPInfo Object is NULL\n");
        return;
    }
    PlatformText mac;
    if (fetchText(mac, connection_get_mac_address, client(), int{CONNECTION_TYPE_ETHERNET}) != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Get Mac Address API Failed\n");
        copyText(info->global_MAC_ADDRESS, kDefaultMac);
    } else {
        LOG_DEBUG("Get Mac Address API Success\n");
        if (mac) {
            LOG_DEBUG("valid Mac Address recieved\n");
            copyText(info->global_MAC_ADDRESS, mac.get());
        }
    }
    setDefaultValGlobalIPInfo();
}

void check_gateway_wired(bool ethernetUsable) {
    LOG_SCOPE();
    if (!ethernetUsable) return;
    LOG_DEBUG("Valid ethernet profile_state\n");
    connection_profile_handle profile = nullptr;
    get_updated_ethernet_profile_handle(&profile);
    if (!profile) return;
    LOG_DEBUG("Ethernet profile recieved\n");
    int result = startGatewayCheck(profile);
    if (result == CONNECTION_ERROR_OPERATION_FAILED) {
        if (connection_unset_async_cb(profile) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("connection_unset_async_cb failed!! \n");
        }
        result = startGatewayCheck(profile);
    }
    if (result == CONNECTION_ERROR_NONE) {
        LOG_DEBUG("connection_profile_check_gateway_async success\n");
        return;
    }
    giveUpGateway();
    LOG_DEBUG("connection_profile_check_gateway_async Failed !!!!%s\n", convertWiredErrorToString(result));
}

bool internet_status_of_wired() {
    LOG_SCOPE();
    sConnectivityStatus* results = checkResults();
    if (!results) return true;
    results->internetOnline = 0;
    const int result = connection_get_is_online_ipv6_async(client(), get_is_online_async_callback, nullptr);
    if (result != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Fail to Check Online %s\n", convertWiredErrorToString(result));
        results->internetCheckDone = 1;
    }
    return true;
}
