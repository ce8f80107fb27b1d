#include "Common/Run_State.h"

#include "Common/Common_Function.h"

constinit Ecore_Timer* Net_Set_Conn_timer[3] = {};
constinit int Net_Set_Conn_Tv_Image_No = 1;
constinit int loading = 0;
constinit int thread_flag = 1;
constinit connection_profile_handle profile_handle1 = nullptr;
constinit int strength_signal = 0;
constinit char wifi_security_type = 0;

sConnectivityStatus* checkResults() {
    const sNetworkStatus* status = existingNetworkStatus();
    return status ? status->connStatus : nullptr;
}

void giveUpGateway() {
    if (sConnectivityStatus* results = checkResults()) results->gatewayReachable = 0;
    thread_flag = 0;
}

void clearTimer(int slot) {
    Ecore_Timer*& timer = Net_Set_Conn_timer[slot];
    if (timer) ecore_timer_del(timer);
    timer = nullptr;
}

void clearStageTimers() {
    clearTimer(kStageSlot);
    clearTimer(kSpareSlot);
}

void resetRunState() {
    Net_Set_Conn_Tv_Image_No = 1;
    loading = 0;
    thread_flag = 1;
    profile_handle1 = nullptr;
    strength_signal = 0;
    wifi_security_type = 0;
}
