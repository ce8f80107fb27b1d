// The gateway check of a wireless run, which the Wi-Fi adapter asks for as soon as a reconnection has succeeded: its
// one call up into the screens.
#pragma once

struct sNetworkStatus;

// Asks whether the gateway of the connected access point answers.
void check_gateway_wireless(sNetworkStatus* status);
