// The check of a wireless connection: association and address, gateway, internet, verdict.
#pragma once

#include <span>

#include "View/NS_Gateway_Check.h"

struct sNetworkStatus;

// Starts a run, reconnecting first when the settings store asks for it and the TV is not associated.
void wireless_animation(sNetworkStatus* status);

// Writes the path of a failure verdict's picture. Nothing for a null status.
void Set_Connection_Image_Wireless(const sNetworkStatus* status, std::span<char> path);

// Shows the signal picture. `security` is 'S' for a secured network; `rssi` in dBm.
void load_signal_strength(char security, int rssi);
// The picture's file name for a signal; also for tests.
const char* signalPicture(char security, int rssi);

// Puts the connected network's name into the shared record; the stored name stands in when there is none.
void Check_Connected_AP_Name(const char* storedName);
