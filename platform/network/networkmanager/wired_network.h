// Reads the wired part of NetworkManager's picture: profiles, the device, and its IPv6 values.
#pragma once

#include <NetworkManager.h>

#include <optional>
#include <string>
#include <vector>

#include "neighbour_table.h"
#include "network/backend.h"

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

struct ShownAddresses {
    std::string ipv4, ipv6;
    bool settled = true;  // false: a duplicate address detection still runs, whose end nobody tells
    bool operator==(const ShownAddresses& other) const { return ipv4 == other.ipv4 && ipv6 == other.ipv6; }
};
// The addresses of the connected device; empty without one.
ShownAddresses shownAddresses(NMClient* client);

// The device's interface, by name in this network namespace.
std::string interfaceOf(NMDevice* device);

// The gateway of a connected profile. nullopt: it has none.
std::optional<Neighbour> gatewayOf(NMClient* client, const std::string& id);

}  // namespace network
