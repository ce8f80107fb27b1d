// The keyboard over the settings screen: opening it, and reading it from a dump.
#pragma once

#include <string>

#include "settings_screen.h"

struct KeyboardRow {
    const char* label;
    const char* prompt;
    const char* refusal;
};
inline constexpr KeyboardRow kRows[] = {
    {"IP address", "Enter the IP address.",
     "This is not a valid IPv6 address. Check that it does not begin or end with a colon."},
    {"Gateway", "Enter the gateway address.",
     "This is not a valid gateway address. Check that it does not begin or end with a colon."},
    {"DNS server", "Enter the DNS server address.",
     "This is not a valid DNS server address. Check that it does not begin or end with a colon."},
};

inline constexpr const char* kDoneKey = "elm.button.OK_IPV6";
inline constexpr const char* kBackspaceKey = "elm.button.Delete_IPV6";
inline constexpr const char* kWholeAddress = "2001:0db8:0000:0000:0000:0000:0000:0001";

// A run with a manual configuration that has this text in all three rows; the script begins on the row's open keyboard.
HostSetup onKeyboard(const std::string& row, const std::string& value, const std::string& script);
// The style of the uppermost popup; its texts are what the user sees of it.
std::string popupIn(const nlohmann::json& dump);
bool isKeyboardOpenIn(const nlohmann::json& dump);
// The entry's text with a bar for the cursor.
std::string entryIn(const nlohmann::json& dump);
// The part of the key that has the focus.
std::string focusedKeyIn(const nlohmann::json& dump);
// The value that the settings list shows in a row.
std::string rowValueIn(const nlohmann::json& dump, const std::string& label);
// Script lines that click the key in "elm.button.NAME_IPV6".
std::string clickKey(const std::string& name);
