// Reading the status screen from a dump, and scripts that several tests share.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

#include "host_run.h"

inline constexpr const char* kStatusPart = "PartMain:elm.swallow.status";
inline constexpr const char* kVerdictPart = "PartMain:elm.swallow.status_unset";
inline constexpr const char* kErrorMarkPart = "PartMain:elm.swallow.status_fail";
inline constexpr const char* kMessagePart = "PartMain:connection_msg_block";
inline constexpr const char* kAdvicePart = "PartMain:suggestioneline2";
// The wireless network's name and signal, while all is well and beside a failure.
inline constexpr const char* kNamePart = "PartMain:elm.text.SSID";
inline constexpr const char* kVerdictNamePart = "PartMain:elm.text.SSID_unset";
inline constexpr const char* kSignalPart = "PartMain:elm.swallow.signal_strength";
inline constexpr const char* kVerdictSignalPart = "PartMain:elm.swallow.signal_strength_unset";

inline constexpr const char* kNoGatewayPicture = "network_popup_connect_0.png";
inline constexpr const char* kNoInternetPicture = "network_connect_3.png";
inline constexpr const char* kSignalPicture = "obe_icon_wifi_lock_5.png";
inline constexpr const char* kName = "Maple Street 12";

using Texts = std::vector<std::string>;
inline const Texts kFullRow{"IPv6 settings", "Retry", "Close"};
inline const Texts kBlankPanel(5, "");

inline constexpr const char* kCancelled = "Connection check cancelled.";
inline constexpr const char* kToVerdict = "expect exactly \"Close\" within 20\nwait 0.1\n";

// A shipped scenario's path; and a run on it or on a scenario as JSON. A name that begins with "wifi" is a wireless
// one.
std::string scenario(const std::string& name);
bool isWireless(const std::string& network);
HostSetup onNetwork(const std::string& network, const std::string& script);
std::string checking(const std::string& network);
std::string ready(const std::string& network);
std::string failed(const std::string& network);

// Plays the script, which must succeed, and reads what the screen shows at its end.
nlohmann::json endOf(HostSetup setup);

// What stands in a part; empty when the part shows nothing.
std::string textIn(const nlohmann::json& dump, const std::string& part);
std::string pictureIn(const nlohmann::json& dump, const std::string& part);
std::string focusIn(const nlohmann::json& dump);
// The labels of the buttons from left to right.
std::vector<std::string> buttonsIn(const nlohmann::json& dump);
// MAC, address, prefix length, gateway and DNS as the panel shows them.
std::vector<std::string> panelIn(const nlohmann::json& dump);

// The texts between bars.
Texts listed(std::string_view text);
// Script lines of steps such as "Left Retry|Left Close": presses the key, and the focus must then be on that label.
std::string walk(std::string_view steps);
