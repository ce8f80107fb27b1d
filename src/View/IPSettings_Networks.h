// What differs between the settings of a wired and of a wireless network: the store keys and the adapter's operations.
#pragma once

#include "Common/Settings_Keys.h"
#include "View/Settings_Record.h"

struct SettingsNetwork {
    const char* said;        // its name in the log
    const char* valuesSaid;  // begins the log line of each value of a manual configuration
    const SettingsKeys& keys;
    bool (*findTarget)(sIPSetting& settings);           // names whom the values are for; false when there is nobody
    void (*nameTarget)(sIPSetting& settings);           // the same, and no name when there is nobody
    void (*switchIp)(int mode, sIPSetting& settings);   // kSwitchToAutomatic or kSwitchToManual
    void (*switchDns)(int mode, sIPSetting& settings);  // the same
    void (*loadStored)(sIPSetting* settings);           // the four stored values into the record
    void (*readLive)(sIPSetting& settings);             // fills connectionInfo
    void (*readDns)(sIPSetting& settings);              // the live DNS server into dnsAddress
    void (*sendDns)(sIPSetting& settings);              // dnsAddress
    void (*sendValues)(const sIPSetting& settings);     // sglobalIPValuesObj
};

// Wireless for kNetworkWireless, wired for any other number.
const SettingsNetwork& settingsNetworkOf(int networkType);
