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

    // Turns the loop until the condition holds; false when it still does not after half a minute. Its last
    // answer is the result; asking again could do something twice, or hear otherwise.
    static bool runUntil(const std::function<bool()>& condition) {
        struct Wait {
            const std::function<bool()>& condition;
            bool isMet = false;
        } wait{condition};
        const auto quitWhenMet = [](void* data) -> Eina_Bool {
            auto& [holds, isMet] = *static_cast<Wait*>(data);
            if (!isMet) isMet = holds();
            if (isMet) ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        };
        const auto quit = [](void*) -> Eina_Bool {
            ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        };
        Ecore_Idle_Enterer* check = ecore_idle_enterer_add(quitWhenMet, &wait);
        Ecore_Timer* watchdog = ecore_timer_add(30, quit, nullptr);
        ecore_main_loop_begin();
        ecore_timer_del(watchdog);
        ecore_idle_enterer_del(check);
        return wait.isMet;
    }

    // Lets everything that is due without delay come.
    static void settle() {
        for (int turn = 0; turn < 20; ++turn)
            ecore_main_loop_iterate();
    }
};
