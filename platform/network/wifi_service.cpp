#include "wifi_service.h"

#include <array>
#include <utility>

namespace network {
namespace {

// The Wi-Fi manager has no number of its own for the last four.
constexpr auto kErrors = std::to_array<std::pair<int, int>>({
    {CONNECTION_ERROR_INVALID_GATEWAY, WIFI_ERROR_INVALID_GATEWAY},
    {CONNECTION_ERROR_OFFLINE, WIFI_ERROR_OFFLINE},
    {CONNECTION_ERROR_OPERATION_FAILED, WIFI_ERROR_OPERATION_FAILED},
    {CONNECTION_ERROR_NO_CONNECTION, WIFI_ERROR_NO_CONNECTION},
    {CONNECTION_ERROR_ALREADY_EXISTS, WIFI_ERROR_ALREADY_EXISTS},
    {CONNECTION_ERROR_OPERATION_ABORTED, WIFI_ERROR_OPERATION_ABORTED},
    {CONNECTION_ERROR_DHCP_FAILED, WIFI_ERROR_DHCP_FAILED},
    {CONNECTION_ERROR_INVALID_KEY, WIFI_ERROR_INVALID_KEY},
    {CONNECTION_ERROR_NO_REPLY, WIFI_ERROR_NO_REPLY},
    {CONNECTION_ERROR_ITERATOR_END, WIFI_ERROR_OPERATION_FAILED},
    {CONNECTION_ERROR_TCP_SYN_TIMEOUT, WIFI_ERROR_OPERATION_FAILED},
    {CONNECTION_ERROR_RST_IN_TCP_RESPONSE, WIFI_ERROR_OPERATION_FAILED},
    {CONNECTION_ERROR_NO_KEYWORD, WIFI_ERROR_OPERATION_FAILED},
});

}  // namespace

WifiService& wifiService() {
    // Never destroyed, as the connection manager's state is not.
    static WifiService& service = *new WifiService;
    return service;
}

int wifiError(int error) {
    for (const auto& [connection, wifi] : kErrors) {
        if (connection == error) return wifi;
    }
    return error;
}

void dropWifiRequests(const void* askedOn) {
    dropChecks(askedOn == nullptr ? static_cast<const void*>(&wifiService()) : askedOn);
}

void endWifiSession() {
    WifiService& service = wifiService();
    dropWifiRequests(nullptr);
    for (const void* handle : service.aps.handles())
        dropWifiRequests(handle);
    service.aps.removeIf([](const ApHandle& ap) { return !ap.isCallers; });
    service.found.clear();
    service.initialised = false;
}

void releaseWifi() {
    endWifiSession();
    wifiService().aps.removeIf([](const ApHandle&) { return true; });
}

}  // namespace network
