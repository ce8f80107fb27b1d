// Wi-Fi manager: the radio, the walk over its access points, and connections.
#include <string>
#include <vector>

#include "wifi_service.h"

namespace {

using network::Answer;
using network::apCall;
using network::ApHandle;
using network::backend;
using network::wifiCall;
using network::wifiService;

constexpr int kNone = CONNECTION_ERROR_NONE;

// The service's own handle of a found access point: the same one in each walk.
wifi_ap_handle foundHandle(const std::string& id) {
    wifi_ap_handle& handle = wifiService().found[id];
    if (handle == nullptr) handle = wifiService().aps.add({id, false, {}});
    return handle;
}

}  // namespace

int wifi_initialize(void) {
    return network::wifiError(network::boundaryCall(__func__, []() -> int {
        if (wifiService().initialised || backend() == nullptr) return CONNECTION_ERROR_INVALID_OPERATION;
        wifiService().initialised = true;
        ++wifiService().session;
        return kNone;
    }));
}

int wifi_deinitialize(void) {
    return wifiCall(__func__, true, []() -> int {
        network::endWifiSession();
        return kNone;
    });
}

int wifi_is_activated(bool* activated) {
    return wifiCall(__func__, activated != nullptr, [&] { return backend()->wifiActivated(*activated); });
}

int wifi_get_mac_address(char** mac) {
    return wifiCall(__func__, mac != nullptr, [&]() -> int {
        std::string text;
        const int error = backend()->macAddress(CONNECTION_TYPE_WIFI, text);
        return error == kNone ? network::copyText(text, mac) : error;
    });
}

// The callback may call anything, so every step asks anew whether this is still the manager that the walk began with.
int wifi_foreach_found_aps(wifi_found_ap_cb cb, void* user_data) {
    return wifiCall(__func__, cb != nullptr, [&]() -> int {
        std::vector<std::string> ids;
        if (const int error = backend()->accessPoints(ids); error != kNone) return error;
        const std::uint64_t session = wifiService().session;
        for (const std::string& id : ids) {
            if (!cb(foundHandle(id), user_data)) break;
            if (!wifiService().initialised || wifiService().session != session) break;
        }
        return kNone;
    });
}

int wifi_get_connected_ap(wifi_ap_handle* ap) {
    return wifiCall(__func__, ap != nullptr, [&]() -> int {
        std::string id;
        const int error = backend()->connectedAccessPoint(id);
        if (error == kNone) *ap = wifiService().aps.add({id, true, {}});
        return error;
    });
}

int wifi_connect(wifi_ap_handle ap, wifi_result_cb cb, void* user_data) {
    return apCall(__func__, ap, cb != nullptr, [&](const ApHandle& object) -> int {
        return network::startWifiRequest(ap, cb, user_data, [&](const Answer& answer, auto& question) {
            return backend()->connectAccessPoint(object.id, object.passphrase, answer, question);
        });
    });
}

int wifi_disconnect(wifi_ap_handle ap, wifi_result_cb cb, void* user_data) {
    return apCall(__func__, ap, cb != nullptr, [&](const ApHandle& object) -> int {
        return network::startWifiRequest(ap, cb, user_data, [&](const Answer& answer, auto& question) {
            return backend()->disconnectAccessPoint(object.id, answer, question);
        });
    });
}

int wifi_scan(wifi_result_cb cb, void* user_data) {
    return wifiCall(__func__, cb != nullptr, [&] {
        return network::startWifiRequest(nullptr, cb, user_data, [](const Answer& answer, auto& question) {
            return backend()->scan(answer, question);
        });
    });
}

int wifi_get_is_online_ipv6_async(wifi_result_cb cb, void* user_data) {
    return wifiCall(__func__, cb != nullptr, [&] {
        return network::startWifiRequest(nullptr, cb, user_data, [](const Answer& answer, auto& question) {
            return backend()->askWifiOnline(answer, question);
        });
    });
}
