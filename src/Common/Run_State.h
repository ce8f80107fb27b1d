// State that the parts of a verification run share. Plain variables: everything runs on the main loop.
#pragma once

#include <Ecore.h>

#include "connection_manager.h"

inline constexpr int kSpareSlot = 0;       // never armed, cleared with the stage slot
inline constexpr int kStageSlot = 1;       // the running stage's tick
inline constexpr int kInactivitySlot = 2;  // the inactivity count

// Written by the gadget's entry (inactivity) and by the stages; cleared by every stop path.
extern Ecore_Timer* Net_Set_Conn_timer[3];
// The frame the next tick shows. Written by the stages and by whoever starts a run.
extern int Net_Set_Conn_Tv_Image_No;
// Passes of frame 3 that have only animated so far. Written by the stages.
extern int loading;
// 1 while a stage waits for its asynchronous answer. Cleared by adapters and stages, read by the stages.
extern int thread_flag;
// The current Ethernet profile; belongs to the connection manager. Written by the wired adapter and the stages.
extern connection_profile_handle profile_handle1;

// The matched access point's signal in dBm, and whether it is secured. Written by the Wi-Fi adapter.
inline constexpr char kSecuredNetwork = 'S';
inline constexpr char kOpenNetwork = 'U';
extern int strength_signal;
extern char wifi_security_type;

struct sConnectivityStatus;
// What the running check has found out, or null when the gadget is closed or there is no memory for it.
sConnectivityStatus* checkResults();
// The gateway cannot be asked, or its answer will not come: the running stage ends without it.
void giveUpGateway();

// Deletes the timer of a slot, if there is one, and forgets it.
void clearTimer(int slot);
// Ends the running stage: clears the stage slot and the spare one.
void clearStageTimers();
// Everything as in a freshly loaded module, for the next opening in the same process.
void resetRunState();
