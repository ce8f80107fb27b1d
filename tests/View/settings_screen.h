// Reading the settings screen from a dump, and driving it, for both kinds of network.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "status_screen.h"

inline constexpr const char* kAuto = "COM_OBTAIN_AUTOMATICALLY";
inline constexpr const char* kManual = "COM_ENTER_MANUALLY";
inline constexpr const char* kAutoText = "Obtain automatically";
inline constexpr const char* kManualText = "Enter manually";

// A kind of network with its scenario, its store keys, and what it gives.
struct SettingsCase {
    const char* type;      // as the store names it
    const char* scenario;  // everything answers
    const char* keyStart;  // of its store keys
    const char* address;   // live, as the next ones
    const char* server;
};
inline constexpr SettingsCase kWiredCase{"Wired", "success", "db/menu/network/wired_", "2001:db8:1::10",
                                         "2001:db8:1::53"};
inline constexpr SettingsCase kWirelessCase{"Wireless", "wifi-success", "db/menu/network/wireless_", "2001:db8:2::20",
                                            "2001:db8:2::53"};
inline constexpr SettingsCase kBothCases[] = {kWiredCase, kWirelessCase};
inline constexpr const char* kUntouched = "- -/0 - - -";  // what configuredIn says before any change

// A stored configuration: the two modes, and the four values.
struct Stored {
    std::string ipMode = kAuto;
    std::string dnsMode = kAuto;
    std::vector<std::string> values{"2001:db8:9::9", "56", "2001:db8:9::1", "2001:db8:9::53"};
};

// A configuration's keys, and the full name of one.
inline constexpr const char* kKeyNames[] = {"ip_mode", "dns_mode", "ip", "prefix", "gateway", "dns"};
std::string keyOf(const SettingsCase& network, const std::string& name);
// A run on that network with that configuration in the store; the script begins on the open settings screen.
HostSetup onSettings(const SettingsCase& network, const Stored& stored, const std::string& script);
// Script lines: from the status screen's verdict to the open settings screen.
inline constexpr const char* kOpenSettings = "key Right\nkey Return\nwait 0.3\n";
// What the store holds after a run, as "ip mode, DNS mode, four values".
std::vector<std::string> storedAfter(const HostRun& run, const SettingsCase& network);
std::vector<std::string> asRow(const Stored& stored);

// The six values as they are shown, and which rows can be selected, as "101010".
Texts valuesIn(const nlohmann::json& dump);
std::string enabledIn(const nlohmann::json& dump);
// The styles of the popups from below, without the status screen's.
Texts popupsIn(const nlohmann::json& dump);

// What `network save` wrote of the wired profile or the connected access point: "mode address/length gateway DNS-mode
// servers", as configured, without what was never configured.
std::string configuredIn(const nlohmann::json& network);

// Script lines: from the first row to the prefix length's popup.
inline const std::string kOpenPrefix = "key Down\nkey Down\nkey Return\nwait 0.2\n";
// Switches the mode of the focused mode row, which must be in the other one.
inline constexpr const char* kToManual = "key Return\nwait 0.2\nkey Down\nkey Return\nwait 0.2\n";
inline constexpr const char* kToAutomatic = "key Return\nwait 0.2\nkey Up\nkey Return\nwait 0.2\n";
