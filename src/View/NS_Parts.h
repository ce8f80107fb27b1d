// The parts of the status layout that the code fills.
#pragma once

namespace part {

inline constexpr const char* kTitle = "PartMain:elm.text.title";
inline constexpr const char* kStatus = "PartMain:elm.swallow.status";
inline constexpr const char* kStatusUnset = "PartMain:elm.swallow.status_unset";
inline constexpr const char* kStatusFail = "PartMain:elm.swallow.status_fail";
inline constexpr const char* kInternetStatusFail = "PartMain:elm.swallow.Internet_status_fail";
inline constexpr const char* kSignalStrength = "PartMain:elm.swallow.signal_strength";
inline constexpr const char* kSignalStrengthUnset = "PartMain:elm.swallow.signal_strength_unset";
inline constexpr const char* kSsid = "PartMain:elm.text.SSID";
inline constexpr const char* kSsidUnset = "PartMain:elm.text.SSID_unset";
inline constexpr const char* kMessage = "PartMain:connection_msg_block";
inline constexpr const char* kAdvice = "PartMain:suggestioneline2";
inline constexpr const char* kLoader = "PartMain:elm.loader.swallow";
inline constexpr const char* kCancelButton = "PartMain:elm.swallow.cencel";
inline constexpr const char* kCloseButton = "PartMain:elm.swallow.stop";
inline constexpr const char* kRetryButton = "PartMain:elm.swallow.change_network";
inline constexpr const char* kSettingsButton = "PartMain:elm.swallow.retry";

}  // namespace part
