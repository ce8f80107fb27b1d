// Wi-Fi manager: one access point, its values, and its IPv6 configuration, which changes at once.
#include <string>
#include <utility>

#include "wifi_service.h"

namespace {

using network::AccessPoint;
using network::apCall;
using network::ApHandle;
using network::backend;
using network::Ipv6Settings;
using network::Ipv6Values;
using network::wifiService;

constexpr int kNone = CONNECTION_ERROR_NONE;

template <typename Read>
int readAp(std::string_view function, wifi_ap_handle ap, const void* out, Read read) {
    return apCall(function, ap, out != nullptr, [&](const ApHandle& object) -> int {
        AccessPoint found;
        const int error = backend()->accessPoint(object.id, found);
        return error == kNone ? read(found) : error;
    });
}

template <typename Read>
int readIpv6(std::string_view function, wifi_ap_handle ap, int family, const void* out, Read read) {
    return readAp(function, ap, out, [&](const AccessPoint& found) -> int {
        const int error = network::familyError(family);
        return error == kNone ? read(found.ipv6) : error;
    });
}

// A setter: argument and family checks, then the change, which says whether the value is possible, and its storing.
template <typename Change>
int changeAp(std::string_view function, wifi_ap_handle ap, int family, bool argumentsGiven, Change change) {
    return apCall(function, ap, argumentsGiven, [&](const ApHandle& object) -> int {
        if (const int error = network::familyError(family); error != kNone) return error;
        Ipv6Settings changes;
        if (!change(changes)) return CONNECTION_ERROR_INVALID_PARAMETER;
        return backend()->storeAccessPoint(object.id, changes);
    });
}

// The prefix length's calls name no family.
constexpr int kOnlyFamily = CONNECTION_ADDRESS_FAMILY_IPV6;

}  // namespace

int wifi_ap_clone(wifi_ap_handle* copy, wifi_ap_handle source) {
    return apCall(__func__, source, copy != nullptr, [&](const ApHandle& object) -> int {
        ApHandle clone = object;
        clone.isCallers = true;
        *copy = wifiService().aps.add(std::move(clone));
        return kNone;
    });
}

// Also after the manager's release: the handle is the caller's.
int wifi_ap_destroy(wifi_ap_handle ap) {
    return network::wifiError(
        network::handleCall(__func__, wifiService().aps, ap, true, [&](const ApHandle& object) -> int {
            if (!object.isCallers) return CONNECTION_ERROR_INVALID_OPERATION;
            network::dropWifiRequests(ap);
            wifiService().aps.remove(ap);
            return kNone;
        }));
}

int wifi_ap_get_essid(wifi_ap_handle ap, char** essid) {
    return readAp(__func__, ap, essid, [&](const AccessPoint& found) { return network::copyText(found.essid, essid); });
}

int wifi_ap_get_bssid(wifi_ap_handle ap, char** bssid) {
    return readAp(__func__, ap, bssid, [&](const AccessPoint& found) { return network::giveText(found.bssid, bssid); });
}

int wifi_ap_get_rssi(wifi_ap_handle ap, int* rssi) {
    return readAp(__func__, ap, rssi, [&](const AccessPoint& found) {
        *rssi = found.rssi;
        return kNone;
    });
}

int wifi_ap_get_security_type(wifi_ap_handle ap, int* type) {
    return readAp(__func__, ap, type, [&](const AccessPoint& found) {
        *type = found.security;
        return kNone;
    });
}

int wifi_ap_is_passphrase_required(wifi_ap_handle ap, bool* required) {
    return readAp(__func__, ap, required, [&](const AccessPoint& found) {
        *required = found.passphraseRequired;
        return kNone;
    });
}

int wifi_ap_set_passphrase(wifi_ap_handle ap, const char* passphrase) {
    return apCall(__func__, ap, passphrase != nullptr, [&](ApHandle& object) -> int {
        object.passphrase = passphrase;
        return kNone;
    });
}

int wifi_ap_get_ip_address(wifi_ap_handle ap, int family, char** address) {
    return readIpv6(__func__, ap, family, address,
                    [&](const Ipv6Values& values) { return network::giveText(values.address, address); });
}

int wifi_ap_get_prefix_length(wifi_ap_handle ap, uint8_t* length) {
    return readIpv6(__func__, ap, kOnlyFamily, length,
                    [&](const Ipv6Values& values) { return network::givePrefixLength(values, length); });
}

int wifi_ap_get_gateway_address(wifi_ap_handle ap, int family, char** address) {
    return readIpv6(__func__, ap, family, address,
                    [&](const Ipv6Values& values) { return network::giveText(values.gateway, address); });
}

int wifi_ap_get_dns_address(wifi_ap_handle ap, int order, int family, char** address) {
    return readIpv6(__func__, ap, family, address,
                    [&](const Ipv6Values& values) { return network::giveServer(values, order, address); });
}

int wifi_ap_get_dns_config_type(wifi_ap_handle ap, int family, int* type) {
    return readIpv6(__func__, ap, family, type,
                    [&](const Ipv6Values& values) { return network::giveDnsMode(values, type); });
}

int wifi_ap_set_ip_config_type(wifi_ap_handle ap, int family, int type) {
    return changeAp(__func__, ap, family, true,
                    [&](Ipv6Settings& changes) { return network::changeMode(changes, type); });
}

int wifi_ap_set_dns_config_type(wifi_ap_handle ap, int family, int type) {
    return changeAp(__func__, ap, family, true,
                    [&](Ipv6Settings& changes) { return network::changeDnsMode(changes, type); });
}

int wifi_ap_set_ip_address(wifi_ap_handle ap, int family, const char* address) {
    return changeAp(__func__, ap, family, address != nullptr,
                    [&](Ipv6Settings& changes) { return network::changeAddress(changes, address); });
}

int wifi_ap_set_prefix_length(wifi_ap_handle ap, uint8_t length) {
    return changeAp(__func__, ap, kOnlyFamily, true,
                    [&](Ipv6Settings& changes) { return network::changePrefixLength(changes, length); });
}

int wifi_ap_set_gateway_address(wifi_ap_handle ap, int family, const char* address) {
    return changeAp(__func__, ap, family, address != nullptr,
                    [&](Ipv6Settings& changes) { return network::changeGateway(changes, address); });
}

int wifi_ap_set_dns_address(wifi_ap_handle ap, int order, int family, const char* address) {
    return changeAp(__func__, ap, family, address != nullptr,
                    [&](Ipv6Settings& changes) { return network::changeServer(changes, order, address); });
}

int wifi_ap_check_gateway6_async(wifi_ap_handle ap, wifi_result_cb cb, void* user_data) {
    return apCall(__func__, ap, cb != nullptr, [&](const ApHandle& object) -> int {
        return network::startWifiRequest(ap, cb, user_data, [&](const network::Answer& answer, auto& question) {
            return backend()->askAccessPointGateway(object.id, answer, question);
        });
    });
}

int wifi_ap_unset_async_cb(wifi_ap_handle ap) {
    return apCall(__func__, ap, true, [&](const ApHandle& /*object*/) -> int {
        network::dropWifiRequests(ap);
        return kNone;
    });
}
