// The gadget's face towards its host: the two entry points and the lifecycle callbacks.
#include <Elementary.h>
#include <libintl.h>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/NS_Key_Grab.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "Common/Status_Store.h"
#include "View/NS_Buttons.h"
#include "View/NS_Main.h"
#include "View/NS_Networks.h"
#include "View/NS_Run_Control.h"
#include "gadget_host.h"
#include "voice_control.h"

namespace {

constexpr double kBaseScale = 2.0;
constexpr double kInactivityTick = 1.0;
constexpr const char* kPopupStyle = "C_PopupBasic_WhiteBottomLarge";

constinit char* networkType = nullptr;

// The window and its popup; null when the screen cannot be made.
Evas_Object* openPopup(sNetworkStatus& status) {
    status.win = static_cast<Evas_Object*>(ug_get_window());
    if (!status.win) {
        LOG_FATAL("\n ------- Window Get Failed !!! ------ \n\n");
        return nullptr;
    }
    elm_config_focus_highlight_enabled_set(EINA_TRUE);
    elm_win_focus_highlight_enabled_set(status.win, EINA_TRUE);
    status.popup = elm_popup_add(status.win);
    if (!status.popup) {
        LOG_DEBUG("User passed data is null\n");
        return nullptr;
    }
    // The style is the package's own: the toolkit must know the file before it is asked for.
    addThemeExtension();
    elm_object_style_set(status.popup, kPopupStyle);
    return status.popup;
}

Evas_Object* openLayout(sNetworkStatus& status) {
    Evas_Object* layout = elm_layout_add(status.popup);
    if (!layout) {
        LOG_FATAL("Create fullview failed base NULL :  layout ca'nt Add \n\n");
        return nullptr;
    }
    status.layout = layout;
    loadStatusLayout(status);
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(layout, EVAS_HINT_FILL, EVAS_HINT_FILL);
    keepPointerFromFocusing(layout);
    evas_object_event_callback_add(layout, EVAS_CALLBACK_KEY_DOWN, Reset_Time_Flag, nullptr);
    evas_object_event_callback_add(layout, EVAS_CALLBACK_MOUSE_MOVE, Reset_Time_Flag, nullptr);
    evas_object_show(layout);
    elm_object_content_set(status.popup, layout);
    evas_object_show(status.popup);
    return layout;
}

void* _on_create(ug_handle ug, int /*mode*/, ug_data /*data*/, void* priv) {
    LOG_SCOPE();
    if (!ug || !priv) return nullptr;
    auto& status = *static_cast<sNetworkStatus*>(priv);
    elm_app_base_scale_set(kBaseScale);
    status.ug = ug;
    if (!openPopup(status) || !openLayout(status)) return nullptr;
    initialize_status(&status);
    clearTimer(kInactivitySlot);
    Reset_Time_Flag();
    Net_Set_Conn_timer[kInactivitySlot] = ecore_timer_add(kInactivityTick, Timeout_Timer, nullptr);
    NS_IP_KeyGrab(status.win);
    return status.popup;
}

void _on_start(ug_handle ug, ug_data /*data*/, void* priv) {
    LOG_SCOPE();
    if (!ug || !priv) return;
    const auto& status = *static_cast<sNetworkStatus*>(priv);
    elm_config_focus_highlight_enabled_set(EINA_TRUE);
    elm_object_focus_allow_set(status.layout, EINA_TRUE);
    focusStopButton(status);
}

void _on_pause(ug_handle /*ug*/, ug_data /*data*/, void* /*priv*/) {
    LOG_SCOPE();
}

void _on_resume(ug_handle /*ug*/, ug_data /*data*/, void* /*priv*/) {
    LOG_SCOPE();
}

void _on_message(ug_handle /*ug*/, ug_data /*message*/, ug_data /*data*/, void* /*priv*/) {
    LOG_SCOPE();
}

void _on_event(ug_handle ug, int /*event*/, ug_data /*data*/, void* priv) {
    LOG_SCOPE();
    if (!ug || !priv) return;
}

// What was taken out of its part, or stands on the window itself, does not go with the layout.
void deleteWidgets(sNetworkStatus& status) {
    deleteLoadingAnimation();
    for (Evas_Object** field : {&status.animationImage, &status.statusImage, &status.signalImage, &status.layout}) {
        deleteObject(*field);
    }
}

void _on_destroy(ug_handle ug, ug_data /*data*/, void* priv) {
    LOG_SCOPE();
    LOG_DEBUG(" \n -----  _on_destroy  ------   \n \n");
    vc_elm_deinitialize();
    _clear_Timers();
    auto* status = static_cast<sNetworkStatus*>(priv);
    if (!ug || !status || !status->layout) return;
    NS_IP_KeyUnGrab(status->win);
    PlatformText stored = readStore(kNetworkTypeKey);
    networkType = stored.get();
    freeGlobalIPInfo();
    releaseNetwork(*status, networkType);
    deleteWidgets(*status);
    freeSNetworkStatus();
    networkType = nullptr;
    resetRunState();
}

}  // namespace

int UG_MODULE_INIT(struct ug_operations* operations) {
    LOG_SCOPE();
    vc_elm_initialize();
    vc_elm_set_auto_register_mode(1, 1);
    sNetworkStatus* status = createNetworkStatus();
    if (!operations) return -1;
    if (!status) {
        LOG_DEBUG("\n ------- Memory Allocation Failed !!! ------ \n\n");
        return -1;
    }
    bindtextdomain(kTextDomain, kLocaleFolder);
    operations->create = _on_create;
    operations->start = _on_start;
    operations->pause = _on_pause;
    operations->resume = _on_resume;
    operations->destroy = _on_destroy;
    operations->message = _on_message;
    operations->event = _on_event;
    operations->priv = status;
    operations->option = 0;
    return 0;
}

void UG_MODULE_EXIT(struct ug_operations* operations) {
    LOG_SCOPE();
    if (operations) freeSNetworkStatus();
}
