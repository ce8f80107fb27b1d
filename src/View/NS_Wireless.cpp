#include "View/NS_Wireless.h"

#include <Elementary.h>

#include <array>
#include <memory>
#include <new>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Outside_Text.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/Connected_Ap.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "View/NS_Buttons.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Parts.h"
#include "View/NS_Stage.h"
#include "View/NS_Verdict.h"

namespace {

constexpr int kPassesWithoutCheck = 2;
constexpr const char* kFailureMessage = "TV_SID_WIRELESS_NETWORK_CONNECTION_FAILED";

constinit unsigned char bCheck_ip_address = 0;  // 1 once this run's address is valid

bool isRouterSilent(const sNetworkStatus& status) {
    return status.connStatus->gatewayReachable == 0;
}

void showNetworkName(const sNetworkStatus& status, const sGlobalIPInfo& info) {
    setOutsideText(status.layout, part::kSsidUnset, info.global_SSID_NAME);
}

void keepCloseAndRetry(sNetworkStatus& status) {
    turnCancelIntoClose(status);
    addRetryButton(status);
}

void dropSettingsButton(sNetworkStatus& status) {
    deleteObject(status.ipSettingsBtn);
}

void dressNoInternet(sNetworkStatus& status) {
    LOG_DEBUG("++++ Connected With AP but Not Connected With Internet ++++ \n");
    elm_object_part_content_set(status.layout, part::kStatusUnset, status.statusImage);
    showMessage(status, kFailureMessage);
    addSettingsButton(status);
}

void dressNoRouter(sNetworkStatus& status) {
    LOG_DEBUG("++++ Not Connected With AP  ++++ \n");
    addSettingsButton(status);
}

constexpr FailureCase kFailures[] = {
    {hasUnusableMac, "COM_INVALID_MAC_ADDRESS_CONTACT_CUSTOMER_SERVICE", dropSettingsButton, nullptr},
    {isGatewayReached, "SID_LOCAL_COMPLETED_NOT_CONNECT_INTERNET_MSG", dressNoInternet, nullptr},
    {anyOtherFailure, "TV_SID_NOT_CONNECT_TO_ROUTER_TRY_MSG", dressNoRouter, nullptr},
};

constexpr NetworkVerdict kVerdict{
    .prepare = Get_Mac_Address,
    .successMessageId = "COM_WIRELESS_NETWORK_AND_INTERNET_READY_MSG",
    .failureMessageId = kFailureMessage,
    .failurePicture = Set_Connection_Image_Wireless,
    .showsErrorMark = isRouterSilent,
    .showName = showNetworkName,
    .makeButtons = keepCloseAndRetry,
    .failures = kFailures,
};

void after_load_connecting_animation_wireless(sNetworkStatus& status) {
    LOG_SCOPE();
    showVerdict(status, kVerdict);
}

Eina_Bool ap_connectivity_to_internet(void* data) {
    LOG_SCOPE();
    return tickInternetStage(*static_cast<sNetworkStatus*>(data), nullptr, after_load_connecting_animation_wireless);
}

void readAddresses() {
    if (const sGlobalIPInfo* info = createGlobalIPInfo()) get_ap_info(info->global_SSID_NAME);
}

// Reads the address and judges it. False when there is no record to read it into.
bool checkAddress() {
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("Wireless Connection Failed - sGlobalIPInfo Object is NULL\n\n");
        return false;
    }
    readAddresses();
    if (ipv6Address_validation(info->global_IP_ADDRESS)) {
        bCheck_ip_address = 1;
        return true;
    }
    giveUpGateway();
    LOG_DEBUG("Wireless Connection Failed - Invalid IP[%s]!!\n\n", info->global_IP_ADDRESS);
    return true;
}

// One pass of the checking frame; the first two of a run only animate. False when the run cannot go on.
bool passCheckingFrame(sNetworkStatus& status) {
    Net_Set_Conn_Tv_Image_No = 0;
    if (loading != kPassesWithoutCheck) {
        ++loading;
        return true;
    }
    if (bCheck_ip_address == 0 && !checkAddress()) return false;
    if (bCheck_ip_address == 1) check_gateway_wireless(&status);
    if (!Is_Connected_AP()) thread_flag = 0;
    return true;
}

void endStageOne(sNetworkStatus& status) {
    readAddresses();
    if (status.connStatus->gatewayReachable == 1) {
        enterInternetStage(status, internet_status_of_ap, ap_connectivity_to_internet);
        return;
    }
    endRun(status, kFrameAfterStageOne);
    after_load_connecting_animation_wireless(status);
}

Eina_Bool load_connecting_animation_wireless(void* data) {
    LOG_SCOPE();
    return tickStageOne(*static_cast<sNetworkStatus*>(data), passCheckingFrame, nullptr, endStageOne);
}

// A reconnection is wanted when the menu asked for it and the TV has lost its network.
bool isReconnectionWanted() {
    const PlatformText stopFlag = readStore(kStopFlagKey);
    if (!stopFlag) {
        LOG_DEBUG("VCONFKEY_NETWORK_IS_STOP key not available = %s\n\n", kStopFlagKey);
        return false;
    }
    if (string_cmp(stopFlag.get(), "TRUE") != 0) return false;
    LOG_DEBUG("------ Stop Btn Pressed From Network Setting  ----- \n\n");
    return !Is_Connected_AP();
}

