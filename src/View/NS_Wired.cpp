#include "View/NS_Wired.h"

#include <Elementary.h>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/MW_CAPI_Wired.h"
#include "View/NS_Buttons.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Parts.h"
#include "View/NS_Stage.h"
#include "View/NS_Verdict.h"

namespace {

constexpr int kLinkUp = 3;
constexpr int kCableOut = 0;
constexpr const char* kFailureMessage = "TV_SID_WIRED_NETWORK_CONNECTION_FAILED";

constinit unsigned char bcheck_gateway = 1;     // 1 until this run has asked for the gateway
constinit unsigned char bCheck_ip_address = 0;  // 1 once this run's address is valid
constinit int cable_check = -1;                 // 0 down; anything else counts as up

bool isCableOut(const sNetworkStatus& /*status*/, const sGlobalIPInfo& /*info*/) {
    return cable_check == kCableOut;
}

bool hasNoAddress(const sNetworkStatus& /*status*/, const sGlobalIPInfo& info) {
    return string_cmp(info.global_IP_ADDRESS, kNoAddress) == 0;
}

bool isRouterSilent(const sNetworkStatus& status) {
    return cable_check != kCableOut && status.connStatus->gatewayReachable == 0;
}

void replaceCancelButton(sNetworkStatus& status) {
    deleteObject(status.stopBtn);
    createNSCommonBtn(&status);
    reset_text(&status);
}

void showEmptyPanelWithoutSettings(sNetworkStatus& status) {
    setDefaultValGlobalIPInfo();
    _ShowIPInfoText(1);
    deleteObject(status.ipSettingsBtn);
}

void placeButtons(sNetworkStatus& status) {
    elm_object_part_content_set(status.layout, part::kSettingsButton, status.ipSettingsBtn);
    elm_object_part_content_set(status.layout, part::kRetryButton, status.retryBtn);
    elm_object_part_content_set(status.layout, part::kCloseButton, status.stopBtn);
}

void placePictureAndMessage(sNetworkStatus& status) {
    elm_object_part_content_set(status.layout, part::kStatusUnset, status.statusImage);
    showMessage(status, kFailureMessage);
}

// The toolkit also sets the way back, so DOWN needs its neighbour again.
void keepSettingsUp(const sNetworkStatus& status) {
    if (!status.ipSettingsBtn) return;
    elm_object_focus_next_object_set(status.ipSettingsBtn, status.ipSettingsBtn, ELM_FOCUS_UP);
    if (status.retryBtn) elm_object_focus_next_object_set(status.ipSettingsBtn, status.retryBtn, ELM_FOCUS_DOWN);
}

constexpr FailureCase kFailures[] = {
    {hasUnusableMac, "COM_INVALID_MAC_ADDRESS_CONTACT_CUSTOMER_SERVICE", showEmptyPanelWithoutSettings, nullptr},
    {isCableOut, "SID_VERIFY_LAN_CABLE_CONNECTED_MSG", placeButtons, keepSettingsUp},
    {hasNoAddress, kFailureMessage, nullptr, nullptr},
    {isGatewayReached, "SID_LOCAL_COMPLETED_NOT_CONNECT_INTERNET_MSG", placePictureAndMessage, nullptr},
    {anyOtherFailure, kFailureMessage, nullptr, nullptr},
};

constexpr NetworkVerdict kVerdict{
    .prepare = nullptr,
    .successMessageId = "TV_SID_WIRED_NW_INTERNET_SETUP_USE",
    .failureMessageId = kFailureMessage,
    .failurePicture = Set_Connection_Image,
    .showsErrorMark = isRouterSilent,
    .showName = nullptr,
    .makeButtons = replaceCancelButton,
    .failures = kFailures,
};

void after_loading_animation_expired(sNetworkStatus& status) {
    LOG_SCOPE();
    showVerdict(status, kVerdict);
}

void endInternetStageOnCableOut(sNetworkStatus& status) {
    if (cable_check == kCableOut) status.connStatus->internetCheckDone = 1;
}

Eina_Bool connectivity_to_internet_wired(void* data) {
    LOG_SCOPE();
    return tickInternetStage(*static_cast<sNetworkStatus*>(data), endInternetStageOnCableOut,
                             after_loading_animation_expired);
}

void readAddresses() {
    refreshEthernetProfile();
    get_wired_ip_info(profile_handle1);
}

// Reads the address and judges it. False when there is no record to read it into.
bool checkAddress() {
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("Wired Connnection - sGlobalIPInfo Object is NULL\n\n");
        return false;
    }
    readAddresses();
    if (ipv6Address_validation(info->global_IP_ADDRESS)) {
        bCheck_ip_address = 1;
        return true;
    }
    giveUpGateway();
    LOG_DEBUG("Wired Connnection Failed - INVALID IP [%s]!!\n\n", info->global_IP_ADDRESS);
    return true;
}

void askGatewayOnce() {
    const bool usable = Get_Ethernet_State();
    LOG_DEBUG("Ethernet_State  = %d bcheck_gateway [%d]bCheck_ip_address[%d]\n\n", usable, bcheck_gateway,
              bCheck_ip_address);
    if (!usable || bcheck_gateway != 1 || bCheck_ip_address != 1) return;
    check_gateway_wired(usable);
    bcheck_gateway = 0;
}

// One pass of the checking frame; the first one of a run only animates. False when the run cannot go on.
bool passCheckingFrame(sNetworkStatus& /*status*/) {
    Net_Set_Conn_Tv_Image_No = 0;
    LOG_DEBUG("Wired Connnection -loading[%d]\n\n", loading);
    if (loading == 0) {
        loading = 1;
        return true;
    }
    if (bCheck_ip_address == 0 && !checkAddress()) return false;
    askGatewayOnce();
    return true;
}

void endStageOne(sNetworkStatus& status) {
    readAddresses();
    if (status.connStatus->gatewayReachable == 1) {
        enterInternetStage(status, internet_status_of_wired, connectivity_to_internet_wired);
        return;
    }
    endRun(status, kFrameAfterStageOne);
    after_loading_animation_expired(status);
}

void endStageOnCableOut() {
    if (cable_check == kCableOut) thread_flag = 0;
}

Eina_Bool load_connecting_animation_wired(void* data) {
    LOG_SCOPE();
    return tickStageOne(*static_cast<sNetworkStatus*>(data), passCheckingFrame, endStageOnCableOut, endStageOne);
}

}  // namespace

int wired_animation(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return 0;
    thread_flag = 1;
    status->connStatus->networkKind = kNetworkWired;
    deleteObject(status->animationImage);
    status->animationImage = elm_image_add(status->win);
    set_vconf_default_keys();
    clearTimer(kStageSlot);
    refreshEthernetProfile();
    bcheck_gateway = 1;
    bCheck_ip_address = 0;
    loading = 0;
    armStage(load_connecting_animation_wired, *status);
    return 0;
}

void Set_Connection_Image(const sNetworkStatus* status, std::span<char> path) {
    LOG_SCOPE();
    if (!status) {
        LOG_DEBUG("sNetworkStatus object is NULL - Exiting\n\n");
        return;
    }
    const char* reached = status->connStatus->gatewayReachable == 1 ? kNoInternetPicture : kNoGatewayPicture;
    imagePath(path, cable_check == kCableOut ? kNoCablePicture : reached);
}

bool check_wired(int linkState) {
    LOG_SCOPE();
    cable_check = linkState == kLinkUp ? 1 : kCableOut;
    LOG_DEBUG("cable_check = %d\n \n", cable_check);
    return linkState == kLinkUp;
}
