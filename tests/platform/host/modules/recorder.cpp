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
    std::string line = "ask";
    for (const ug_handle ug : {self, self, reinterpret_cast<ug_handle>(&other), ug_handle{}})
        line += " " + std::to_string(ug_destroy_me(ug));
    record(line);
}

Eina_Bool onTimer(void* /*data*/) {
    behaves("terminated") ? static_cast<void>(std::raise(SIGTERM)) : askForEnd();
    record("timer over");
    return ECORE_CALLBACK_CANCEL;
}

void recordEnd(void* what, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
    record(static_cast<const char*>(what) + std::string(" gone"));
}

void* create(ug_handle ug, int /*mode*/, ug_data /*data*/, void* priv) {
    static char viewName[] = "view", widgetName[] = "forgotten widget";
    auto* const window = static_cast<Evas_Object*>(ug_get_window());
    self = ug;
    recordCall("create", ug, priv);
    if (behaves("no-view")) return nullptr;
    if (behaves("language")) record(std::setlocale(LC_MESSAGES, nullptr) + std::string(" ") + std::getenv("LANGUAGE"));
    if (behaves("hasty")) askForEnd();
    if (behaves("asking") || behaves("terminated")) ecore_timer_add(0.5, onTimer, nullptr);
    Evas_Object* const view = evas_object_rectangle_add(evas_object_evas_get(window));
    evas_object_event_callback_add(view, EVAS_CALLBACK_DEL, recordEnd, viewName);
    if (behaves("forgetful"))  // it stays in the window and calls back into this module when it goes
        evas_object_event_callback_add(elm_layout_add(window), EVAS_CALLBACK_DEL, recordEnd, widgetName);
    return view;
}

}  // namespace

PLATFORM_API int UG_MODULE_INIT(ug_operations* operations) {
    record("init");
    if (behaves("refusing")) return -1;
    operations->create = create;
    operations->start = [](ug_handle ug, ug_data, void* priv) { recordCall("start", ug, priv); };
    operations->pause = [](ug_handle ug, ug_data, void* priv) { recordCall("pause", ug, priv); };
    operations->resume = [](ug_handle ug, ug_data, void* priv) { recordCall("resume", ug, priv); };
    operations->destroy = [](ug_handle ug, ug_data, void* priv) { recordCall("destroy", ug, priv); };
    operations->priv = &privateData;
    return 0;
}

PLATFORM_API void UG_MODULE_EXIT(ug_operations* /*operations*/) {
    record("exit");
}
