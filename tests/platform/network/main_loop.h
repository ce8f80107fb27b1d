// The main loop without a display, turned by hand.
#pragma once

#include <Ecore.h>
#include <gtest/gtest.h>

#include <functional>

#include "network/network.h"

class MainLoop {
  public:
    MainLoop() {
        ecore_app_no_system_modules();
        ecore_init();
    }
    ~MainLoop() {
        network::release();
        ecore_shutdown();
    }
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;

    // Turns the loop until the condition holds; false when it still does not after half a minute.
    static bool runUntil(const std::function<bool()>& condition) {
        const auto quitWhenMet = [](void* data) -> Eina_Bool {
            if ((*static_cast<const std::function<bool()>*>(data))()) ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        };
        const auto quit = [](void*) -> Eina_Bool {
            ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        };
        Ecore_Idle_Enterer* check = ecore_idle_enterer_add(quitWhenMet, &condition);
        Ecore_Timer* watchdog = ecore_timer_add(30, quit, nullptr);
        ecore_main_loop_begin();
        ecore_timer_del(watchdog);
        ecore_idle_enterer_del(check);
        return condition();
    }

    // Lets everything that is due without delay come.
    static void settle() {
        for (int turn = 0; turn < 20; ++turn)
            ecore_main_loop_iterate();
    }
};
