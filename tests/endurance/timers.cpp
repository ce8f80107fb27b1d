// Counts the gadget's timers, so that one that outlives it is seen before it fires into nowhere.
#include <Ecore.h>
#include <dlfcn.h>

#include <map>
#include <utility>

#include "injection.h"

namespace {

struct Timer {
    Ecore_Task_Cb task;
    const void* data;
    Ecore_Timer* timer;
};

std::map<Ecore_Timer*, Timer*>& timers() {
    static std::map<Ecore_Timer*, Timer*> live;
    return live;
}

const void* forget(Timer* timer) {
    const void* const data = timer->data;
    timers().erase(timer->timer);
    delete timer;
    return data;
}

// The task may delete its own timer, or make a new one at the same place.
Eina_Bool tick(void* data) {
    auto* const timer = static_cast<Timer*>(data);
    Ecore_Timer* const key = timer->timer;
    if (timer->task(const_cast<void*>(timer->data)) == ECORE_CALLBACK_RENEW) return ECORE_CALLBACK_RENEW;
    const auto found = timers().find(key);
    if (found != timers().end() && found->second == timer) forget(timer);
    return ECORE_CALLBACK_CANCEL;
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

INTERPOSED Ecore_Timer* ecore_timer_add(double seconds, Ecore_Task_Cb task, const void* data) {
    static auto* const real = next<decltype(ecore_timer_add)>("ecore_timer_add");
    if (!injection::isGadgets(__builtin_return_address(0))) return real(seconds, task, data);
    auto* const kept = new Timer{task, data, nullptr};
    kept->timer = real(seconds, tick, kept);
    timers()[kept->timer] = kept;
    return kept->timer;
}

INTERPOSED void* ecore_timer_del(Ecore_Timer* timer) {
    static auto* const real = next<decltype(ecore_timer_del)>("ecore_timer_del");
    void* const data = real(timer);
    const auto found = timers().find(timer);
    return found == timers().end() ? data : const_cast<void*>(forget(found->second));
}

namespace injection {

int liveTimers() {
    return static_cast<int>(timers().size());
}

}  // namespace injection
