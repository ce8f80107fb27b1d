#include "View/NS_Networks.h"

#include <Elementary.h>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/MW_CAPI_Wired.h"
#include "View/NS_Verdict.h"
#include "View/NS_Wired.h"

namespace {

constexpr const char* kWiredProgressId = "COM_TV_SID_VERIFYING_WIRED_NETWORK_CONNECTION";

void openWired(sNetworkStatus& status) {
    register_client();
    check_lan_cable();
    refreshEthernetProfile();
    get_wired_ip_info(profile_handle1);
    wired_animation(&status);
    showMessage(status, kWiredProgressId);
}

void checkWired(sNetworkStatus& status) {
    Net_Set_Conn_Tv_Image_No = 1;
    wired_animation(&status);
    showMessage(status, kWiredProgressId);
}

void releaseWired(sNetworkStatus& /*status*/) {
    deregister_client();
}

void sayWirelessIsMissing(sNetworkStatus& /*status*/) {
    LOG_ERROR("The check of a wireless connection is not available yet: no check is started\n");
}

void releaseWireless(sNetworkStatus& status) {
    const int result = connection_destroy(status.connection);
    if (result != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("connection_destroy fail %s\n\n", convertWiredErrorToString(result));
    } else {
        LOG_DEBUG("connection_destroy = %s\n\n", convertWiredErrorToString(result));
    }
}

constexpr NetworkKind kNetworkKinds[] = {
    {"Wired", false, openWired, checkWired, releaseWired},
    {"Wireless", true, sayWirelessIsMissing, sayWirelessIsMissing, releaseWireless},
};

}  // namespace

const NetworkKind* networkKindOf(const char* storedName) {
    for (const NetworkKind& kind : kNetworkKinds) {
        if (string_cmp(storedName, kind.storedName) == 0) return &kind;
    }
    return nullptr;
}

const NetworkKind* storedNetworkKind() {
    return networkKindOf(readStore(kNetworkTypeKey).get());
}
