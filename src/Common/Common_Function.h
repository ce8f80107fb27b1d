// The records that the status screen, the verification and the adapters share, and small utilities of every unit.
#pragma once

#include <Elementary.h>

#include <cstdint>
#include <type_traits>

#include "Common/Error_Names.h"
#include "Common/IPv6_Address.h"
#include "connection_manager.h"
#include "gadget_host.h"

// The IPv6 information of the current connection: NUL-terminated texts.
struct sGlobalIPInfo {
    char global_MAC_ADDRESS[32];
    char global_IP_ADDRESS[40];
    char global_PREFIX_LENGTH[4];
    char global_GATEWAY[40];
    char global_DNS[40];
    char global_SSID_NAME[255];
};

inline constexpr int kNetworkWired = 1;
inline constexpr int kNetworkWireless = 2;

// What the running check has found out.
struct sConnectivityStatus {
    int gatewayReachable;            // 1: the last gateway check succeeded
    int internetOnline;              // 1: the last online check reported online
    int animationStep;               // frames shown in the internet stage
    int networkKind;                 // kNetworkWired or kNetworkWireless
    char imagePath[255];             // path of the current frame
    std::uint8_t internetCheckDone;  // 1: the online check has ended or could not start
};

// The status screen. Widgets belong to the toolkit's tree, the connection handle to the wired adapter.
struct sNetworkStatus {
    Evas_Object* popup;
    Evas_Object* win;
    Evas_Object* layout;
    Evas_Object* statusImage;
    Evas_Object* stopBtn;  // Cancel during a check, Close afterwards
    Evas_Object* ipSettingsBtn;
    Evas_Object* retryBtn;
    Evas_Object* signalImage;
    Evas_Object* animationImage;
    Evas_Object* failImage;
    Evas_Object* internetFailImage;
    Evas_Object** focusChain;  // heap array, made anew with each row of buttons
    connection_handle connection;
    ug_handle ug;
    sConnectivityStatus* connStatus;
};

static_assert(std::is_trivially_destructible_v<sGlobalIPInfo> && std::is_trivially_destructible_v<sNetworkStatus>);

inline constexpr const char* kDefaultMac = "00:00:00:00:00:00";
inline constexpr const char* kNoAddress = "::";
inline constexpr const char* kNoPrefix = "0";

extern const char* default_mac;
extern const char* default_addr_IPv6;
extern const char* default_adr_IPv6;

// The one instance, zero-filled on the first call. Null only when memory is out.
sGlobalIPInfo* createGlobalIPInfo();
// Frees the instance; the next createGlobalIPInfo() makes a new one.
void freeGlobalIPInfo();
// Address, gateway and DNS "::", prefix "0"; MAC and network name stay. Creates nothing.
void setDefaultValGlobalIPInfo();

// The one instance with its sub-record, zero-filled on the first call. Null when memory is out.
sNetworkStatus* createNetworkStatus();
// The same instance when there is one, else null: for answers that may come after the end.
sNetworkStatus* existingNetworkStatus();
// Frees both records; widgets and platform handles are not touched.
void freeSNetworkStatus();

// Copies `source` with its terminator; the caller guarantees room. Null when either is null.
char* copybuffer(char* destination, const char* source);
// strncmp over at most 255 characters; -1 when either is null.
int string_cmp(const char* a, const char* b);
// The localised text of a fixed English label; any other label is returned as it is.
const char* getData(const char* label);
// A heap copy (the caller frees it) of at most 199 characters; null for null.
char* modifyString(const char* text);

inline constexpr int kHighContrastMode = 0;
inline constexpr int kEnlargedFocusMode = 1;
// Whether the mode is switched on in the settings store; false for any other number.
bool IsEnhancedUIMode(int mode);

// One-second tick of the inactivity count; at 60 it asks the host to destroy the gadget.
Eina_Bool Timeout_Timer(void* data);
// Restarts the inactivity count; has the shape of an Evas event callback.
void Reset_Time_Flag(void* data = nullptr, Evas* canvas = nullptr, Evas_Object* object = nullptr,
                     void* event = nullptr);

// A heap copy of a text for the accessibility layer, which frees it.
char* _access_info_cb(const char* text);
