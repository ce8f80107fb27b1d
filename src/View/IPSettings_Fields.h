// The four values of a configuration: where each lies in the store and in the records, and its name in the log.
#pragma once

#include <array>
#include <span>

#include "Common/Settings_Keys.h"
#include "View/IPSingleton.h"

struct ValueField {
    const char* said;
    const char* SettingsKeys::*key;
    std::span<char> (*shown)(sIPSetting& settings);
    std::span<char> (*live)(sAPConnectionInfo& info);
    std::span<char> (*sent)(sglobalIPValues& values);
};

template <auto kField, typename Record>
std::span<char> textOf(Record& record) {
    return record.*kField;
}

inline constexpr ValueField kAddressField{"IP", &SettingsKeys::ipAddress, textOf<&sIPSetting::ipAddress>,
                                          textOf<&sAPConnectionInfo::ipAddress>, textOf<&sglobalIPValues::ipAddress>};
inline constexpr ValueField kPrefixField{"Prefix Length", &SettingsKeys::prefixLength,
                                         textOf<&sIPSetting::prefixLength>, textOf<&sAPConnectionInfo::prefixLength>,
                                         textOf<&sglobalIPValues::prefixLength>};
inline constexpr ValueField kGatewayField{"Gateway", &SettingsKeys::gateway, textOf<&sIPSetting::gateway>,
                                          textOf<&sAPConnectionInfo::gateway>, textOf<&sglobalIPValues::gateway>};
inline constexpr ValueField kDnsField{"DNS", &SettingsKeys::dnsAddress, textOf<&sIPSetting::dnsAddress>,
                                      textOf<&sAPConnectionInfo::dnsAddress>, textOf<&sglobalIPValues::dnsAddress>};

inline constexpr std::array kValueFields{&kAddressField, &kPrefixField, &kGatewayField, &kDnsField};
