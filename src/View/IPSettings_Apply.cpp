#include "View/IPSettings_Apply.h"

#include <algorithm>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Status_Store.h"
#include "View/IPSettings_Networks.h"
#include "View/IPSettings_Rows.h"
#include "View/IPSettings_Values.h"

namespace {

struct Configuration {
    const char* ipMode;
    const char* dnsMode;
    ConfigKind kind;
    const char* said;
};

constexpr std::array kConfigurations{
    Configuration{kAutomaticMode, kAutomaticMode, ConfigKind::kAutomatic, "IP_AUTO_DNS_AUTO"},
    Configuration{kAutomaticMode, kManualMode, ConfigKind::kManualDns, "IP_AUTO_DNS_MANUAL"},
    Configuration{kManualMode, kManualMode, ConfigKind::kManual, "IP_MANUAL_DNS_MANUAL"},
};

const Configuration& configurationOf(ConfigKind kind) {
    return *std::ranges::find(kConfigurations, kind, &Configuration::kind);
}

// The configuration whose two mode texts, as `spell` writes them, are these; null when none is.
template <typename Spell>
const Configuration* findConfiguration(const char* ipMode, const char* dnsMode, Spell spell) {
    const auto* const found = std::ranges::find_if(kConfigurations, [&](const Configuration& row) {
        return isMode(ipMode, spell(row.ipMode)) && isMode(dnsMode, spell(row.dnsMode));
    });
    return found == kConfigurations.end() ? nullptr : found;
}

int switchFor(const char* mode) {
    return isMode(mode, kManualMode) ? kSwitchToManual : kSwitchToAutomatic;
}

void storeValue(const ValueField& field, const SettingsKeys& keys, sIPSetting& settings) {
    writeStore(keys.*field.key, field.shown(settings).data());
}

void logSent(const char* said, const ValueField& field, const SettingsKeys& keys, sIPSetting& settings) {
    LOG_DEBUG("%s %s : [%s][%s]\n", said, field.said, keys.*field.key, field.shown(settings).data());
}

void applyManualDns(const SettingsNetwork& network, sIPSetting& settings) {
    logSent("MW and VCONF Set", kDnsField, network.keys, settings);
    network.sendDns(settings);
    storeValue(kDnsField, network.keys, settings);
}

void applyManual(const SettingsNetwork& network, sIPSetting& settings) {
    sglobalIPValuesObj = {};
    for (const ValueField* field : kValueFields) {
        logSent(network.valuesSaid, *field, network.keys, settings);
        copyText(field->sent(sglobalIPValuesObj), field->shown(settings).data());
    }
    network.sendValues(settings);
    for (const ValueField* field : kValueFields)
        storeValue(*field, network.keys, settings);
}

// Loads one stored value into the record and from there into the values to send; without one both stay.
void loadToSend(const ValueField& field, const SettingsKeys& keys, sIPSetting& settings) {
    const PlatformText stored = readStore(keys.*field.key);
    if (!stored) return;
    const std::span<char> shown = field.shown(settings);
    copyText(shown, stored.get());
    copyText(field.sent(sglobalIPValuesObj), shown.data());
    LOG_DEBUG("MW and VCONF Set %s : [%s][%s]\n", field.said, stored.get(), shown.data());
}

void setConfigurationData(const SettingsKeys& keys, sIPSetting& settings) {
    LOG_SCOPE();
    for (const ValueField* field : kValueFields)
        loadToSend(*field, keys, settings);
}

// What a stored configuration needs beyond the two switched modes.
void resendStoredValues(ConfigKind kind, const SettingsNetwork& network, sIPSetting& settings) {
    if (kind == ConfigKind::kManualDns) {
        if (const PlatformText dns = readStore(network.keys.dnsAddress)) {
            copyText(settings.dnsAddress, dns.get());
            logSent("MW and VCONF Set", kDnsField, network.keys, settings);
        }
        network.sendDns(settings);
    } else if (kind == ConfigKind::kManual) {
        sglobalIPValuesObj = {};
        setConfigurationData(network.keys, settings);
        network.sendValues(settings);
    }
}

void revertTo(const Configuration& stored, const SettingsNetwork& network, sIPSetting& settings) {
    LOG_DEBUG("%s\n", stored.said);
    network.switchIp(switchFor(stored.ipMode), settings);
    network.switchDns(switchFor(stored.dnsMode), settings);
    resendStoredValues(stored.kind, network, settings);
}

Eina_Bool AUTO_IP_Update_Timer_cb(void* /*data*/) {
    LOG_SCOPE();
    sIPSetting* const settings = getObject();
    if (!settings) {
        LOG_DEBUG("NW Setting Object is NULL\n");
        return ECORE_CALLBACK_CANCEL;
    }
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    LOG_DEBUG("Dynamic IP Settings Updation : %s\n", network.said);
    network.readLive(*settings);
    SetConnectionInfo(settings);
    if (settings->currentItem) elm_genlist_item_update(settings->currentItem);
    return ECORE_CALLBACK_CANCEL;
}

}  // namespace

