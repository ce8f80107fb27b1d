#include "View/NS_Verdict.h"

#include <Elementary.h>

#include <array>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Text.h"
#include "View/NS_Buttons.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Parts.h"
#include "View/NS_Run_Control.h"
#include "View/NS_Stage.h"

namespace {

constexpr const char* kSuccessAdviceId = "TV_SID_CONNECTED_INTEERNET_CONTACT_SERVICE_PROVIDER_MSG";
constexpr const char* kUnknownPrefix = "129";
constexpr const char* kUnusableMacs[] = {"00:00:00:00:00:00", "FF:FF:FF:FF:FF:FF"};

// MAC and addresses to their defaults when the MAC could not be read at all.
void fillMissingMac(sGlobalIPInfo& info) {
    if (info.global_MAC_ADDRESS[0] != '\0') return;
    copyText(info.global_MAC_ADDRESS, kDefaultMac);
    setDefaultValGlobalIPInfo();
}

// One text for "no address" and for "no prefix length", whatever the platform said.
void normalise(sGlobalIPInfo& info) {
    for (const std::span<char> address : {std::span<char>(info.global_IP_ADDRESS), std::span<char>(info.global_GATEWAY),
                                          std::span<char>(info.global_DNS)}) {
        if (string_cmp(address.data(), default_addr_IPv6) == 0) copyText(address, kNoAddress);
    }
    if (string_cmp(info.global_PREFIX_LENGTH, kUnknownPrefix) == 0) copyText(info.global_PREFIX_LENGTH, kNoPrefix);
}

void setInternetStatusOnline(sNetworkStatus& status, const NetworkVerdict& verdict) {
    LOG_SCOPE();
    showPicture(status.statusImage, kSuccessPicture);
    elm_object_part_content_set(status.layout, part::kStatus, status.statusImage);
    showMessage(status, verdict.successMessageId);
    reset_text(&status);
    showAdvice(status, kSuccessAdviceId);
    deleteObject(status.stopBtn);
    createNSCommonBtn(&status);
    focusResultRow(status);
}

void showFailurePictures(sNetworkStatus& status, const NetworkVerdict& verdict) {
    std::array<char, kImagePathWidth> path{};
    verdict.failurePicture(&status, path);
    showPictureFile(status.statusImage, path.data(), "connecting_image_4");
    elm_object_part_content_set(status.layout, part::kStatusUnset, status.statusImage);
    showPicture(status.failImage, kErrorMarkPicture);
    if (verdict.showsErrorMark(status)) {
        elm_object_part_content_set(status.layout, part::kStatusFail, status.failImage);
    }
    elm_object_part_content_set(status.layout, part::kSignalStrengthUnset, status.signalImage);
    elm_object_part_text_set(status.layout, part::kSsid, "");
}

const FailureCase& firstThatHolds(const NetworkVerdict& verdict, const sNetworkStatus& status,
                                  const sGlobalIPInfo& info) {
    for (const FailureCase& failure : verdict.failures) {
        if (failure.holds(status, info)) return failure;
    }
    return verdict.failures.back();
}

void showFailure(sNetworkStatus& status, const NetworkVerdict& verdict) {
    sGlobalIPInfo* info = createGlobalIPInfo();
    if (!info) {
        LOG_DEBUG("sGlobalIPInfo Object is NULL\n\n");
        return;
    }
    fillMissingMac(*info);
    normalise(*info);
    showFailurePictures(status, verdict);
    if (verdict.showName) verdict.showName(status, *info);
    showMessage(status, verdict.failureMessageId);
    _ShowIPInfoText(1);
    verdict.makeButtons(status);
    const FailureCase& failure = firstThatHolds(verdict, status, *info);
    if (failure.dress) failure.dress(status);
    showAdvice(status, failure.adviceId);
    focusResultRow(status);
    if (failure.relink) failure.relink(status);
}

}  // namespace

void showVerdict(sNetworkStatus& status, const NetworkVerdict& verdict) {
    deleteObject(status.failImage);
    status.failImage = addImage(status.layout);
    if (verdict.prepare) verdict.prepare();
    reset_text(&status);
    stopLoadingAnimation();
    if (status.connStatus->gatewayReachable == 1 && status.connStatus->internetOnline == 1) {
        setInternetStatusOnline(status, verdict);
    } else {
        showFailure(status, verdict);
    }
}

bool hasUnusableMac(const sNetworkStatus& /*status*/, const sGlobalIPInfo& info) {
    for (const char* mac : kUnusableMacs) {
        if (string_cmp(info.global_MAC_ADDRESS, mac) == 0) return true;
    }
    return false;
}

bool isGatewayReached(const sNetworkStatus& status, const sGlobalIPInfo& /*info*/) {
    return status.connStatus->gatewayReachable == 1;
}

bool anyOtherFailure(const sNetworkStatus& /*status*/, const sGlobalIPInfo& /*info*/) {
    return true;
}

void showMessage(const sNetworkStatus& status, const char* textId) {
    elm_object_part_text_set(status.layout, part::kMessage, localised(textId));
}

void showAdvice(const sNetworkStatus& status, const char* textId) {
    elm_object_part_text_set(status.layout, part::kAdvice, localised(textId));
}
