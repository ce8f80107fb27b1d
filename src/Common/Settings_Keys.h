// The store keys of the IPv6 configuration, one set for each kind of network, and the texts that stand for a mode.
#pragma once

// Modes are these two text IDs: compared by text, stored as they are and shown translated.
inline constexpr const char* kAutomaticMode = "COM_OBTAIN_AUTOMATICALLY";
inline constexpr const char* kManualMode = "COM_ENTER_MANUALLY";

struct SettingsKeys {
    const char* ipMode;
    const char* dnsMode;
    const char* ipAddress;
    const char* prefixLength;
    const char* gateway;
    const char* dnsAddress;
};

inline constexpr SettingsKeys kWiredKeys{
    "db/menu/network/wired_ip_mode_V6", "db/menu/network/wired_dns_mode_V6", "db/menu/network/wired_ip_V6",
    "db/menu/network/wired_prefix_V6",  "db/menu/network/wired_gateway_V6",  "db/menu/network/wired_dns_V6",
};
inline constexpr SettingsKeys kWirelessKeys{
    "db/menu/network/wireless_ip_mode_V6", "db/menu/network/wireless_dns_mode_V6", "db/menu/network/wireless_ip_V6",
    "db/menu/network/wireless_prefix_V6",  "db/menu/network/wireless_gateway_V6",  "db/menu/network/wireless_dns_V6",
};
