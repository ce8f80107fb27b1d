// Carries asked IPv6 settings over into a NetworkManager profile.
#pragma once

#include <NetworkManager.h>

#include "network/backend.h"

namespace network {

// Whether the profile's own servers are used instead of those of the network.
bool dnsIsStatic(NMConnection* profile);

/**
 * Changes method, addresses, gateway, DNS servers and ignore-auto-dns of a profile's IPv6 setting, and nothing else.
 * @param asked what to change; addresses and lengths are checked already
 * @param live  stands in for a prefix length or gateway that a new manual address comes without
 * @return what cannot be had yet, because NetworkManager takes no manual mode without an address and no static DNS
 *         without a server, or because the values belong to a mode that was not asked for
 */
Ipv6Settings changeIpv6(NMConnection* profile, const Ipv6Settings& asked, const Ipv6Values& live);

}  // namespace network
