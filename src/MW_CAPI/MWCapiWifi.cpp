#include "MW_CAPI/MWCapiWifi.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "MW_CAPI/Connected_Ap.h"

namespace {

constexpr int kFamily = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kPrimaryDns = 1;
constexpr int kSecondaryDns = 2;

// How many bytes of a name count: for a mode or DNS change, and for values.
constexpr std::size_t kChangedNameWidth = 32;
constexpr std::size_t kValuesNameWidth = 65;
constexpr std::size_t kMacWidth = 31;

// What the log says of a platform call, before the name of its result.
struct Outcome {
    const char* success;
    const char* failure;
};

// Logs the outcome. Returns whether the call succeeded.
bool succeeded(int result, const Outcome& texts) {
    const bool success = result == WIFI_ERROR_NONE;
    LOG_DEBUG("%s[%s]\n", success ? texts.success : texts.failure, convertWifiErrorToString(result));
    return success;
}

bool sameName(const char* name, const char* wanted, std::size_t width) {
    return wanted && std::strncmp(name, wanted, width) == 0;
}

// The last match wins; true asks for the next access point.
bool Found_AP_Handle_Callback(wifi_ap_handle ap, void* data) {
    LOG_SCOPE();
    const auto* const wanted = static_cast<const char*>(data);
    PlatformText name;
    const int result = fetchText(name, wifi_ap_get_essid, ap);
    if (result != WIFI_ERROR_NONE || !name) {
        LOG_DEBUG("Fail to get AP name [%s]\n", convertWifiErrorToString(result));
        return false;
    }
    LOG_DEBUG("reconnecting_ap_name %s, user input name %s\n", name.get(), wanted ? wanted : "");
    if (sameName(name.get(), wanted, kChangedNameWidth)) {
        LOG_DEBUG("Reconnection AP found\n");
        if (sIPSetting* settings = getObject()) settings->apHandle = ap;
    }
    return true;
}

// Without a match the record's handle stays as it is.
void Get_AP_Handle(const char* name) {
    LOG_SCOPE();
    const int result = wifi_foreach_found_aps(Found_AP_Handle_Callback, const_cast<char*>(name));
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get AP info (can't get AP list) [%s]\n", convertWifiErrorToString(result));
    }
}

wifi_ap_handle foundAp() {
    const sIPSetting* const settings = getObject();
    return settings ? settings->apHandle : nullptr;
}

// The first match ends the walk.
bool ap_bssid_callback(wifi_ap_handle ap, void* data) {
    LOG_SCOPE();
    sIPSetting* const settings = getObject();
    if (!settings) return true;
    PlatformText name;
    if (fetchText(name, wifi_ap_get_essid, ap) != WIFI_ERROR_NONE || !name) {
        LOG_DEBUG("Fail to get AP name\n");
        return true;
    }
    if (!sameName(name.get(), settings->apName, kValuesNameWidth)) return true;
    LOG_DEBUG("Found AP Successfully\n");
    *static_cast<bool*>(data) = true;
    settings->apHandle = ap;
    return false;
}

bool _Ap_Is_Connected(sIPSetting* obj) {
    LOG_SCOPE();
    LOG_DEBUG("Check WIfi Is connected \n");
    if (!obj) {
        LOG_DEBUG("Invalid Function Parameter\n");
        return false;
    }
    obj->apHandle = nullptr;
    bool activated = false;
    const int result = wifi_is_activated(&activated);
    if (result != WIFI_ERROR_NONE || !activated) {
        LOG_DEBUG("wifi is activated failed  [%s]\n", convertWifiErrorToString(result));
        return false;
    }
    bool found = false;
    if (wifi_foreach_found_aps(ap_bssid_callback, &found) != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get AP info (can't get AP list)\n");
    }
    LOG_DEBUG("Your Registered AP Find status %d\n", found);
    return found;
}

void keepMac(sAPConnectionInfo& info, const char* mac) {
    copyText(std::span(info.macAddress).first(kMacWidth + 1), mac);
}

int Get_Wifi_Local_Mac_Address(sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) {
        LOG_DEBUG("NULL Function Argument\n");
        return -1;
    }
    PlatformText mac;
    const int result = fetchText(mac, wifi_get_mac_address);
    if (result != WIFI_ERROR_NONE || !mac) {
        LOG_DEBUG("Fail to get MAC address [%s]\n", convertWifiErrorToString(result));
        return -1;
    }
    LOG_DEBUG("Valid MAC Address Recieved\n");
    keepMac(*obj->connectionInfo, mac.get());
    return 1;
}

void AP_Default_Connection_Info(sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) {
        LOG_DEBUG("NULL Function Argument\n");
        return;
    }
    Get_Wifi_Local_Mac_Address(obj);
    copyText(obj->connectionInfo->ipAddress, kNoAddress);
    copyText(obj->connectionInfo->prefixLength, kNoPrefix);
    copyText(obj->connectionInfo->gateway, kNoAddress);
    copyText(obj->connectionInfo->dnsAddress, kNoAddress);
}

