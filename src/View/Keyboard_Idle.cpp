#include "View/Keyboard_Idle.h"

#include <Ecore.h>

#include <cstdint>

#include "Common/Log.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Focus.h"
#include "View/NS_Buttons.h"

namespace {

constexpr double kKeepAlivePeriod = 90.0;

constinit std::uint8_t change = 0;
constinit Ecore_Timer* keepAliveTimer = nullptr;

}  // namespace

void resetFlag(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
    change = 1;
}

void resetFlag_OnMouseClick(void* /*data*/, Evas_Object* /*object*/, void* /*event*/) {
    resetFlag();
}

Eina_Bool Timer(void* data) {
    LOG_SCOPE();
    const auto* const keyboard = static_cast<const custKeyboard*>(data);
    if (!keyboard) {
        LOG_DEBUG("Data Argument is NULL\n");
        return ECORE_CALLBACK_CANCEL;
    }
    LOG_DEBUG("Value of change %d\n", change);
    if (!keyboard->IME_Password_bg) return ECORE_CALLBACK_RENEW;
    if (change == 0) {
        delCustKeyboard();
        focusStatusBelow();
        return ECORE_CALLBACK_CANCEL;
    }
    change = 0;
    return ECORE_CALLBACK_RENEW;
}

void startKeepAliveTimer(custKeyboard* keyboard) {
    stopKeepAliveTimer();
    keepAliveTimer = ecore_timer_add(kKeepAlivePeriod, Timer, keyboard);
    LOG_DEBUG("Keep Alive Timer created\n");
}

void stopKeepAliveTimer() {
    if (!keepAliveTimer) return;
    ecore_timer_del(keepAliveTimer);
    keepAliveTimer = nullptr;
    LOG_DEBUG("Keep Alive Timer deleted\n");
}
