#include "View/NS_Run_Control.h"

#include <Elementary.h>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "MW_CAPI/Capi_IPSetting.h"
#include "View/IPSingleton.h"
#include "View/NS_Buttons.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Main.h"
#include "View/NS_Networks.h"
#include "View/NS_Parts.h"
#include "View/NS_Stage.h"
#include "View/NS_Verdict.h"

namespace {

constexpr const char* kPopupStyle = "C_PopupBasic_WhiteBottomLarge";
constexpr const char* kEmptiedPopupStyle = "default";

constinit Evas_Object* m_loader = nullptr;

void forgetLoader(void* /*data*/, Evas* /*canvas*/, Evas_Object* object, void* /*event*/) {
    if (m_loader == object) m_loader = nullptr;
}

void takeContentOut(const sNetworkStatus& status, const char* part) {
    Evas_Object* content = elm_object_part_content_unset(status.layout, part);
    if (content) evas_object_hide(content);
}

void clearMessages(const sNetworkStatus& status) {
    elm_object_part_text_set(status.layout, part::kMessage, "");
    elm_object_part_text_set(status.layout, part::kAdvice, "");
}

// Starts the check of the stored kind of network and offers to cancel it.
void reset_function(sNetworkStatus& status) {
    LOG_SCOPE();
    if (const NetworkKind* kind = storedNetworkKind()) kind->check(status);
    showCancelButton(status);
}

void redraw_function(sNetworkStatus& status) {
    LOG_SCOPE();
    applyDisplayMode(status);
    status.connStatus->gatewayReachable = 0;
    _ShowIPInfoText(0);
    reset_text(&status);
    clearMessages(status);
    startLoadingAnimation();
    reset_function(status);
}

// Empties the status layout. Its buttons are gone, so the layout takes the focus and with it the close keys.
void hidePopUp(sNetworkStatus& status) {
    LOG_SCOPE();
    const NetworkKind* kind = storedNetworkKind();
    for (Evas_Object** field : {&status.stopBtn, &status.retryBtn, &status.ipSettingsBtn, &status.statusImage,
                                &status.failImage, &status.internetFailImage}) {
        deleteObject(*field);
    }
    if (kind && kind->showsSignal) deleteObject(status.signalImage);
    elm_layout_file_set(status.layout, kLayoutFile, "");
    elm_object_style_set(status.popup, kEmptiedPopupStyle);
    evas_object_show(status.layout);
    focusStopButton(status);
}

void showPopUp(sNetworkStatus& status) {
    LOG_SCOPE();
    const NetworkKind* kind = storedNetworkKind();
    loadStatusLayout(status);
    showTitle(status);
    elm_object_style_set(status.popup, kPopupStyle);
    takeContentOut(status, part::kStatus);
    takeContentOut(status, part::kStatusUnset);
    status.statusImage = addImage(status.layout);
    if (kind && kind->showsSignal) status.signalImage = addImage(status.layout);
    showPicture(status.statusImage, kCheckStartedPicture);
    elm_object_part_content_set(status.layout, part::kStatus, status.statusImage);
    elm_object_focus_allow_set(status.layout, EINA_TRUE);
}

void returnFromSettings(void* data) {
    auto* status = static_cast<sNetworkStatus*>(data);
    if (!status) return;
    showPopUp(*status);
    redraw_function(*status);
}

void OkBtnCB(void* data, const sglobalIPValues* /*values*/) {
    LOG_SCOPE();
    returnFromSettings(data);
}

void CancelBtnCB(void* data) {
    LOG_SCOPE();
    returnFromSettings(data);
}

void showCancelledPicture(sNetworkStatus& status) {
    const bool reached = status.connStatus->gatewayReachable == 1;
    showPicture(status.statusImage, reached ? kNoInternetPicture : kNoGatewayPicture);
    elm_object_part_content_set(status.layout, part::kStatusUnset, status.statusImage);
    elm_object_part_content_set(status.layout, part::kInternetStatusFail, status.internetFailImage);
    elm_object_part_content_set(status.layout, part::kStatusFail, status.failImage);
}

}  // namespace

