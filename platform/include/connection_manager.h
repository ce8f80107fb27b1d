/* Connection manager: the wired profile, its IPv6 values, and the checks of its gateway and of the internet.
 * Text results are heap copies that the caller frees; on failure an out pointer is left untouched. Asynchronous results
 * come on the main loop, in a later iteration; none comes after the matching unset or destroy has returned. Profile
 * handles from an iterator stay valid until connection_destroy; clones are the caller's. */
#pragma once

#include <stdbool.h>
#include <stdint.h>

#include "platform_api.h"

PLATFORM_BEGIN_DECLS

/* Results of every call; the hexadecimal ones are the service's own. */
enum {
    CONNECTION_ERROR_NONE = 0,
    CONNECTION_ERROR_OUT_OF_MEMORY = -12,
    CONNECTION_ERROR_INVALID_PARAMETER = -22,
    CONNECTION_ERROR_INVALID_OPERATION = -38,
    CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED = -97,
    CONNECTION_ERROR_NOW_IN_PROGRESS = -115,
    CONNECTION_ERROR_INVALID_GATEWAY = -31730,
    CONNECTION_ERROR_OFFLINE = -31732,
    CONNECTION_ERROR_TCP_SYN_TIMEOUT = -31733,
    CONNECTION_ERROR_RST_IN_TCP_RESPONSE = -31734,
    CONNECTION_ERROR_NO_KEYWORD = -31735,
    CONNECTION_ERROR_OPERATION_FAILED = -29424639,  /* 0xFE3F0401 */
    CONNECTION_ERROR_ITERATOR_END = -29424638,      /* 0xFE3F0402 */
    CONNECTION_ERROR_NO_CONNECTION = -29424637,     /* 0xFE3F0403 */
    CONNECTION_ERROR_ALREADY_EXISTS = -29424636,    /* 0xFE3F0404 */
    CONNECTION_ERROR_OPERATION_ABORTED = -29424635, /* 0xFE3F0405 */
    CONNECTION_ERROR_DHCP_FAILED = -29424634,       /* 0xFE3F0406 */
    CONNECTION_ERROR_INVALID_KEY = -29424633,       /* 0xFE3F0407 */
    CONNECTION_ERROR_NO_REPLY = -29424632           /* 0xFE3F0408 */
};

enum { CONNECTION_ADDRESS_FAMILY_IPV4 = 0, CONNECTION_ADDRESS_FAMILY_IPV6 = 1 };
enum { CONNECTION_TYPE_DISCONNECTED = 0, CONNECTION_TYPE_WIFI = 1, CONNECTION_TYPE_ETHERNET = 3 };
enum { CONNECTION_ETHERNET_DEACTIVATED = 0, CONNECTION_ETHERNET_DISCONNECTED = 1, CONNECTION_ETHERNET_CONNECTED = 2 };
enum { CONNECTION_ITERATOR_REGISTERED = 0, CONNECTION_ITERATOR_CONNECTED = 1 };
enum { CONNECTION_PROFILE_TYPE_WIFI = 1, CONNECTION_PROFILE_TYPE_ETHERNET = 2 };
enum {
    CONNECTION_PROFILE_STATE_DISCONNECTED = 0,
    CONNECTION_PROFILE_STATE_ASSOCIATION = 1,
    CONNECTION_PROFILE_STATE_CONFIGURATION = 2,
    CONNECTION_PROFILE_STATE_CONNECTED = 3
};
enum { CONNECTION_IP_CONFIG_STATIC = 1, CONNECTION_IP_CONFIG_AUTOMATIC = 3 };
enum { CONNECTION_DNS_CONFIG_STATIC = 1, CONNECTION_DNS_CONFIG_DYNAMIC = 2 };

typedef void* connection_handle;
typedef void* connection_profile_handle;
typedef void* connection_profile_iterator;

typedef void (*connection_type_changed_cb)(int connection_type, void* user_data);
typedef void (*connection_address_changed_cb)(const char* ipv4_address, const char* ipv6_address, void* user_data);
typedef void (*connection_result_cb)(int result, void* user_data);

PLATFORM_API int connection_create(connection_handle* connection);
PLATFORM_API int connection_destroy(connection_handle connection);
PLATFORM_API int connection_set_type_changed_cb(connection_handle connection, connection_type_changed_cb cb,
                                                void* user_data);
PLATFORM_API int connection_unset_type_changed_cb(connection_handle connection);
PLATFORM_API int connection_set_ip_address_changed_cb(connection_handle connection, connection_address_changed_cb cb,
                                                      void* user_data);
PLATFORM_API int connection_unset_ip_address_changed_cb(connection_handle connection);
PLATFORM_API int connection_get_ethernet_state(connection_handle connection, int* state);
PLATFORM_API int connection_get_mac_address(connection_handle connection, int connection_type, char** mac);
PLATFORM_API int connection_get_is_online_ipv6_async(connection_handle connection, connection_result_cb cb,
                                                     void* user_data);
PLATFORM_API int connection_unset_async_cb(
    void* connection_or_profile); /* drops the pending checks asked on that handle */
PLATFORM_API int connection_update_profile(connection_handle connection, connection_profile_handle profile);

PLATFORM_API int connection_get_profile_iterator(connection_handle connection, int iterator_type,
                                                 connection_profile_iterator* it);
PLATFORM_API bool connection_profile_iterator_has_next(connection_profile_iterator it);
PLATFORM_API int connection_profile_iterator_next(connection_profile_iterator it, connection_profile_handle* profile);
PLATFORM_API int connection_destroy_profile_iterator(connection_profile_iterator it);

PLATFORM_API int connection_profile_clone(connection_profile_handle* copy, connection_profile_handle source);
PLATFORM_API int connection_profile_destroy(connection_profile_handle profile); /* clones only */
PLATFORM_API int connection_profile_get_type(connection_profile_handle profile, int* type);
PLATFORM_API int connection_profile_get_state(connection_profile_handle profile, int* state);
PLATFORM_API int connection_profile_get_ip_address(connection_profile_handle profile, int family, char** address);
PLATFORM_API int connection_profile_get_prefix_length(connection_profile_handle profile, int family, uint8_t* length);
PLATFORM_API int connection_profile_get_gateway_address(connection_profile_handle profile, int family, char** address);
PLATFORM_API int connection_profile_get_dns_address(connection_profile_handle profile, int order, int family,
                                                    char** address);
PLATFORM_API int connection_profile_get_dns_config_type(connection_profile_handle profile, int family, int* type);
PLATFORM_API int connection_profile_set_ip_config_type(connection_profile_handle profile, int family, int type);
PLATFORM_API int connection_profile_set_dns_config_type(connection_profile_handle profile, int family, int type);
PLATFORM_API int connection_profile_set_ip_address(connection_profile_handle profile, int family, const char* address);
PLATFORM_API int connection_profile_set_prefix_length(connection_profile_handle profile, int family, uint8_t length);
PLATFORM_API int connection_profile_set_gateway_address(connection_profile_handle profile, int family,
                                                        const char* address);
PLATFORM_API int connection_profile_set_dns_address(connection_profile_handle profile, int order, int family,
                                                    const char* address);
PLATFORM_API int connection_profile_check_gateway6_async(connection_profile_handle profile, connection_result_cb cb,
                                                         void* user_data);

PLATFORM_END_DECLS
