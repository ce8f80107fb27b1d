#include "Common/Status_Store.h"

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Settings_Keys.h"
#include "settings_store.h"

namespace {

constexpr const char* kNoValue = "NULL";  // what the platform stores where there is none

struct StoreDefault {
    const char* key;
    const char* value;
    bool translated;  // the value is a text ID whose text in the user's language is stored
};

constexpr StoreDefault kDefaults[] = {
    {kWirelessKeys.ipMode, kAutomaticMode, false},
    {kWirelessKeys.dnsMode, kAutomaticMode, false},
    {kWirelessKeys.ipAddress, kNoAddress, false},
    {kWirelessKeys.prefixLength, kNoPrefix, false},
    {kWirelessKeys.gateway, kNoAddress, false},
    {kWirelessKeys.dnsAddress, kNoAddress, false},
    {kWiredKeys.ipAddress, kNoAddress, false},
    {kWiredKeys.prefixLength, kNoPrefix, false},
    {kWiredKeys.gateway, kNoAddress, false},
    {kWiredKeys.dnsAddress, kNoAddress, false},
    {kWiredKeys.ipMode, kAutomaticMode, false},
    {kWiredKeys.dnsMode, kAutomaticMode, false},
    {kNetworkTypeKey, "Wired", false},
    {kApNameKey, "COM_NO_NETWORK_M_OPTION", true},
    {kStopFlagKey, "FALSE", false},
    {kApPassKey, "73019462", false},
};

constexpr const char* kModeKeys[] = {kWirelessKeys.ipMode, kWirelessKeys.dnsMode, kWiredKeys.ipMode,
                                     kWiredKeys.dnsMode};
constexpr const char* kWiredModeKeys[] = {kWiredKeys.ipMode, kWiredKeys.dnsMode};

}  // namespace

PlatformText readStore(const char* key) {
    return PlatformText(vconf_get_str(key));
}

void writeStore(const char* key, const char* value) {
    if (vconf_set_str(key, value) != 0) LOG_WARN("The settings store does not take %s\n", key);
}

bool seedStore(const char* key, const char* value, const char* said) {
    if (!key || !value) {
        LOG_DEBUG("key Or strVal is NULL\n\n");
        return false;
    }
    const PlatformText stored = readStore(key);
    if (stored && string_cmp(stored.get(), kNoValue) != 0) return false;
    LOG_DEBUG("%s\n", said);
    writeStore(key, value);
    return true;
}

void set_vconf(const char* key, const char* value) {
    LOG_SCOPE();
    seedStore(key, value, "Setting NULL Key");
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
        set_vconf(key, kAutomaticMode);
}

void set_autoIn_vconf() {
    LOG_SCOPE();
    for (const char* key : kWiredModeKeys)
        set_vconf(key, kAutomaticMode);
}
