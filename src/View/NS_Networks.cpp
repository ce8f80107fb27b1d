#include "View/NS_Networks.h"

#include <Elementary.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Outside_Text.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/MW_CAPI_Wired.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Parts.h"
#include "View/NS_Stage.h"
#include "View/NS_Verdict.h"
#include "View/NS_Wired.h"
#include "View/NS_Wireless.h"

namespace {

constexpr const char* kWiredProgressId = "COM_TV_SID_VERIFYING_WIRED_NETWORK_CONNECTION";
constexpr const char* kWirelessProgressId = "COM_TV_SID_VERIFYING_WIRELESS_NETWORK_CONNECTION";
constexpr int kNameLengthMessage = 2;

constinit const NetworkKind* opened = nullptr;

void openWired(sNetworkStatus& status) {
    register_client();
    check_lan_cable();
    refreshEthernetProfile();
    get_wired_ip_info(profile_handle1);
    wired_animation(&status);
    showMessage(status, kWiredProgressId);
}

void checkWired(sNetworkStatus& status) {
    Net_Set_Conn_Tv_Image_No = kFirstFrame;
    wired_animation(&status);
    showMessage(status, kWiredProgressId);
}

void releaseWired(sNetworkStatus& /*status*/) {
    deregister_client();
}

void showCancelledWired(sNetworkStatus& status) {
    refreshEthernetProfile();
    get_wired_ip_info(profile_handle1);
    _ShowIPInfoText(1);
    showAdvice(status, "COM_WIRED_NETWORK_CONNECTION_CHECK_CANCELED");
}

// The layout makes room for the name by its length in bytes.
void sendNameLength(const sNetworkStatus& status, const char* name) {
    Edje_Message_Int_Set message{1, {static_cast<int>(std::strlen(name))}};
    edje_object_message_send(elm_layout_edje_get(status.layout), EDJE_MESSAGE_INT_SET, kNameLengthMessage, &message);
}

// Shows the network's name and reads its access point.
void showConnectedNetwork(const sNetworkStatus& status) {
    const sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        sendNameLength(status, "");
        return;
    }
    setOutsideText(status.layout, part::kSsid, info->global_SSID_NAME);
    get_ap_info(info->global_SSID_NAME);
    sendNameLength(status, info->global_SSID_NAME);
}

void openWireless(sNetworkStatus& status) {
    status.signalImage = addImage(status.layout);
    wifi_init();
    Check_Connected_AP_Name(readStore(kApNameKey).get());
    showMessage(status, kWirelessProgressId);
    if (connection_create(&status.connection) == CONNECTION_ERROR_NONE) {
        LOG_DEBUG("Connection created successfully in case of wireless\n\n");
    }
    showConnectedNetwork(status);
    load_signal_strength(wifi_security_type, strength_signal);
    wireless_animation(&status);
}

void checkWireless(sNetworkStatus& status) {
    elm_object_part_text_set(status.layout, part::kSsidUnset, "");
    showMessage(status, kWirelessProgressId);
    Evas_Object* signal = elm_object_part_content_unset(status.layout, part::kSignalStrengthUnset);
    if (signal) evas_object_hide(signal);
    load_signal_strength(wifi_security_type, strength_signal);
    Net_Set_Conn_Tv_Image_No = kFirstFrame;
    status.connStatus->internetCheckDone = 0;
    status.connStatus->gatewayReachable = 0;
    showConnectedNetwork(status);
    wireless_animation(&status);
}

void showCancelledWireless(sNetworkStatus& status) {
    if (const sGlobalIPInfo* info = createGlobalIPInfo()) {
        Get_Mac_Address();
        get_ap_info(info->global_SSID_NAME);
        setOutsideText(status.layout, part::kSsidUnset, info->global_SSID_NAME);
    }
    _ShowIPInfoText(1);
    showAdvice(status, "COM_WIRELESS_NETWORK_CONNECTION_CHECK_CANCELED");
    elm_object_part_content_set(status.layout, part::kSignalStrengthUnset, status.signalImage);
    elm_object_part_text_set(status.layout, part::kSsid, "");
}

void releaseWireless(sNetworkStatus& status) {
    const int result = connection_destroy(status.connection);
    if (result != CONNECTION_ERROR_NONE) {
        LOG_DEBUG("connection_destroy fail %s\n\n", convertWiredErrorToString(result));
    } else {
        LOG_DEBUG("connection_destroy = %s\n\n", convertWiredErrorToString(result));
    }
    wlan_manager_deregister_cbs();
}

constexpr NetworkKind kNetworkKinds[] = {
    {"Wired", kNetworkWired, false, openWired, checkWired, showCancelledWired, releaseWired},
    {"Wireless", kNetworkWireless, true, openWireless, checkWireless, showCancelledWireless, releaseWireless},
};

}  // namespace

const NetworkKind* networkKindOf(const char* storedName) {
    for (const NetworkKind& kind : kNetworkKinds) {
        if (string_cmp(storedName, kind.storedName) == 0) return &kind;
    }
    return nullptr;
}

const NetworkKind& networkKindOf(int number) {
    const auto* found = std::ranges::find(kNetworkKinds, number, &NetworkKind::number);
    return found == std::end(kNetworkKinds) ? *std::prev(std::end(kNetworkKinds)) : *found;
}

void openNetwork(const NetworkKind& kind, sNetworkStatus& status) {
    opened = &kind;
    kind.open(status);
}

void releaseNetwork(sNetworkStatus& status, const char* storedName) {
    const NetworkKind* kind = networkKindOf(storedName);
    if (!kind) LOG_DEBUG("Wrong Connection Type\n");
    if (kind) kind->release(status);
    if (opened && opened != kind) opened->release(status);
    opened = nullptr;
}

const NetworkKind* storedNetworkKind() {
    return networkKindOf(readStore(kNetworkTypeKey).get());
}
