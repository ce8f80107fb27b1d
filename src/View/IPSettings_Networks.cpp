#include "View/IPSettings_Networks.h"

#include <cstddef>
#include <string_view>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/MWCapiWifi.h"
#include "MW_CAPI/MWCapiWired.h"
#include "View/IPSettings_Values.h"
#include "View/IPSingleton.h"

namespace {

constexpr std::size_t kSentNameWidth = 39;

void keepDns(sIPSetting& settings, bool read, const PlatformText& dns, const char* failure) {
    if (!read) LOG_DEBUG("%s\n", failure);
    if (dns) copyText(settings.dnsAddress, dns.get());
}

void readWiredDns(sIPSetting& settings) {
    PlatformText dns;
    const bool failed = fetchText(dns, GetDnsAddress) != 0;
    keepDns(settings, !failed, dns, "Wired Dns Address is not set");
}

void readWifiDns(sIPSetting& settings) {
    PlatformText dns;
    const bool read = fetchText(dns, GetWifiDnsAddress, &settings) != 0;
    keepDns(settings, read, dns, "Wifi Dns Address is not set");
}

void sendWifiValues(const sIPSetting& settings) {
    copyText(sglobalIPValuesObj.apName, std::string_view(settings.apName).substr(0, kSentNameWidth));
    Set_AP_Connection_Info(&sglobalIPValuesObj);
}

bool findAccessPoint(sIPSetting& settings) {
    const PlatformText stored = readStore(kApNameKey);
    if (!stored) {
        LOG_DEBUG("cVconf_AP_Name is NULL \n");
        return false;
    }
    const PlatformText name = Get_Connected_AP_Name(stored.get());
    if (!name) {
        LOG_DEBUG("cAP_Name is NULL\n");
        return false;
    }
    copyText(settings.apName, name.get());
    LOG_DEBUG("AP Name : [%s]/[%s]\n", name.get(), settings.apName);
    return true;
}

void nameAccessPoint(sIPSetting& settings) {
    if (!findAccessPoint(settings)) copyText(settings.apName, "");
}

constexpr SettingsNetwork kWired{
    .said = "Wired NW",
    .valuesSaid = "Set",
    .keys = kWiredKeys,
    .findTarget = [](sIPSetting&) { return true; },
    .nameTarget = [](sIPSetting&) {},
    .switchIp = [](int mode, sIPSetting&) { _Set_IP_Config_Type(mode); },
    .switchDns = [](int mode, sIPSetting&) { _Set_DNS_Config_Type(mode); },
    .loadStored = GetVConfValuesWired,
    .readLive = [](sIPSetting& settings) { _Get_Wired_Connection_Info(&settings); },
    .readDns = readWiredDns,
    .sendDns = [](sIPSetting& settings) { Set_Wired_Dns_Address(settings.dnsAddress); },
    .sendValues = [](const sIPSetting&) { Set_Wired_Conn_Info(&sglobalIPValuesObj); },
};

constexpr SettingsNetwork kWireless{
    .said = "Wireless NW",
    .valuesSaid = "MW and VCONF Set",
    .keys = kWirelessKeys,
    .findTarget = findAccessPoint,
    .nameTarget = nameAccessPoint,
    .switchIp = [](int mode, sIPSetting& settings) { Set_Wireless_IP_Config_Type(mode, &settings); },
    .switchDns = [](int mode, sIPSetting& settings) { Set_Wireless_DNS_Config_Type(mode, &settings); },
    .loadStored = GetVConfValuesWL,
    .readLive = [](sIPSetting& settings) { Get_AP_Connection_Info(&settings); },
    .readDns = readWifiDns,
    .sendDns = [](sIPSetting& settings) { _Set_AP_DNS_Connection_Info(&settings); },
    .sendValues = sendWifiValues,
};

}  // namespace

const SettingsNetwork& settingsNetworkOf(int networkType) {
    return networkType == kNetworkWireless ? kWireless : kWired;
}
