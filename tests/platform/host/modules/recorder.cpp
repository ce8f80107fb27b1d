// A module that writes down what the host does to it, in the file "calls". RECORDER chooses how it behaves.
#include <Elementary.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "gadget_host.h"

namespace {

ug_handle self = nullptr;
int privateData = 0;

bool behaves(std::string_view how) {
    const char* const chosen = std::getenv("RECORDER");
    return chosen != nullptr && chosen == how;
}

void record(const std::string& line) {
    std::ofstream("calls", std::ios::app) << line << '\n';
}

// A callback's name, and whether handle and private data are the ones of this gadget.
void recordCall(const std::string& name, ug_handle ug, void* priv) {
    record(name + (ug == self && priv == &privateData ? "" : " with wrong arguments"));
}

void askForEnd() {
    int other = 0;
    record("ask " + std::to_string(ug_destroy_me(self)) + " " + std::to_string(ug_destroy_me(self)) + " " +
           std::to_string(ug_destroy_me(reinterpret_cast<ug_handle>(&other))) + " " +
           std::to_string(ug_destroy_me(nullptr)));
}

Eina_Bool onTimer(void* /*data*/) {
    if (behaves("terminated")) {
        std::raise(SIGTERM);
    } else {
        askForEnd();
    }
    record("timer over");
    return ECORE_CALLBACK_CANCEL;
}

void recordViewEnd(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*view*/, void* /*event*/) {
    record("view gone");
}

void recordForgotten(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*widget*/, void* /*event*/) {
    record("forgotten widget gone");
}

// Leaves a widget in the window that calls back into this module when it goes.
void forgetWidget() {
    Evas_Object* const widget = elm_layout_add(static_cast<Evas_Object*>(ug_get_window()));
    evas_object_event_callback_add(widget, EVAS_CALLBACK_DEL, recordForgotten, nullptr);
}

void* create(ug_handle ug, int /*mode*/, ug_data /*data*/, void* priv) {
    self = ug;
    recordCall("create", ug, priv);
    if (behaves("no-view")) return nullptr;
    if (behaves("language")) record(std::setlocale(LC_MESSAGES, nullptr) + std::string(" ") + std::getenv("LANGUAGE"));
    if (behaves("hasty")) askForEnd();
    if (behaves("asking") || behaves("terminated")) ecore_timer_add(0.5, onTimer, nullptr);
    Evas_Object* const view =
        evas_object_rectangle_add(evas_object_evas_get(static_cast<Evas_Object*>(ug_get_window())));
    evas_object_event_callback_add(view, EVAS_CALLBACK_DEL, recordViewEnd, nullptr);
    if (behaves("forgetful")) forgetWidget();
    return view;
}

void start(ug_handle ug, ug_data /*data*/, void* priv) {
    recordCall("start", ug, priv);
}
void pause(ug_handle ug, ug_data /*data*/, void* priv) {
    recordCall("pause", ug, priv);
}
void resume(ug_handle ug, ug_data /*data*/, void* priv) {
    recordCall("resume", ug, priv);
}
void destroy(ug_handle ug, ug_data /*data*/, void* priv) {
    recordCall("destroy", ug, priv);
}

}  // namespace

PLATFORM_API int UG_MODULE_INIT(ug_operations* operations) {
    record("init");
    if (behaves("refusing")) return -1;
    operations->create = create;
    operations->start = start;
    operations->pause = pause;
    operations->resume = resume;
    operations->destroy = destroy;
    operations->priv = &privateData;
    return 0;
}

PLATFORM_API void UG_MODULE_EXIT(ug_operations* /*operations*/) {
    record("exit");
}
