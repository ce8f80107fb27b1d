// The settings screen's record and the values on their way to the network. The settings adapters fill and read them:
// their one look up into the screens. Text fields are NUL-terminated; what is longer is cut.
#pragma once

#include <Elementary.h>

#include <cstdint>
#include <type_traits>

#include "Common/Settings_Keys.h"
#include "connection_manager.h"
#include "wifi_manager.h"

// Argument of the adapters' mode switches.
inline constexpr int kSwitchToAutomatic = 0;
inline constexpr int kSwitchToManual = 1;

// What the platform says of the connection now; "::" and "0" stand for unknown values.
struct sAPConnectionInfo {
    char macAddress[40];
    char ipAddress[40];
    char prefixLength[4];
    char gateway[40];
    char dnsAddress[40];
    char apName[255];
};

// A complete manual configuration for an adapter to write.
struct sglobalIPValues {
    char ipAddress[40];
    char prefixLength[4];
    char gateway[40];
    char dnsAddress[40];
    char apName[255];  // wireless: the access point that the values are for
};

// The open settings screen.
struct sIPSetting {
    std::int16_t networkType;  // kNetworkWired or kNetworkWireless
    Evas_Object* okButton;
    Evas_Object* cancelButton;
    Evas_Object* popup;  // owned; every other widget of the screen hangs below it
    const char* ipMode;  // kAutomaticMode or kManualMode itself
    const char* dnsMode;
    Evas_Object* typePopup;  // the mode choice and its list, while it is open
    Evas_Object* typeList;
    Evas_Object* list;
    Elm_Object_Item* currentItem;  // the row last selected
    wifi_ap_handle apHandle;       // the access point found by name; wireless only
    char ipModeText[40];
    char ipAddress[40];
    char prefixLength[4];
    char gateway[40];
    char dnsModeText[40];
    char dnsAddress[40];
    sAPConnectionInfo* connectionInfo;  // owned
    char apName[65];                    // name of the connected access point; wireless only
    connection_handle connection;       // the launcher's
    void* callerData;
};

static_assert(std::is_trivially_destructible_v<sIPSetting> && std::is_trivially_destructible_v<sglobalIPValues>);

// The one instance, made zero-filled with its connectionInfo on the first call. Null when memory is out.
sIPSetting* getObject();
