#include "Common/Status_Store.h"

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "settings_store.h"

namespace {

constexpr const char* kAutomatic = "COM_OBTAIN_AUTOMATICALLY";

constexpr const char* kWirelessIpModeKey = "db/menu/network/wireless_ip_mode_V6";
constexpr const char* kWirelessDnsModeKey = "db/menu/network/wireless_dns_mode_V6";
constexpr const char* kWiredIpModeKey = "db/menu/network/wired_ip_mode_V6";
constexpr const char* kWiredDnsModeKey = "db/menu/network/wired_dns_mode_V6";

struct StoreDefault {
    const char* key;
    const char* value;
    bool translated;  // the value is a text ID whose text in the user's language is stored
};

constexpr StoreDefault kDefaults[] = {
    {kWirelessIpModeKey, kAutomatic, false},
    {kWirelessDnsModeKey, kAutomatic, false},
    {"db/menu/network/wireless_ip_V6", kNoAddress, false},
    {"db/menu/network/wireless_prefix_V6", kNoPrefix, false},
    {"db/menu/network/wireless_gateway_V6", kNoAddress, false},
    {"db/menu/network/wireless_dns_V6", kNoAddress, false},
    {"db/menu/network/wired_ip_V6", kNoAddress, false},
    {"db/menu/network/wired_prefix_V6", kNoPrefix, false},
    {"db/menu/network/wired_gateway_V6", kNoAddress, false},
    {"db/menu/network/wired_dns_V6", kNoAddress, false},
    {kWiredIpModeKey, kAutomatic, false},
    {kWiredDnsModeKey, kAutomatic, false},
    {kNetworkTypeKey, "Wired", false},
    {kApNameKey, "COM_NO_NETWORK_M_OPTION", true},
    {kStopFlagKey, "FALSE", false},
    {kApPassKey, "73019462", false},
};

constexpr const char* kModeKeys[] = {kWirelessIpModeKey, kWirelessDnsModeKey, kWiredIpModeKey, kWiredDnsModeKey};
constexpr const char* kWiredModeKeys[] = {kWiredIpModeKey, kWiredDnsModeKey};

}  // namespace

PlatformText readStore(const char* key) {
    return PlatformText(vconf_get_str(key));
}

void set_vconf(const char* key, const char* value) {
    LOG_SCOPE();
    if (!key || !value) {
        LOG_DEBUG("key Or strVal is NULL\n\n");
        return;
    }
    const PlatformText stored = readStore(key);
    if (stored && string_cmp(stored.get(), "NULL") != 0) return;
    LOG_DEBUG("Setting NULL Key\n");
    vconf_set_str(key, value);
}

void vconf_set_init_values() {
    LOG_SCOPE();
    for (const StoreDefault& entry : kDefaults) {
        set_vconf(entry.key, entry.translated ? localised(entry.value) : entry.value);
    }
}

void set_vconf_default_keys() {
    LOG_SCOPE();
    for (const char* key : kModeKeys)
        set_vconf(key, kAutomatic);
}

void set_autoIn_vconf() {
    LOG_SCOPE();
    for (const char* key : kWiredModeKeys)
        set_vconf(key, kAutomatic);
}