void readMac(sIPSetting& settings) {
    PlatformText bssid;
    if (fetchText(bssid, wifi_ap_get_bssid, settings.apHandle) == WIFI_ERROR_NONE && bssid) {
        LOG_DEBUG("AP MAC Address Got\n");
        keepMac(*settings.connectionInfo, bssid.get());
        return;
    }
    LOG_DEBUG("Local MAC Address Got\n");
    Get_Wifi_Local_Mac_Address(&settings);
}

void readAddress(wifi_ap_handle ap, sAPConnectionInfo& info) {
    PlatformText text;
    if (fetchText(text, wifi_ap_get_ip_address, ap, kFamily) != WIFI_ERROR_NONE || !text) {
        LOG_DEBUG("Failed to Get IP from MW\n");
        return;
    }
    copyText(info.ipAddress, text.get());
    LOG_DEBUG("IP  = [%s][%s]\n", info.ipAddress, text.get());
}

void readPrefixLength(wifi_ap_handle ap, sAPConnectionInfo& info) {
    std::uint8_t length = 0;
    if (wifi_ap_get_prefix_length(ap, &length) != WIFI_ERROR_NONE) {
        LOG_DEBUG("Failed to Get Prefix Length from MW\n");
        return;
    }
    std::snprintf(info.prefixLength, sizeof info.prefixLength, "%d", length);
    LOG_DEBUG("Prefix Length : [%s][%d]\n", info.prefixLength, length);
}

void readGateway(wifi_ap_handle ap, sAPConnectionInfo& info) {
    PlatformText text;
    if (fetchText(text, wifi_ap_get_gateway_address, ap, kFamily) != WIFI_ERROR_NONE || !text) {
        LOG_DEBUG("Failed to Get Gateway from MW\n");
        return;
    }
    copyText(info.gateway, text.get());
    LOG_DEBUG("Gateway : %s[%s]\n", info.gateway, text.get());
}

void readDns(wifi_ap_handle ap, sAPConnectionInfo& info) {
    PlatformText text;
    if (fetchText(text, wifi_ap_get_dns_address, ap, kPrimaryDns, kFamily) != WIFI_ERROR_NONE || !text) {
        LOG_DEBUG("Failed to Get DNS from MW\n");
        return;
    }
    copyText(info.dnsAddress, text.get());
    LOG_DEBUG("DNS: [%s][%s]\n", info.dnsAddress, text.get());
}

int setDns(wifi_ap_handle ap, int order, const char* address) {
    return wifi_ap_set_dns_address(ap, order, kFamily, address);
}

void setBothDns(wifi_ap_handle ap, const char* address) {
    succeeded(setDns(ap, kPrimaryDns, address),
              {"success to set primary dns address", "Fail to set primary dns address"});
    succeeded(setDns(ap, kSecondaryDns, address),
              {"success to set secondary dns address", "Fail to set secondary dns address"});
}

// The boundary takes eight bits.
int setPrefixLength(wifi_ap_handle ap, const char* text) {
    return wifi_ap_set_prefix_length(ap, static_cast<std::uint8_t>(std::strtol(text, nullptr, 10)));
}

void writeAll(wifi_ap_handle ap, const sglobalIPValues& values) {
    succeeded(wifi_ap_set_ip_address(ap, kFamily, values.ipAddress),
              {"success to set ip address", "Fail to set ip address"});
    succeeded(setPrefixLength(ap, values.prefixLength), {"success to set prefix length", "Fail to set prefix length"});
    succeeded(wifi_ap_set_gateway_address(ap, kFamily, values.gateway),
              {"success to set gateway address", "Fail to set gateway address"});
    succeeded(setDns(ap, kPrimaryDns, values.dnsAddress), {"success to set dns1 address", "Fail to set dns1 address"});
    succeeded(setDns(ap, kSecondaryDns, values.dnsAddress),
              {"success to set dns2 address", "Fail to set dns2 address"});
}

// Every access point of the name receives the values.
bool ip_change_callback(wifi_ap_handle ap, void* data) {
    LOG_SCOPE();
    const auto* const values = static_cast<const sglobalIPValues*>(data);
    if (!values) {
        LOG_DEBUG("Invalid Connection Info\n");
        return false;
    }
    PlatformText name;
    const int result = fetchText(name, wifi_ap_get_essid, ap);
    if (result != WIFI_ERROR_NONE || !name) {
        LOG_DEBUG("Fail to get AP name [%s]\n", convertWifiErrorToString(result));
        return false;
    }
    LOG_DEBUG("ap_name : %s ,  ap_name_part = %s\n", name.get(), values->apName);
    if (sameName(name.get(), values->apName, kValuesNameWidth)) {
        LOG_DEBUG("Valid AP found\n");
        writeAll(ap, *values);
    }
    return true;
}

}  // namespace

