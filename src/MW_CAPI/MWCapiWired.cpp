#include "MW_CAPI/MWCapiWired.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Text.h"
#include "MW_CAPI/Profile_Walk.h"

namespace {

constexpr int kFamily = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kPrimaryDns = 1;
constexpr int kSecondaryDns = 2;
constexpr int kNoProfile = 14;
constexpr int kNoMac = 15;
constexpr int kNullArgument = 16;

constinit connection_handle sMWNetworkConHandler = nullptr;

connection_handle GetConnHandler() {
    LOG_SCOPE();
    if (sMWNetworkConHandler) return sMWNetworkConHandler;
    if (const sIPSetting* settings = getObject()) sMWNetworkConHandler = settings->connection;
    if (sMWNetworkConHandler) return sMWNetworkConHandler;
    LOG_DEBUG("Get Connection handle by Network status obj\n");
    if (const sNetworkStatus* status = createNetworkStatus()) sMWNetworkConHandler = status->connection;
    return sMWNetworkConHandler;
}

// The first registered Ethernet profile, or null. Says in the log what failed.
connection_profile_handle findEthernetProfile(connection_handle connection) {
    ProfileWalk walk;
    const int opened = walk.open(connection, CONNECTION_ITERATOR_REGISTERED);
    if (opened != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Fail to get profile iterator [%d]\n", opened);
        return nullptr;
    }
    while (walk.hasNext()) {
        connection_profile_handle profile = nullptr;
        int type = 0;
        if (walk.next(&profile) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile handle\n");
            return nullptr;
        }
        if (connection_profile_get_type(profile, &type) != CONNECTION_ERROR_NONE) {
            LOG_DEBUG("Fail to get profile type\n");
            return nullptr;
        }
        if (type == CONNECTION_PROFILE_TYPE_ETHERNET) return profile;
    }
    return nullptr;
}

connection_profile_handle ethernetProfile() {
    connection_profile_handle profile = nullptr;
    Updated_Ethernet_Profile_Handle(&profile);
    return profile;
}

// What the log says of a platform call, around the name of its result; a null text: nothing.
struct Outcome {
    const char* success;
    const char* failure;
    const char* closing = "]";
};

// Logs the outcome. Returns whether the call succeeded.
bool succeeded(int result, const Outcome& texts) {
    const bool success = result == CONNECTION_ERROR_NONE;
    if (const char* text = success ? texts.success : texts.failure) {
        LOG_DEBUG("%s%s%s\n", text, convertWiredErrorToString(result), texts.closing);
    }
    return success;
}

void updateProfile(connection_handle connection, connection_profile_handle profile) {
    succeeded(connection_update_profile(connection, profile),
              {"Success  update_profile  [", "connection_update_profile failed ["});
}

void updateWrittenProfile(connection_handle connection, connection_profile_handle profile) {
    const bool updated = connection_update_profile(connection, profile) == CONNECTION_ERROR_NONE;
    LOG_DEBUG("connection_update_profile %s\n", updated ? "success " : "failed ");
}

void setDynamicDns(connection_profile_handle profile) {
    succeeded(connection_profile_set_dns_address(profile, kPrimaryDns, kFamily, kNoAddress),
              {"Success  to Set DNS address 1  [", "fail to set_dns_address1 ["});
    succeeded(connection_profile_set_dns_address(profile, kSecondaryDns, kFamily, kNoAddress),
              {"Success  to set DNS address 2 [", "fail to set_dns_address2 ["});
    succeeded(connection_profile_set_dns_config_type(profile, kFamily, CONNECTION_DNS_CONFIG_DYNAMIC),
              {nullptr, "Fail to set dns method type CONNECTION_DNS_CONFIG_TYPE_DYNAMIC  ["});
}

// Reads the MAC address into the record. False when the platform has none to give.
bool readMac(connection_handle connection, sAPConnectionInfo& info) {
    PlatformText mac;
    const int result = fetchText(mac, connection_get_mac_address, connection, int{CONNECTION_TYPE_ETHERNET});
    if (!succeeded(result, {nullptr, "Fail to get MAC address ["})) return false;
    if (!mac) return true;
    LOG_DEBUG("Valid MAC Address Recieved\n");
    copyText(info.macAddress, mac.get());
    return true;
}

struct ReadTexts {
    const char* name;
    const char* failure;
};

void keepAddress(std::span<char> field, int result, const PlatformText& text, const ReadTexts& texts) {
    if (!succeeded(result, {nullptr, texts.failure})) {
        copyText(field, kNoAddress);
        return;
    }
    copyTextOrEmpty(field, text.get());
    LOG_DEBUG("MW_CAPI_Get_Wired_Connection_Info %s : %s\n", texts.name, field.data());
}

void readPrefixLength(connection_profile_handle profile, sAPConnectionInfo& info) {
    std::uint8_t length = 0;
    const int result = connection_profile_get_prefix_length(profile, kFamily, &length);
    if (!succeeded(result, {nullptr, "Fail to get prefix length ["})) {
        copyText(info.prefixLength, kNoPrefix);
        return;
    }
    std::snprintf(info.prefixLength, sizeof info.prefixLength, "%d", length);
    LOG_DEBUG("MW_CAPI_Get_Wired_Connection_Info Prefix Length : %d\n", length);
}

void readProfile(connection_profile_handle profile, sAPConnectionInfo& info) {
    PlatformText text;
    int result = fetchText(text, connection_profile_get_ip_address, profile, kFamily);
    keepAddress(info.ipAddress, result, text, {"IP", "Fail to get ip_address ["});
    readPrefixLength(profile, info);
    result = fetchText(text, connection_profile_get_gateway_address, profile, kFamily);
    keepAddress(info.gateway, result, text, {"Gateway", "Fail to get gateway_address ["});
    result = fetchText(text, connection_profile_get_dns_address, profile, kPrimaryDns, kFamily);
    keepAddress(info.dnsAddress, result, text, {"DNS", "Fail to get dns1_address ["});
}

void setDefaults(sAPConnectionInfo& info) {
    copyText(info.ipAddress, kNoAddress);
    copyText(info.prefixLength, kNoPrefix);
    copyText(info.gateway, kNoAddress);
    copyText(info.dnsAddress, kNoAddress);
}

// The boundary takes eight bits.
int setPrefixLength(connection_profile_handle profile, const sglobalIPValues& values) {
    const auto length = static_cast<std::uint8_t>(std::strtol(values.prefixLength, nullptr, 10));
    const int result = connection_profile_set_prefix_length(profile, kFamily, length);
    if (result == CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Success to set Prefix Length [%s][%d][%s] \n", values.prefixLength, length,
                  convertWiredErrorToString(result));
    } else {
        LOG_DEBUG("Fail to set Prefix Length [%s][%d] \n", convertWiredErrorToString(result), length);
    }
    return result;
}