void _click_cb_cancel(void* data, Evas_Object* /*object*/, void* /*event*/) {
    LOG_SCOPE();
    auto* status = static_cast<sNetworkStatus*>(data);
    if (!status) return;
    clearStageTimers();
    deleteObject(status->animationImage);
    deleteObject(status->failImage);
    deleteObject(status->internetFailImage);
    status->failImage = addImage(status->layout);
    status->internetFailImage = addImage(status->layout);
    if (!status->failImage || !status->internetFailImage) {
        LOG_DEBUG("User passed data is null\n");
        return;
    }
    showMessage(*status, "TV_SID_CONNECTION_VERIFICATION_CANCELLED");
    reset_text(status);
    networkKindOf(status->connStatus->networkKind).showCancelled(*status);
    showCancelledPicture(*status);
    turnCancelIntoClose(*status);
    stopLoadingAnimation();
    addRetryButton(*status);
    addSettingsButton(*status);
    focusResultRow(*status);
}

void retry_function(void* data, Evas_Object* /*object*/, void* /*event*/) {
    LOG_SCOPE();
    auto* status = static_cast<sNetworkStatus*>(data);
    if (!status) return;
    applyDisplayMode(*status);
    status->connStatus->gatewayReachable = 0;
    for (Evas_Object** field : {&status->stopBtn, &status->failImage, &status->retryBtn, &status->internetFailImage,
                                &status->ipSettingsBtn}) {
        deleteObject(*field);
    }
    _ShowIPInfoText(0);
    startLoadingAnimation();
    reset_text(status);
    showPicture(status->statusImage, kCheckStartedPicture);
    takeContentOut(*status, part::kStatus);
    takeContentOut(*status, part::kStatusUnset);
    clearMessages(*status);
    reset_function(*status);
}

void ip_setting(void* data, Evas_Object* /*object*/, void* /*event*/) {
    LOG_SCOPE();
    auto* status = static_cast<sNetworkStatus*>(data);
    // The toolkit delivers clicks late: a second one of the same moment comes to the screen that is open already.
    if (!status || !status->layout || isSettingsOpen()) return;
    const sIPSettingCallbacks callbacks{OkBtnCB, CancelBtnCB, status->connection, status};
    hidePopUp(*status);
    LaunchIPSettings(status->popup, status->connStatus->networkKind, &callbacks);
}

void initConnParameter() {
    LOG_SCOPE();
    sNetworkStatus* status = createNetworkStatus();
    if (!status) return;
    status->connStatus->gatewayReachable = 0;
    status->connStatus->internetOnline = 0;
    status->connStatus->animationStep = 4;
    status->connStatus->networkKind = kNetworkWired;
}

void applyDisplayMode(const sNetworkStatus& status) {
    if (!IsEnhancedUIMode(kHighContrastMode)) return;
    LOG_DEBUG("High Contrast mode enabled\n");
    elm_layout_signal_emit(status.layout, "highcontrast", "");
}

void startLoadingAnimation() {
    LOG_SCOPE();
    const sNetworkStatus* status = createNetworkStatus();
    if (!status) return;
    deleteObject(m_loader);
    m_loader = elm_progressbar_add(status->layout);
    if (!m_loader) return;
    evas_object_event_callback_add(m_loader, EVAS_CALLBACK_DEL, forgetLoader, nullptr);
    evas_object_size_hint_align_set(m_loader, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_size_hint_weight_set(m_loader, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_object_style_set(m_loader, "C_Loading_WhiteMedium");
    elm_progressbar_pulse_set(m_loader, EINA_TRUE);
    elm_progressbar_pulse(m_loader, EINA_TRUE);
    elm_object_part_content_set(status->layout, part::kLoader, m_loader);
    evas_object_show(m_loader);
}

void stopLoadingAnimation() {
    LOG_SCOPE();
    const sNetworkStatus* status = createNetworkStatus();
    if (!status || !m_loader) return;
    elm_object_part_content_unset(status->layout, part::kLoader);
    evas_object_hide(m_loader);
    // Hidden or not, a pulsing bar would keep the animator busy.
    elm_progressbar_pulse(m_loader, EINA_FALSE);
}

void deleteLoadingAnimation() {
    deleteObject(m_loader);
}

void _clear_Timers() {
    LOG_SCOPE();
    for (const int slot : {kInactivitySlot, kStageSlot, kSpareSlot})
        clearTimer(slot);
    LOG_DEBUG("Destroying the IP settings window\n");
    DestroyIPSettings();
}
