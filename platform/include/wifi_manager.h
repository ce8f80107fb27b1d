/* Wi-Fi manager: found access points, the connected one, its IPv6 values and checks.
 * Access-point handles of a walk belong to the service until wifi_deinitialize; handles from wifi_get_connected_ap and
 * clones are the caller's. wifi_ap_set_* takes effect at once: there is no separate update call. */
#pragma once

#include <stdbool.h>
#include <stdint.h>

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

/* Results of every call; the hexadecimal ones are the service's own. */
enum {
    WIFI_ERROR_NONE = 0,
    WIFI_ERROR_OUT_OF_MEMORY = -12,
    WIFI_ERROR_INVALID_PARAMETER = -22,
    WIFI_ERROR_INVALID_OPERATION = -38,
    WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED = -97,
    WIFI_ERROR_NOW_IN_PROGRESS = -115,
    WIFI_ERROR_INVALID_GATEWAY = -31986,
    WIFI_ERROR_OFFLINE = -31987,
    WIFI_ERROR_WPS_WEP_PROHIBITED = -31988,
    WIFI_ERROR_WPS_TIMEOUT = -31989,
    WIFI_ERROR_WPS_OVERLAP = -31990,
    WIFI_ERROR_OPERATION_FAILED = -29687039,   /* 0xFE3B0301 */
    WIFI_ERROR_NO_CONNECTION = -29687038,      /* 0xFE3B0302 */
    WIFI_ERROR_ALREADY_EXISTS = -29687037,     /* 0xFE3B0303 */
    WIFI_ERROR_OPERATION_ABORTED = -29687036,  /* 0xFE3B0304 */
    WIFI_ERROR_DHCP_FAILED = -29687034,        /* 0xFE3B0306 */
    WIFI_ERROR_INVALID_KEY = -29687033,        /* 0xFE3B0307 */
    WIFI_ERROR_NO_REPLY = -29687032,           /* 0xFE3B0308 */
    WIFI_ERROR_SECURITY_RESTRICTED = -29687031 /* 0xFE3B0309 */
};

enum {
    WIFI_SECURITY_NONE = 0,
    WIFI_SECURITY_WEP = 1,
    WIFI_SECURITY_WPA_PSK = 2,
    WIFI_SECURITY_WPA2_PSK = 3,
    WIFI_SECURITY_EAP = 4,
    WIFI_SECURITY_SAE = 5
};

typedef void* wifi_ap_handle;

typedef bool (*wifi_found_ap_cb)(wifi_ap_handle ap, void* user_data); /* true: go on; false: end the walk */
typedef void (*wifi_result_cb)(int result, void* user_data);

PLATFORM_API int wifi_initialize(void); /* -38 when it is initialised already */
PLATFORM_API int wifi_deinitialize(void);
PLATFORM_API int wifi_is_activated(bool* activated);
PLATFORM_API int wifi_get_mac_address(char** mac);
PLATFORM_API int wifi_foreach_found_aps(wifi_found_ap_cb cb, void* user_data);
PLATFORM_API int wifi_get_connected_ap(wifi_ap_handle* ap); /* NO_CONNECTION when there is none */
PLATFORM_API int wifi_connect(wifi_ap_handle ap, wifi_result_cb cb, void* user_data);
PLATFORM_API int wifi_disconnect(wifi_ap_handle ap, wifi_result_cb cb, void* user_data);
PLATFORM_API int wifi_scan(wifi_result_cb cb, void* user_data);
PLATFORM_API int wifi_get_is_online_ipv6_async(wifi_result_cb cb, void* user_data);

PLATFORM_API int wifi_ap_clone(wifi_ap_handle* copy, wifi_ap_handle source);
PLATFORM_API int wifi_ap_destroy(wifi_ap_handle ap); /* clones and connected-AP handles only */
PLATFORM_API int wifi_ap_get_essid(wifi_ap_handle ap, char** essid);
PLATFORM_API int wifi_ap_get_bssid(wifi_ap_handle ap, char** bssid);
PLATFORM_API int wifi_ap_get_rssi(wifi_ap_handle ap, int* rssi);
PLATFORM_API int wifi_ap_get_security_type(wifi_ap_handle ap, int* type);
PLATFORM_API int wifi_ap_is_passphrase_required(wifi_ap_handle ap, bool* required);
PLATFORM_API int wifi_ap_set_passphrase(wifi_ap_handle ap, const char* passphrase);
PLATFORM_API int wifi_ap_get_ip_address(wifi_ap_handle ap, int family, char** address);
PLATFORM_API int wifi_ap_get_prefix_length(wifi_ap_handle ap, uint8_t* length);
PLATFORM_API int wifi_ap_get_gateway_address(wifi_ap_handle ap, int family, char** address);
PLATFORM_API int wifi_ap_get_dns_address(wifi_ap_handle ap, int order, int family, char** address);
PLATFORM_API int wifi_ap_get_dns_config_type(wifi_ap_handle ap, int family, int* type);
PLATFORM_API int wifi_ap_set_ip_config_type(wifi_ap_handle ap, int family, int type);
PLATFORM_API int wifi_ap_set_dns_config_type(wifi_ap_handle ap, int family, int type);
PLATFORM_API int wifi_ap_set_ip_address(wifi_ap_handle ap, int family, const char* address);
PLATFORM_API int wifi_ap_set_prefix_length(wifi_ap_handle ap, uint8_t length);
PLATFORM_API int wifi_ap_set_gateway_address(wifi_ap_handle ap, int family, const char* address);
PLATFORM_API int wifi_ap_set_dns_address(wifi_ap_handle ap, int order, int family, const char* address);
PLATFORM_API int wifi_ap_check_gateway6_async(wifi_ap_handle ap, wifi_result_cb cb, void* user_data);
PLATFORM_API int wifi_ap_unset_async_cb(wifi_ap_handle ap);

PLATFORM_END_DECLS