int setDns(connection_profile_handle profile, int order, const sglobalIPValues& values) {
    return connection_profile_set_dns_address(profile, order, kFamily, values.dnsAddress);
}

struct WriteStep {
    int (*write)(connection_profile_handle profile, const sglobalIPValues& values);
    Outcome texts;
};

constexpr WriteStep kWriteSteps[] = {
    {[](connection_profile_handle profile, const sglobalIPValues& values) {
         return connection_profile_set_ip_address(profile, kFamily, values.ipAddress);
     },
     {"Success to set IP Address [", "Fail to set IP Address [", "] "}},
    {[](connection_profile_handle profile, const sglobalIPValues& values) { return setPrefixLength(profile, values); },
     {nullptr, nullptr}},
    {[](connection_profile_handle profile, const sglobalIPValues& values) {
         return connection_profile_set_gateway_address(profile, kFamily, values.gateway);
     },
     {"Success to set Gateway Address [", "Fail to set Gateway Address [", "] "}},
    {[](connection_profile_handle profile, const sglobalIPValues& values) {
         return setDns(profile, kPrimaryDns, values);
     },
     {"Success to set DNS Address [", "Fail to set DNS1 Address [", "] "}},
    {[](connection_profile_handle profile, const sglobalIPValues& values) {
         return setDns(profile, kSecondaryDns, values);
     },
     {"Success to set DNS2 Address [", "Fail to set DNS2 Address [", "] "}},
};

bool writeAll(connection_profile_handle profile, const sglobalIPValues& values) {
    for (const WriteStep& step : kWriteSteps) {
        if (!succeeded(step.write(profile, values), step.texts)) return false;
    }
    return true;
}

void logValues(const sglobalIPValues& values) {
    LOG_DEBUG("Set Value : IP  : = %s \n", values.ipAddress);
    LOG_DEBUG("Set Value : Prefix Length  : = %s \n", values.prefixLength);
    LOG_DEBUG("Set Value : Gateway  : = %s \n", values.gateway);
    LOG_DEBUG("Set Value : DNS  : = %s \n", values.dnsAddress);
}

}  // namespace

bool Updated_Ethernet_Profile_Handle(connection_profile_handle* profile) {
    LOG_SCOPE();
    const connection_handle connection = GetConnHandler();
    if (!connection || !profile) return false;
    const connection_profile_handle found = findEthernetProfile(connection);
    if (!found) return false;
    int state = CONNECTION_PROFILE_STATE_DISCONNECTED;
    connection_profile_get_state(found, &state);
    LOG_DEBUG("profile_type == CONNECTION_PROFILE_TYPE_ETHERNET =  %p  State =%d \n", found, state);
    *profile = found;
    LOG_DEBUG("Setting State Changed Callback \n");
    return state == CONNECTION_PROFILE_STATE_CONNECTED;
}

