#include "View/NS_Buttons.h"

#include <Elementary.h>

#include <cstdlib>
#include <initializer_list>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "View/IPSingleton.h"
#include "View/NS_Close_Keys.h"
#include "View/NS_Parts.h"
#include "View/NS_Run_Control.h"

namespace {

constexpr const char* kButtonStyle = "default";
constexpr int kContextInfo = 3;  // ELM_ACCESS_CONTEXT_INFO

constexpr const char* kCloseKeys[] = {"XF86Back", "Menu", "XF86Close"};

struct ButtonKind {
    const char* labelId;
    const char* part;
    Evas_Smart_Cb clicked;
    bool givesStatus;  // its callback gets the status record
    Evas_Object* sNetworkStatus::*field;
};
constexpr ButtonKind kCancel{"SID_CANCEL", part::kCancelButton, _click_cb_cancel, true, &sNetworkStatus::stopBtn};
constexpr ButtonKind kClose{"SID_CLOSE", part::kCloseButton, stop_function, false, &sNetworkStatus::stopBtn};
constexpr ButtonKind kRetry{"SID_RETRY_ABBR_7", part::kRetryButton, retry_function, true, &sNetworkStatus::retryBtn};
constexpr ButtonKind kSettings{"TV_SID_IPV6_SETTINGS", part::kSettingsButton, ip_setting, true,
                               &sNetworkStatus::ipSettingsBtn};

char* _access_info_cb_stop(void* /*data*/, Evas_Object* /*object*/) {
    LOG_SCOPE();
    return _access_info_cb("This button will stop the network connection!");
}

char* _access_info_cb_ip(void* /*data*/, Evas_Object* /*object*/) {
    LOG_SCOPE();
    return _access_info_cb("This button will launch IP Settings window !");
}

char* _access_info_cb_retry(void* /*data*/, Evas_Object* /*object*/) {
    LOG_SCOPE();
    return _access_info_cb("This button will retry for network connection!");
}

// Makes a button and puts it into its part. The field stays empty when the toolkit cannot make one.
Evas_Object* addButton(sNetworkStatus& status, const ButtonKind& kind) {
    Evas_Object* button = createButton(status.layout, kButtonStyle, kind.clicked, localised(kind.labelId), nullptr,
                                       kind.givesStatus ? &status : nullptr);
    status.*kind.field = button;
    if (button) elm_object_part_content_set(status.layout, kind.part, button);
    return button;
}

void explain(Evas_Object* button, Elm_Access_Info_Cb text) {
    if (button) elm_access_info_cb_set(button, kContextInfo, text, nullptr);
}

// Replaces the row that the focus moves through. Returns its length, 0 when memory is out.
int setFocusChain(sNetworkStatus& status, std::initializer_list<Evas_Object*> buttons) {
    std::free(static_cast<void*>(status.focusChain));
    status.focusChain = static_cast<Evas_Object**>(std::calloc(buttons.size(), sizeof(Evas_Object*)));
    if (!status.focusChain) return 0;
    int count = 0;
    for (Evas_Object* button : buttons) {
        if (button) status.focusChain[count++] = button;
    }
    return count;
}

void close_combo_on_keys(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
    LOG_SCOPE();
    const auto* status = static_cast<const sNetworkStatus*>(data);
    if (status && status->stopBtn) elm_object_focus_set(status->stopBtn, EINA_TRUE);
}

}  // namespace

void createNSCommonBtn(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return;
    for (const ButtonKind* kind : {&kClose, &kRetry, &kSettings})
        addButton(*status, *kind);
}

void showCancelButton(sNetworkStatus& status) {
    Evas_Object* button = addButton(status, kCancel);
    explain(button, _access_info_cb_stop);
    const int count = button ? setFocusChain(status, {button}) : 0;
    focusStopButton(status);
    single_chain_set_focus_LEFTRIGHT(status.focusChain, count);
}

void showFirstCancelButton(sNetworkStatus& status) {
    Evas_Object* button = addButton(status, kCancel);
    if (button) {
        const int count = setFocusChain(status, {button});
        explain(button, _access_info_cb_stop);
        evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, close_combo_on_keys, &status);
        single_chain_set_focus_LEFTRIGHT(status.focusChain, count);
        single_chain_set_focus_DOWNUP(status.focusChain, count);
    }
    focusStopButton(status);
    if (button) elm_object_signal_emit(button, "elm,action,focus", "elm");
}

void turnCancelIntoClose(sNetworkStatus& status) {
    Evas_Object* button = status.stopBtn;
    if (!button) return;
    elm_object_part_content_set(status.layout, kClose.part, button);
    elm_object_text_set(button, localised(kClose.labelId));
    evas_object_smart_callback_del(button, "clicked", kCancel.clicked);
    evas_object_smart_callback_add(button, "clicked", kClose.clicked, nullptr);
    explain(button, nullptr);
}

void addRetryButton(sNetworkStatus& status) {
    explain(addButton(status, kRetry), _access_info_cb_retry);
}

void addSettingsButton(sNetworkStatus& status) {
    explain(addButton(status, kSettings), _access_info_cb_ip);
}

void focusResultRow(sNetworkStatus& status) {
    const int count = setFocusChain(status, {status.ipSettingsBtn, status.retryBtn, status.stopBtn});
    set_focus_chain_left_right(status.focusChain, count);
    set_focus_chain_up_down(status.focusChain, count);
    focusStopButton(status);
}

void focusStopButton(const sNetworkStatus& status) {
    elm_object_focus_set(status.stopBtn ? status.stopBtn : status.layout, EINA_TRUE);
}

void focusStatusBelow() {
    const sNetworkStatus* const status = createNetworkStatus();
    if (status && status->layout) focusStopButton(*status);
}

void stop_function(void* /*data*/, Evas_Object* /*object*/, void* /*event*/) {
    LOG_SCOPE();
    clearStageTimers();
    if (const sNetworkStatus* status = createNetworkStatus()) ug_destroy_me(status->ug);
}

void close_win(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*object*/, void* event) {
    LOG_SCOPE();
    const auto* key = static_cast<const Evas_Event_Key_Down*>(event);
    // A key may come in the moment before an editor of the settings screen has the focus.
    if (!key || isEditorOpen()) return;
    LOG_DEBUG("Remote Key : [%s]\n\n", key->keyname);
    for (const char* closeKey : kCloseKeys) {
        if (string_cmp(key->keyname, closeKey) != 0) continue;
        if (sNetworkStatus* status = createNetworkStatus()) deleteObject(status->animationImage);
        stop_function(nullptr, nullptr, nullptr);
        return;
    }
}
