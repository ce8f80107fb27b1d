#include "host/window.h"

#include <Elementary.h>

#include <cmath>
#include <cstdlib>

#include "host/gadget_runtime.h"

namespace {

constexpr double kScaleAtFullHeight = 2.0;
constexpr double kFullHeight = 1080.0;
constexpr double kSettleSeconds = 0.5;  // what a window manager may take to map the window

void scaleToHeight(int height) {
    if (height <= 0) return;
    const double scale = kScaleAtFullHeight * height / kFullHeight;
    if (std::abs(scale - elm_config_scale_get()) > 0.001) elm_config_scale_set(scale);
}

// A new scale restyles every widget: not while the toolkit is still placing them.
void scaleLater(void* window) {
    int height = 0;
    evas_object_geometry_get(static_cast<Evas_Object*>(window), nullptr, nullptr, nullptr, &height);
    scaleToHeight(height);
}

void onResized(void* /*data*/, Evas* /*canvas*/, Evas_Object* window, void* /*event*/) {
    ecore_job_add(scaleLater, window);
}

Ecore_Evas* ecoreEvasOf(Evas_Object* window) {
    return ecore_evas_ecore_evas_get(evas_object_evas_get(window));
}

void takeFocus(Evas_Object* window) {
    Ecore_Evas* const screen = ecoreEvasOf(window);
    if (!ecore_evas_focus_get(screen)) ecore_evas_focus_set(screen, EINA_TRUE);
}

// Without a window manager the window counts as withdrawn for ever: not drawn, and no key reaches it.
Eina_Bool wakeWithoutManager(void* data) {
    auto* const window = static_cast<Evas_Object*>(data);
    const bool withdrawn = elm_win_norender_get(window) > 0;
    while (elm_win_norender_get(window) > 0)
        elm_win_norender_pop(window);
    if (withdrawn) takeFocus(window);
    return ECORE_CALLBACK_CANCEL;
}

// A memory screen is focused before the toolkit listens, so it would never hear of it.
void refocusMemoryScreen(Evas_Object* window) {
    Ecore_Evas* const screen = ecoreEvasOf(window);
    ecore_evas_focus_set(screen, EINA_FALSE);
    ecore_evas_focus_set(screen, EINA_TRUE);
}

void pauseOnHide(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*window*/, void* /*event*/) {
    host::pauseGadget();
}
void resumeOnShow(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*window*/, void* /*event*/) {
    host::resumeGadget();
}
void pauseOnIconify(void* /*data*/, Evas_Object* /*window*/, void* /*event*/) {
    host::pauseGadget();
}
void resumeOnNormal(void* /*data*/, Evas_Object* /*window*/, void* /*event*/) {
    host::resumeGadget();
}
void endOnClose(void* /*data*/, Evas_Object* /*window*/, void* /*event*/) {
    host::closeGadgetLater();
}

}  // namespace

namespace host {

Evas_Object* openWindow(const Size& size, bool fullscreen) {
    scaleToHeight(size.height);
    Evas_Object* const window = elm_win_util_standard_add("gadget-host", "Network");
    if (window == nullptr) return nullptr;
    elm_win_autodel_set(window, EINA_FALSE);
    evas_object_event_callback_add(window, EVAS_CALLBACK_RESIZE, onResized, nullptr);
    evas_object_resize(window, size.width, size.height);
    if (fullscreen) elm_win_fullscreen_set(window, EINA_TRUE);
    evas_object_show(window);
    if (ecore_evas_buffer_pixels_get(ecoreEvasOf(window)) != nullptr) refocusMemoryScreen(window);
    ecore_timer_add(kSettleSeconds, wakeWithoutManager, window);
    return window;
}

void followWindow(Evas_Object* window) {
    evas_object_event_callback_add(window, EVAS_CALLBACK_HIDE, pauseOnHide, nullptr);
    evas_object_event_callback_add(window, EVAS_CALLBACK_SHOW, resumeOnShow, nullptr);
    evas_object_smart_callback_add(window, "iconified", pauseOnIconify, nullptr);
    evas_object_smart_callback_add(window, "normal", resumeOnNormal, nullptr);
    evas_object_smart_callback_add(window, "delete,request", endOnClose, nullptr);
}

}  // namespace host
