// The four mode switches of the settings screen.
#include "Common/Log.h"
#include "View/IPSettings.h"
#include "View/IPSettings_Apply.h"
#include "View/IPSettings_Networks.h"
#include "View/IPSettings_Rows.h"
#include "View/IPSettings_Values.h"

namespace {

void switchBoth(const SettingsNetwork& network, int mode, sIPSetting& settings) {
    network.switchIp(mode, settings);
    network.switchDns(mode, settings);
}

}  // namespace

void IP_Auto_Btn(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    setIpMode(*settings, kAutomaticMode);
    setDnsMode(*settings, kAutomaticMode);
    _SetEnableDisableList(settings, true, false);
    switchBoth(network, kSwitchToAutomatic, *settings);
    network.readLive(*settings);
    SetConnectionInfo(settings);
}

void IP_Man_Btn(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    setIpMode(*settings, kManualMode);
    setDnsMode(*settings, kManualMode);
    _SetEnableDisableList(settings, false, false);
    switchBoth(network, kSwitchToManual, *settings);
    network.loadStored(settings);
    redrawRows(*settings);
}

void DNS_Auto_Btn(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    setDnsMode(*settings, kAutomaticMode);
    network.switchDns(kSwitchToAutomatic, *settings);
    network.readDns(*settings);
    redrawRows(*settings);
}

void DNS_Man_Btn(sIPSetting* settings) {
    LOG_SCOPE();
    if (!settings) return;
    const SettingsNetwork& network = settingsNetworkOf(settings->networkType);
    setDnsMode(*settings, kManualMode);
    network.switchDns(kSwitchToManual, *settings);
    loadStoredValue(kDnsField, network.keys, *settings);
    redrawRows(*settings);
}
