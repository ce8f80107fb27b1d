// Reading the status screen from a dump, and scripts that several tests share.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "host_run.h"

inline constexpr const char* kStatusPart = "PartMain:elm.swallow.status";
inline constexpr const char* kVerdictPart = "PartMain:elm.swallow.status_unset";
inline constexpr const char* kErrorMarkPart = "PartMain:elm.swallow.status_fail";
inline constexpr const char* kMessagePart = "PartMain:connection_msg_block";
inline constexpr const char* kAdvicePart = "PartMain:suggestioneline2";

inline constexpr const char* kNoGatewayPicture = "network_popup_connect_0.png";
inline constexpr const char* kNoInternetPicture = "network_connect_3.png";
inline constexpr const char* kNoCablePicture = "network_connect_0.png";
inline constexpr const char* kErrorMark = "wizard_popup_connect_error.png";
// Frame number `number` of the running check.
std::string frame(int number);

using Texts = std::vector<std::string>;
inline const Texts kFullRow{"IPv6 settings", "Retry", "Close"};
inline const Texts kRowWithoutSettings{"Retry", "Close"};
inline const Texts kBlankPanel(5, "");

inline constexpr const char* kNoInternetAdvice =
    "The TV is connected to the router, but the internet cannot be reached over IPv6. Restart the router or contact "
    "your internet service provider.";
inline constexpr const char* kMacAdvice =
    "The TV's network adapter has no valid MAC address. Contact customer service.";

inline constexpr const char* kChecking = "Checking the wired network connection…";
inline constexpr const char* kReady = "Your wired network and the internet are ready to use.";
inline constexpr const char* kFailed = "Wired network connection failed.";
inline constexpr const char* kCancelled = "Connection check cancelled.";

// The path of a shipped scenario.
std::string scenario(const std::string& name);

// What stands in a part; empty when the part shows nothing.
std::string textIn(const nlohmann::json& dump, const std::string& part);
std::string pictureIn(const nlohmann::json& dump, const std::string& part);
std::string focusIn(const nlohmann::json& dump);
// The labels of the buttons from left to right.
std::vector<std::string> buttonsIn(const nlohmann::json& dump);
// MAC, address, prefix length, gateway and DNS as the panel shows them.
std::vector<std::string> panelIn(const nlohmann::json& dump);

// Script lines that dump the screen after each of so many half-second ticks, as tick1.json and so on.
std::string dumpTicks(int count);
