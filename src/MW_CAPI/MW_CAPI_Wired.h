// The status screen's door to the connection manager on a wired network. Results arrive on the main loop.
#pragma once

#include "connection_manager.h"

// Creates the client, follows the cable and finds the Ethernet profile.
// Returns 1, 0 when the profile could not be looked up, or -1 when there is no client.
int register_client();
// Removes the callbacks and destroys the client. False when the client could not be destroyed.
bool deregister_client();

// Reads the cable's state once and reports it to the running check.
void check_lan_cable();
// Whether the Ethernet link counts as connected.
bool Get_Ethernet_State();

// Stores the connected Ethernet profile (the manager's own handle; the last one when there are several).
// Without one the out parameter keeps its value. False when the manager failed.
bool get_updated_ethernet_profile_handle(connection_profile_handle* profile);
// As above into profile_handle1, which is null when there is no connected profile.
void refreshEthernetProfile();

// Reads MAC, address, prefix, gateway and DNS into the shared record; defaults stand in for what cannot be read.
void get_wired_ip_info(connection_profile_handle profile);
// The MAC and default addresses.
void set_wired_default_values();

// Asks whether the gateway answers; the answer goes to gatewayReachable and thread_flag.
void check_gateway_wired(bool ethernetUsable);
// Asks whether the internet is reachable; the answer goes to internetOnline and internetCheckDone. Always true.
bool internet_status_of_wired();
