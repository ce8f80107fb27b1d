// The status screen's door to the Wi-Fi manager on a wireless network. Results arrive on the main loop.
#pragma once

#include "wifi_manager.h"

// The network to reconnect to; NUL-terminated texts.
struct sAPConnectData {
    char apName[255];
    char apPass[255];
};

// 0 initialised, 3 it was already, 1 failed.
int wifi_init();
// Drops the pending checks and releases the manager; no callback comes afterwards.
void wlan_manager_deregister_cbs();

// Asks for a connection to the first found access point whose name begins with the wanted one.
// Returns 1, or -1 when Wi-Fi is off or its access points cannot be walked; the outcome goes to the run's flags.
int Connect_With_AP(sAPConnectData* request);
// Reads the access point of exactly that name into the shared record. 1 when walked, -1 when not.
int get_ap_info(const char* name);
bool Is_Connected_AP();
// The TV's own Wi-Fi MAC into the shared record. 1, or -1.
int Get_Mac_Address();
// Asks whether the internet is reachable; the answer goes to internetOnline and internetCheckDone. Always true.
bool internet_status_of_ap();

// Result callback of a gateway check: gatewayReachable and thread_flag.
void check_gateway_async_callback(int result, void* data);
// Keeps a connected access point's handle until the checks asked on such handles have been answered.
void keepUntilAnswered(wifi_ap_handle ap);

// Offered; no screen of this system asks for them.
void Scan_Wifi();
void MW_DisconnectAP();
void proxy_changed_callback(const char* ipv4Address, const char* ipv6Address, void* data);