int Get_AP_Connection_Info(sIPSetting* obj) {
    LOG_SCOPE();
    LOG_DEBUG("Get AP Connection info \n");
    _Ap_Is_Connected(obj);
    if (!obj || !obj->apHandle) {
        LOG_DEBUG("No connected Ap,Register BSSID\n");
        AP_Default_Connection_Info(obj);
        return -1;
    }
    readMac(*obj);
    for (void (*read)(wifi_ap_handle, sAPConnectionInfo&) : {readAddress, readPrefixLength, readGateway, readDns})
        read(obj->apHandle, *obj->connectionInfo);
    return 0;
}

int Set_Wireless_IP_Config_Type(int kind, sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) return 0;
    Get_AP_Handle(obj->apName);
    const bool manual = kind == kSwitchToManual;
    if (manual) LOG_DEBUG("Static Case \n");
    const int type = manual ? CONNECTION_IP_CONFIG_STATIC : CONNECTION_IP_CONFIG_AUTOMATIC;
    succeeded(wifi_ap_set_ip_config_type(obj->apHandle, kFamily, type),
              {"success to set ip method type : ", "Fail to set ip method type  : "});
    return 0;
}

int Set_Wireless_DNS_Config_Type(int kind, sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) return 0;
    Get_AP_Handle(obj->apName);
    const bool manual = kind == kSwitchToManual;
    LOG_DEBUG("%s\n", manual ? "Static Case " : "Dynamic Case ");
    if (!manual) {
        succeeded(setDns(obj->apHandle, kPrimaryDns, kNoAddress),
                  {"success to set primary dns  : ", "Fail to set primary dns  : "});
        succeeded(setDns(obj->apHandle, kSecondaryDns, kNoAddress),
                  {"success to set  sacondary dns  : ", "Fail to set  sacondary dns  : "});
    }
    const int type = manual ? CONNECTION_DNS_CONFIG_STATIC : CONNECTION_DNS_CONFIG_DYNAMIC;
    succeeded(wifi_ap_set_dns_config_type(obj->apHandle, kFamily, type),
              {"success to set dns method type : ", "Fail to set dns method type  : "});
    return 0;
}

bool GetWifiDnsAddress(sIPSetting* obj, char** dns) {
    LOG_SCOPE();
    if (!obj || !dns) return false;
    Get_AP_Handle(obj->apName);
    return succeeded(wifi_ap_get_dns_address(obj->apHandle, kPrimaryDns, kFamily, dns),
                     {"success to get dns address", "Fail to get dns address"});
}

int _Set_AP_DNS_Connection_Info(sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) return 1;
    Get_AP_Handle(obj->apName);
    setBothDns(obj->apHandle, obj->dnsAddress);
    return 1;
}

int Set_AP_Connection_Info(const sglobalIPValues* values) {
    LOG_SCOPE();
    if (!values) {
        LOG_DEBUG("Invalid Function Parameter\n");
        return -1;
    }
    const int result = wifi_foreach_found_aps(ip_change_callback, const_cast<sglobalIPValues*>(values));
    if (result == WIFI_ERROR_NONE) return 1;
    LOG_DEBUG("Fail to change Connection Information :  [%s]\n", convertWifiErrorToString(result));
    return -1;
}

PlatformText Get_Connected_AP_Name(const char* storedName) {
    LOG_SCOPE();
    if (!storedName) {
        LOG_DEBUG("Invalid Function Parameter\n");
        return nullptr;
    }
    ConnectedAp ap;
    int result = fetchConnectedAp(ap);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get connected AP [%s]\n", convertWifiErrorToString(result));
        return PlatformText(strdup(storedName));
    }
    PlatformText name;
    result = fetchText(name, wifi_ap_get_essid, ap.get());
    if (result != WIFI_ERROR_NONE || !name) {
        LOG_DEBUG("Fail to get AP essid [%s]\n", convertWifiErrorToString(result));
        return PlatformText(strdup(storedName));
    }
    LOG_DEBUG("Vconf_AP_Name , ap_name = [%s]:[%s]\n", storedName, name.get());
    LOG_DEBUG("AP is valid, now destroy it\n");
    ap.reset();
    LOG_DEBUG("Returning ap_name  = %s\n", name.get());
    return name;
}

const char* Get_Wireless_DNS_Config_Type(const char* name) {
    LOG_SCOPE();
    Get_AP_Handle(name);
    const wifi_ap_handle ap = foundAp();
    if (!ap) {
        LOG_DEBUG("Failed to Get AP Handle \n");
        return kAutomaticMode;
    }
    LOG_DEBUG("Get AP Handle!!\n");
    int type = 0;
    const int result = wifi_ap_get_dns_config_type(ap, kFamily, &type);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get dns method type  : [%s]\n", convertWifiErrorToString(result));
        return kAutomaticMode;
    }
    LOG_DEBUG("Success to Get DNS Config Type =%d\n", type);
    return type == CONNECTION_DNS_CONFIG_STATIC ? kManualMode : kAutomaticMode;
}

int Set_Wireless_Dns_Address(const char* name, const char* dns) {
    LOG_SCOPE();
    Get_AP_Handle(name);
    const wifi_ap_handle ap = foundAp();
    if (ap) {
        setBothDns(ap, dns);
    } else {
        LOG_DEBUG("Failed to Get AP Handle \n");
    }
    return 1;
}