int _Set_IP_Config_Type(int kind) {
    LOG_SCOPE();
    const connection_profile_handle profile = ethernetProfile();
    const connection_handle connection = GetConnHandler();
    if (kind == kSwitchToManual) {
        LOG_DEBUG("Static Type \n");
        succeeded(connection_profile_set_ip_config_type(profile, kFamily, CONNECTION_IP_CONFIG_STATIC),
                  {"Success  to set ip method type Static [", "Fail to set ip method type["});
    } else {
        LOG_DEBUG("Dynamic Type \n");
        succeeded(connection_profile_set_ip_config_type(profile, kFamily, CONNECTION_IP_CONFIG_AUTOMATIC),
                  {nullptr, "Fail to set ip method type CONNECTION_IP_CONFIG_TYPE_AUTO  ["});
    }
    updateProfile(connection, profile);
    return 0;
}

int _Set_DNS_Config_Type(int kind) {
    LOG_SCOPE();
    const connection_profile_handle profile = ethernetProfile();
    const connection_handle connection = GetConnHandler();
    if (kind == kSwitchToManual) {
        LOG_DEBUG("Static Type \n");
        succeeded(
            connection_profile_set_dns_config_type(profile, kFamily, CONNECTION_DNS_CONFIG_STATIC),
            {"Success  to set dns method type CONNECTION_DNS_CONFIG_TYPE_STATIC [", "Fail to set dns method type["});
    } else {
        LOG_DEBUG("Dynamic Type \n");
        setDynamicDns(profile);
    }
    updateProfile(connection, profile);
    return 0;
}

int _Get_Wired_Connection_Info(sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) {
        LOG_DEBUG("NULL Function Argument\n");
        return kNullArgument;
    }
    const connection_profile_handle profile = ethernetProfile();
    if (!profile) {
        LOG_DEBUG("Fail to get profile handle\n");
        _Wired_Default_Connection_Info(obj);
        return kNoProfile;
    }
    const connection_handle connection = GetConnHandler();
    if (!connection) return 0;
    LOG_DEBUG("Valid Connection Handler\n");
    if (!readMac(connection, *obj->connectionInfo)) return kNoMac;
    readProfile(profile, *obj->connectionInfo);
    return 0;
}

void _Wired_Default_Connection_Info(sIPSetting* obj) {
    LOG_SCOPE();
    if (!obj) {
        LOG_DEBUG("NULL Function Argument\n");
        return;
    }
    sAPConnectionInfo& info = *obj->connectionInfo;
    if (!readMac(GetConnHandler(), info)) copyText(info.macAddress, kDefaultMac);
    setDefaults(info);
}

bool GetDnsAddress(char** dns) {
    LOG_SCOPE();
    const connection_profile_handle profile = ethernetProfile();
    if (!profile || !dns) return false;
    LOG_DEBUG("Valid Profile Handler Recieved\n");
    const int result = connection_profile_get_dns_address(profile, kPrimaryDns, kFamily, dns);
    if (succeeded(result, {nullptr, "Fail to get dns1_address ["})) return false;
    if (*dns && **dns) std::memcpy(*dns, ":", sizeof ":");
    return true;
}

void Set_Wired_Dns_Address(const char* dns) {
    LOG_SCOPE();
    const connection_handle connection = GetConnHandler();
    if (!connection) return;
    LOG_DEBUG("Valid Connection Handler\n");
    const connection_profile_handle profile = ethernetProfile();
    if (!dns || !profile) return;
    LOG_DEBUG("Valid Profile Handler\n");
    succeeded(connection_profile_set_dns_address(profile, kPrimaryDns, kFamily, dns),
              {"Success to Set Primary DNS Address : ", "Fail to Set Primary DNS Address : ", ""});
    succeeded(connection_profile_set_dns_address(profile, kSecondaryDns, kFamily, dns),
              {"Success to Set Secondary DNS Address : ", "Fail to Set Secondary DNS Address : ", ""});
    updateWrittenProfile(connection, profile);
}

void Set_Wired_Conn_Info(const sglobalIPValues* values) {
    LOG_SCOPE();
    if (!values) {
        LOG_DEBUG("Connection Info not recieved\n");
        return;
    }
    const connection_profile_handle profile = ethernetProfile();
    const connection_handle connection = GetConnHandler();
    if (!profile || !connection) return;
    LOG_DEBUG("Valid Connection and Profile Handler\n");
    logValues(*values);
    if (writeAll(profile, *values)) updateWrittenProfile(connection, profile);
}

const char* Get_DNS_Config_Type() {
    LOG_SCOPE();
    const char* mode = kAutomaticMode;
    if (const connection_profile_handle profile = ethernetProfile()) {
        int type = 0;
        const int result = connection_profile_get_dns_config_type(profile, kFamily, &type);
        if (succeeded(result, {nullptr, "Fail to GET ip method type["})) {
            LOG_DEBUG("Success to Get config type :Config Type =%d\n", type);
            if (type == CONNECTION_DNS_CONFIG_STATIC) mode = kManualMode;
        }
    }
    LOG_DEBUG("Returned config type %s\n", mode);
    return mode;
}

void forgetConnHandler() {
    LOG_SCOPE();
    sMWNetworkConHandler = nullptr;
}
