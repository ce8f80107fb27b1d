// What the kernel knows about one IPv6 neighbour, through rtnetlink(7).
#pragma once

#include <netinet/in.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "handles.h"

namespace network {

struct Neighbour {
    in6_addr address{};
    unsigned interfaceIndex = 0;
};

struct NeighbourEntry {
    std::uint16_t state = 0;                          // NUD_*
    std::uint8_t flags = 0;                           // NTF_*
    std::chrono::milliseconds sinceConfirmation{-1};  // -1: not told
};

/**
 * Finds the entry of a neighbour in one datagram from the kernel.
 * @param ticksPerSecond the unit of the times in it, sysconf(_SC_CLK_TCK)
 * @return nullopt when the datagram is cut off, an error, or about somebody else
 */
std::optional<NeighbourEntry> parseNeighbour(std::span<const std::byte> datagram, const Neighbour& neighbour,
                                             long ticksPerSecond);

// Whether the neighbour has answered neighbour discovery within the given time, which began with a probe of ours.
bool confirmedWithin(const NeighbourEntry& entry, std::chrono::milliseconds sinceProbe);

class NeighbourTable {
  public:
    NeighbourTable();
    // nullopt: there is no entry, or the kernel refuses to tell.
    std::optional<NeighbourEntry> find(const Neighbour& neighbour);
    // Has the kernel verify an entry it believes in at once instead of after its delay of 5 s. Needs CAP_NET_ADMIN;
    // without it nothing happens.
    void verifyNow(const Neighbour& neighbour, const NeighbourEntry& entry);

  private:
    Descriptor socket_;
};

}  // namespace network
