// Reads the wired part of NetworkManager's picture: profiles, the device, and its IPv6 values.
#pragma once

#include <NetworkManager.h>

#include <optional>
#include <string>
#include <vector>

#include "live_values.h"

namespace network {

// UUIDs of the wired profiles, a veth's included; which: CONNECTION_ITERATOR_*. Connected: activated, and with a link.
std::vector<std::string> wiredProfiles(NMClient* client, int which);

// nullopt: there is no such wired profile.
std::optional<Profile> readProfile(NMClient* client, const std::string& id);

// CONNECTION_ETHERNET_*: whether a managed wired device has a link. nullopt while the daemon still looks for its
// devices.
std::optional<int> linkState(NMClient* client);

// The device that the wired network runs on, or would: an activated one first, then one with a link. Null: none.
NMDevice* wiredDevice(NMClient* client);

// The addresses of the connected device; empty without one.
ShownAddresses shownAddresses(NMClient* client);

// The gateway of a connected profile. nullopt: it has none.
std::optional<Neighbour> gatewayOf(NMClient* client, const std::string& id);

}  // namespace network
