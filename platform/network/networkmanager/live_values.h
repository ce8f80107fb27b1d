// The IPv6 values of a running connection, wired or wireless.
#pragma once

#include <NetworkManager.h>

#include <optional>
#include <span>
#include <string>

#include "neighbour_table.h"
#include "network/backend.h"

namespace network {

template <typename T>
std::span<T* const> itemsOf(const GPtrArray* array) {
    if (array == nullptr) return {};
    return {reinterpret_cast<T* const*>(array->pdata), array->len};
}

inline std::string textOf(const char* text) {
    return text == nullptr ? "" : text;
}

struct ShownAddresses {
    std::string ipv4, ipv6;
    bool settled = true;  // false: a duplicate address detection still runs, whose end nobody tells
    bool operator==(const ShownAddresses& other) const { return ipv4 == other.ipv4 && ipv6 == other.ipv6; }
};

// The device that a connection runs on, or null.
NMDevice* deviceOf(NMActiveConnection* active);

// Address, gateway and servers; leaves what the connection does not have.
void readLiveValues(NMActiveConnection* active, Ipv6Values& values);

// The values of the profile with this UUID; empty while it does not run.
Ipv6Values liveValuesOf(NMClient* client, const std::string& uuid);

ShownAddresses shownAddressesOf(NMDevice* device);

// The device's interface, by name in this network namespace.
std::string interfaceOf(NMDevice* device);

// The gateway of a running connection. nullopt: it has none, or nothing runs.
std::optional<Neighbour> gatewayOf(NMActiveConnection* active);

}  // namespace network
