// Reads the wireless part of NetworkManager's picture: the radio, its access points, and the profiles for them.
#pragma once

#include <NetworkManager.h>

#include <string>
#include <vector>

#include "network/backend.h"

namespace network {

// The first managed Wi-Fi device, or null.
NMDeviceWifi* wifiDevice(NMClient* client);

// Whether there is a radio that is switched on.
bool wifiIsOn(NMClient* client);

// The access points that have a name, by their BSSID.
std::vector<std::string> foundAccessPoints(NMDeviceWifi* device);

// Null: it is not found any more.
NMAccessPoint* findAccessPoint(NMDeviceWifi* device, const std::string& bssid);

// The device's activation while it is connected, or null.
NMActiveConnection* wifiConnection(NMDeviceWifi* device);

// WIFI_SECURITY_* of what the access point announces; the one that connecting uses where it offers several.
int securityOf(NMAccessPoint* accessPoint);

// The stored profile for the access point that was used last, or null.
NMRemoteConnection* profileFor(NMClient* client, NMAccessPoint* accessPoint);

AccessPoint readAccessPoint(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint);

}  // namespace network
