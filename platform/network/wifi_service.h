// What the Wi-Fi manager's C functions share: its state, its handles, and its own error numbers.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "connection_service.h"
#include "wifi_manager.h"

namespace network {

struct ApHandle {
    std::string id;
    bool isCallers = false;  // a clone or a connected access point's handle
    std::string passphrase;  // for the next connection; never logged
};

struct WifiService {
    bool initialised = false;
    std::uint64_t session = 0;  // counts the initialisations
    HandleTable<ApHandle> aps;
    std::map<std::string, wifi_ap_handle> found;  // one handle for each identity, until the manager is released
};

WifiService& wifiService();

// The Wi-Fi manager's number for an error of the connection table; its own numbers stay as they are.
int wifiError(int error);

// Drops the pending requests, of one handle or, without one, of the manager itself.
void dropWifiRequests(const void* askedOn);
// Drops every request and the service's own handles, and counts as not initialised. Handles that are the caller's stay
// known, so that they can still be destroyed.
void endWifiSession();
// The same for a network that goes away; the caller's handles end too.
void releaseWifi();

// One boundary call of an initialised manager. `argumentsGiven` is false when a pointer is null.
template <typename Body>
int wifiCall(std::string_view function, bool argumentsGiven, Body body) {
    return wifiError(boundaryCall(function, [&]() -> int {
        if (!argumentsGiven) return CONNECTION_ERROR_INVALID_PARAMETER;
        if (!wifiService().initialised || backend() == nullptr) return CONNECTION_ERROR_INVALID_OPERATION;
        return body();
    }));
}

// As above for a call on an access point's handle.
template <typename Body>
int apCall(std::string_view function, wifi_ap_handle ap, bool argumentsGiven, Body body) {
    return wifiCall(function, ap != nullptr && argumentsGiven, [&]() -> int {
        ApHandle* object = wifiService().aps.find(ap);
        return object == nullptr ? CONNECTION_ERROR_INVALID_OPERATION : body(*object);
    });
}

// Asks the backend through `ask(answer, question)`; the caller hears the Wi-Fi manager's number. Without a handle the
// request is the manager's own.
template <typename Ask>
int startWifiRequest(void* askedOn, wifi_result_cb function, void* userData, Ask ask) {
    void* owner = askedOn == nullptr ? &wifiService() : askedOn;
    return startCheck(owner, function, userData, [&](const Answer& answer, std::unique_ptr<Question>& question) {
        return ask([answer](int result) { answer(wifiError(result)); }, question);
    });
}

}  // namespace network
