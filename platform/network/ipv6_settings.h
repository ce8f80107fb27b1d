// Relations between IPv6 settings and values.
#pragma once

#include "backend.h"

namespace network {

// Puts what the settings name over the values.
void overlay(const Ipv6Settings& settings, Ipv6Values& values);

// Puts what the changes name over the settings.
void merge(const Ipv6Settings& changes, Ipv6Settings& settings);

// Each puts one checked value of a C caller into the settings. False when the value is impossible: it must be a mode
// of the boundary, a unicast address (for gateway and server also `::`, which means none), a prefix length of 1 to 128
// bits, or an order of 1 to 3.
bool changeMode(Ipv6Settings& settings, int type);     // CONNECTION_IP_CONFIG_*
bool changeDnsMode(Ipv6Settings& settings, int type);  // CONNECTION_DNS_CONFIG_*
bool changeAddress(Ipv6Settings& settings, const char* address);
bool changePrefixLength(Ipv6Settings& settings, std::uint8_t length);
bool changeGateway(Ipv6Settings& settings, const char* address);
bool changeServer(Ipv6Settings& settings, int order, const char* address);

}  // namespace network
