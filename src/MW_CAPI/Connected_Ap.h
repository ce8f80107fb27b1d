// A connected access point's handle that is released with its owner.
#pragma once

#include <memory>

#include "wifi_manager.h"

struct ReleaseAp {
    void operator()(void* ap) const { wifi_ap_destroy(ap); }
};
using ConnectedAp = std::unique_ptr<void, ReleaseAp>;

// The manager's result; `ap` is filled on success only.
inline int fetchConnectedAp(ConnectedAp& ap) {
    wifi_ap_handle handle = nullptr;
    const int result = wifi_get_connected_ap(&handle);
    ap.reset(result == WIFI_ERROR_NONE ? handle : nullptr);
    return result;
}
