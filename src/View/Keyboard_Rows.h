// The three rows that the keyboard edits: what it says above the entry, and about a text that is no address.
#pragma once

#include <array>
#include <cstring>

#include "Common/Resources.h"

struct AddressRow {
    const char* labelId;
    const char* promptId;
    const char* refusalId;
};
inline constexpr std::array kAddressRows{
    AddressRow{"SID_IP_ADDRESS", "TV_SID_PLEASE_ENTER_IP_ADDRESS", "TV_SID_INVALID_IP_ADDRESS_PLEASE_MSG"},
    AddressRow{"SID_GATEWAY", "TV_SID_ENTER_GATEWAY_ADDRESS", "TV_SID_INVALID_GATEWAY_SETTING_PLEASE_MSG"},
    AddressRow{"SID_DNS_SERVER", "TV_SID_ENTER_DNS_ADDRESS", "TV_SID_INVALID_DNS_SERVER_SETTING_PLEASE_MSG"},
};

// A text of the row with this label, both in the user's language; empty for any other label and for null.
inline const char* addressRowText(const char* label, const char* AddressRow::*textId) {
    for (const AddressRow& row : kAddressRows) {
        if (label && std::strcmp(label, localised(row.labelId)) == 0) return localised(row.*textId);
    }
    return "";
}
