#include "View/IPSettings_Values.h"

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Status_Store.h"
#include "View/IPSettings_Apply.h"
#include "View/IPSettings_Networks.h"

namespace {

// A mode as the record has it: pointer, text, key, and what the log says when it is seeded.
struct ModeField {
    const char* said;
    const char* seeded;
    const char* SettingsKeys::*key;
    const char* sIPSetting::*mode;
    std::span<char> (*text)(sIPSetting& settings);
};

constexpr ModeField kIpMode{"Set IP Settings", "VCONF : Set IP Config Type Dynamic", &SettingsKeys::ipMode,
                            &sIPSetting::ipMode, textOf<&sIPSetting::ipModeText>};
constexpr ModeField kDnsMode{"Set DNS Settings", "VCONF : Set DNS Config Type Dynamic", &SettingsKeys::dnsMode,
                             &sIPSetting::dnsMode, textOf<&sIPSetting::dnsModeText>};
constexpr std::array kModeFields{&kIpMode, &kDnsMode};

void set_vconf_default(const char* key, const char* defaultValue) {
    LOG_SCOPE();
    seedStore(key, defaultValue, "Setting Default Value");
}

void seedMode(const ModeField& field, const SettingsKeys& keys, sIPSetting& settings) {
    const char* const key = keys.*field.key;
    if (!seedStore(key, kAutomaticMode, field.seeded)) return;
    const PlatformText stored = readStore(key);
    if (!stored) return;
    copyText(field.text(settings), stored.get());
    if (isMode(stored.get(), kAutomaticMode)) settings.*field.mode = kAutomaticMode;
}

void setMode(const ModeField& field, sIPSetting& settings, const char* mode) {
    settings.*field.mode = mode;
    copyTextOrEmpty(field.text(settings), localised(mode));
}

void showMode(const ModeField& field, sIPSetting& settings) {
    const bool manual = isMode(settings.*field.mode, kManualMode);
    LOG_DEBUG("%s : %s\n", field.said, manual ? "Manual" : "Dynamic");
    copyTextOrEmpty(field.text(settings), localised(manual ? kManualMode : kAutomaticMode));
}

void logInitialValues(sIPSetting& settings) {
    LOG_DEBUG("Initial Values\n");
    for (const ModeField* field : kModeFields) {
        const char* const mode = settings.*field->mode;
        LOG_DEBUG("%s : [%s][%s]\n", field->said, mode ? mode : "", field->text(settings).data());
    }
    for (const ValueField* field : kValueFields)
        LOG_DEBUG("%s : [%s]\n", field->said, field->shown(settings).data());
}

void logSynchronised(sIPSetting& settings) {
    for (const ValueField* field : kValueFields) {
        LOG_DEBUG("sIPSettingObj and sAPConnectionInfoObj %s : [%s][%s]\n", field->said, field->shown(settings).data(),
                  field->live(*settings.connectionInfo).data());
    }
}

void loadStoredValues(const SettingsKeys& keys, sIPSetting& settings) {
    for (const ValueField* field : kValueFields)
        loadStoredValue(*field, keys, settings);
}

void loadLiveValues(sIPSetting& settings) {
    LOG_DEBUG("Dynamic Configuration\n");
    const SettingsNetwork& network = settingsNetworkOf(settings.networkType);
    network.readLive(settings);
    if (!isMode(settings.dnsMode, kManualMode)) return;
    if (const PlatformText dns = readStore(network.keys.dnsAddress)) copyText(settings.dnsAddress, dns.get());
}

}  // namespace

bool isMode(const char* mode, const char* wanted) {
    return mode && std::string_view(mode) == wanted;
}

void setIpMode(sIPSetting& settings, const char* mode) {
    setMode(kIpMode, settings, mode);
}

void setDnsMode(sIPSetting& settings, const char* mode) {
    setMode(kDnsMode, settings, mode);
}

void initIPSetting(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const int result = connection_set_ip_address_changed_cb(settings->connection, ip_changed_callback, nullptr);
    const bool registered = result == CONNECTION_ERROR_NONE;
    LOG_DEBUG("ip_changed_callback registered %s\n", registered ? "Success" : "Failed");
}

void stopAddressChanges(const sIPSetting& settings) {
    const int result = connection_unset_ip_address_changed_cb(settings.connection);
    const bool gone = result == CONNECTION_ERROR_NONE;
    LOG_DEBUG("ip_changed_callback deregistered %s\n", gone ? "Success" : "failed");
}

void SetDefaultVconfValues(int networkType, sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(networkType);
    LOG_DEBUG("%s\n", network.said);
    for (const ValueField* field : kValueFields)
        set_vconf_default(network.keys.*field->key, field == &kPrefixField ? kNoPrefix : kNoAddress);
    for (const ModeField* field : kModeFields)
        seedMode(*field, network.keys, *settings);
    logInitialValues(*settings);
}

void readStoredModes(sIPSetting& settings) {
    const SettingsNetwork& network = settingsNetworkOf(settings.networkType);
    for (const ModeField* field : kModeFields) {
        const PlatformText stored = readStore(network.keys.*field->key);
        settings.*field->mode = isMode(stored.get(), kManualMode) ? kManualMode : kAutomaticMode;
    }
}

void loadStoredValue(const ValueField& field, const SettingsKeys& keys, sIPSetting& settings) {
    const PlatformText stored = readStore(keys.*field.key);
    if (!stored) return;
    const std::span<char> shown = field.shown(settings);
    copyText(shown, stored.get());
    LOG_DEBUG("Global and VCONF Get %s : [%s][%s]\n", field.said, shown.data(), stored.get());
}

void GetVConfValuesWL(sIPSetting* settings) {
    LOG_SCOPE();
    if (settings) loadStoredValues(kWirelessKeys, *settings);
}

void GetVConfValuesWired(sIPSetting* settings) {
    LOG_SCOPE();
    if (settings) loadStoredValues(kWiredKeys, *settings);
}

void copyLiveValues(sIPSetting& settings) {
    for (const ValueField* field : kValueFields) {
        if (field == &kDnsField && !isMode(settings.dnsMode, kAutomaticMode)) continue;
        copyText(field->shown(settings), field->live(*settings.connectionInfo).data());
    }
}

void set_Initial_Values(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    LOG_DEBUG("%s\n", settingsNetworkOf(settings->networkType).said);
    const bool manual = isMode(settings->ipMode, kManualMode);
    if (manual) {
        LOG_DEBUG("Manual Configuration\n");
        settingsNetworkOf(settings->networkType).loadStored(settings);
    } else {
        loadLiveValues(*settings);
    }
    for (const ModeField* field : kModeFields)
        showMode(*field, *settings);
    if (!manual) {
        LOG_DEBUG("Synchronize Data in Case of Dynamic Configuration\n");
        copyLiveValues(*settings);
    }
    logSynchronised(*settings);
}
