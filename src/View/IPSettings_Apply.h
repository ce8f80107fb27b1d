// Writing what the settings screen shows, and putting the network back to what the store holds.
#pragma once

struct sIPSetting;

// The configurations that can be written; a manual address with an automatic DNS server is none.
enum class ConfigKind { kAutomatic = 0, kManualDns = 1, kManual = 2 };

// The configuration that the two mode texts on the screen stand for. False when they stand for none.
bool shownConfiguration(const sIPSetting& settings, ConfigKind& kind);
// Writes the configuration on the screen to the store and to the network.
void Set_Conn_Info(ConfigKind kind, int networkType, sIPSetting* settings);

// Puts the network back to the stored configuration. Does not write the store.
void reverseIPSettingsChanges(sIPSetting* settings);

// The platform's address-changed notification: shows the live values while the IP mode is automatic.
void ip_changed_callback(const char* ipv4Address, const char* ipv6Address, void* data);
// Copies the live values into the shown fields and redraws the rows.
void SetConnectionInfo(sIPSetting* settings);