// Asks for the stored network. False when the store or memory does not allow it.
bool reconnect() {
    const PlatformText name = readStore(kApNameKey);
    if (!name) {
        LOG_DEBUG("ap_name is NULL\n\n");
        return false;
    }
    const PlatformText passphrase = readStore(kApPassKey);
    if (!passphrase) {
        LOG_DEBUG("ap_pass is NULL \n\n");
        return false;
    }
    LOG_DEBUG("ap_name  = %s\n\n", name.get());
    const std::unique_ptr<sAPConnectData> request(new (std::nothrow) sAPConnectData{});
    if (!request) {
        LOG_DEBUG("Connection Flag Memory Failed !!!!\n");
        return false;
    }
    copyText(request->apName, name.get());
    copyText(request->apPass, passphrase.get());
    Connect_With_AP(request.get());
    return true;
}

int requestGatewayCheck(wifi_ap_handle ap) {
    return wifi_ap_check_gateway6_async(ap, check_gateway_async_callback, nullptr);
}

// Both complaints come at the first refusal for want of a connection, one of them at any other.
void logRefusal(int result, bool retried) {
    const char* name = convertWifiErrorToString(result);
    const bool noConnection = result == WIFI_ERROR_NO_CONNECTION;
    if (noConnection) LOG_DEBUG("NO Connection to Gateway %s\n\n", name);
    if (!noConnection || !retried) LOG_DEBUG("check gateway operation failed %s\n\n", name);
}

struct SignalLevel {
    int strongest;  // dBm
    const char* open;
    const char* secured;
};
constexpr std::array kSignalLevels{
    SignalLevel{-89, "obe_icon_wifi_1.png", "obe_icon_wifi_lock_1.png"},
    SignalLevel{-83, "obe_icon_wifi_2.png", "obe_icon_wifi_lock_2.png"},
    SignalLevel{-75, "obe_icon_wifi_3.png", "obe_icon_wifi_lock_3.png"},
    SignalLevel{-64, "obe_icon_wifi_4.png", "obe_icon_wifi_lock_4.png"},
};
constexpr SignalLevel kStrongestLevel{0, "obe_icon_wifi_5.png", "obe_icon_wifi_lock_5.png"};

const SignalLevel& signalLevel(int rssi) {
    for (const SignalLevel& level : kSignalLevels) {
        if (rssi <= level.strongest) return level;
    }
    return kStrongestLevel;
}

}  // namespace

void wireless_animation(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return;
    status->connStatus->networkKind = kNetworkWireless;
    deleteObject(status->animationImage);
    status->animationImage = elm_image_add(status->layout);
    status->connStatus->internetOnline = 0;
    thread_flag = 1;
    set_vconf_default_keys();
    if (isReconnectionWanted() && !reconnect()) return;
    bCheck_ip_address = 0;
    loading = 0;
    armStage(load_connecting_animation_wireless, *status);
}

void Set_Connection_Image_Wireless(const sNetworkStatus* status, std::span<char> path) {
    LOG_SCOPE();
    if (!status) {
        LOG_DEBUG("sNetworkStatus object is NULL - Exiting\n\n");
        return;
    }
    imagePath(path, status->connStatus->gatewayReachable == 1 ? kNoInternetPicture : kNoGatewayPicture);
}

void check_gateway_wireless(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return;
    ConnectedAp ap;
    int result = fetchConnectedAp(ap);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get connected AP %s\n\n", convertWifiErrorToString(result));
        giveUpGateway();
        return;
    }
    if (!ap) return;
    result = requestGatewayCheck(ap.get());
    const bool retried = result == WIFI_ERROR_OPERATION_FAILED;
    if (retried) {
        if (wifi_ap_unset_async_cb(ap.get()) != WIFI_ERROR_NONE) LOG_DEBUG(" wifi_ap_unset_async_cb Failed!!   \n\n");
        result = requestGatewayCheck(ap.get());
    }
    if (result == WIFI_ERROR_NONE) {
        LOG_DEBUG("Async check gateway request success Error = %s\n\n", convertWifiErrorToString(result));
        keepUntilAnswered(ap.release());
        return;
    }
    logRefusal(result, retried);
    giveUpGateway();
}

const char* signalPicture(char security, int rssi) {
    const SignalLevel& level = signalLevel(rssi);
    return security == kSecuredNetwork ? level.secured : level.open;
}

void load_signal_strength(char security, int rssi) {
    LOG_SCOPE();
    const sNetworkStatus* status = createNetworkStatus();
    if (!status || !status->signalImage) return;
    const bool shown = showPicture(status->signalImage, signalPicture(security, rssi));
    LOG_DEBUG("%s\n\n", shown ? "Success to set image file set" : "failed to set image file set");
    elm_object_part_content_set(status->layout, part::kSignalStrength, status->signalImage);
    evas_object_show(status->signalImage);
}

void Check_Connected_AP_Name(const char* storedName) {
    LOG_SCOPE();
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) return;
    ConnectedAp ap;
    int result = fetchConnectedAp(ap);
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get connected AP [%s]\n\n", convertWifiErrorToString(result));
        copyTextOrEmpty(info->global_SSID_NAME, storedName);
        return;
    }
    PlatformText name;
    result = fetchText(name, wifi_ap_get_essid, ap.get());
    if (result != WIFI_ERROR_NONE) {
        LOG_DEBUG("Fail to get essid [%s]\n\n", convertWifiErrorToString(result));
        copyTextOrEmpty(info->global_SSID_NAME, storedName);
        return;
    }
    copyTextOrEmpty(info->global_SSID_NAME, name.get());
}