bool shownConfiguration(const sIPSetting& settings, ConfigKind& kind) {
    const Configuration* const shown = findConfiguration(settings.ipModeText, settings.dnsModeText, localised);
    if (!shown) return false;
    LOG_DEBUG("%s\n", shown->said);
    kind = shown->kind;
    return true;
}

void Set_Conn_Info(ConfigKind kind, int networkType, sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(networkType);
    const Configuration& configuration = configurationOf(kind);
    LOG_DEBUG("%s\n", network.said);
    network.nameTarget(*settings);
    LOG_DEBUG("%s Configuration\n", configuration.said);
    writeStore(network.keys.ipMode, configuration.ipMode);
    writeStore(network.keys.dnsMode, configuration.dnsMode);
    if (kind == ConfigKind::kManualDns) applyManualDns(network, *settings);
    if (kind == ConfigKind::kManual) applyManual(network, *settings);
}

void reverseIPSettingsChanges(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) {
        LOG_DEBUG("Invalid Argument\n");
        return;
    }
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    const PlatformText ipMode = readStore(network.keys.ipMode);
    if (!ipMode) {
        LOG_DEBUG("str_ip_mode is NULL\n");
        return;
    }
    const PlatformText dnsMode = readStore(network.keys.dnsMode);
    if (!dnsMode) {
        LOG_DEBUG("str_dns_mode is NULL\n");
        return;
    }
    copyText(settings->ipModeText, ipMode.get());
    copyText(settings->dnsModeText, dnsMode.get());
    LOG_DEBUG("IP Config Type : [%s]/[%s]\n", ipMode.get(), settings->ipModeText);
    LOG_DEBUG("DNS Config Type : [%s]/[%s]\n", dnsMode.get(), settings->dnsModeText);
    if (!network.findTarget(*settings)) return;
    const auto asStored = [](const char* mode) { return mode; };
    if (const Configuration* stored = findConfiguration(ipMode.get(), dnsMode.get(), asStored)) {
        revertTo(*stored, network, *settings);
    }
}

void ip_changed_callback(const char* ipv4Address, const char* ipv6Address, void* /*data*/) {
    LOG_SCOPE();
    LOG_DEBUG("IPv4 address : %s, IPv6 address : %s\n", ipv4Address ? ipv4Address : "NULL",
              ipv6Address ? ipv6Address : "NULL");
    const sIPSetting* const settings = getObject();
    if (!settings) {
        LOG_DEBUG("NW Setting Object is NULL\n");
        return;
    }
    if (!ipv6Address || !isMode(settings->ipMode, kAutomaticMode)) return;
    LOG_DEBUG("IpSetting Type [%s]\n", settings->ipMode);
    AUTO_IP_Update_Timer_cb(nullptr);
}

void SetConnectionInfo(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    copyLiveValues(*settings);
    redrawRows(*settings);
}
