#include "neighbour_table.h"

#include <linux/neighbour.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cstring>

namespace network {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kReplySize = 4096;

struct NeighbourRequest {
    nlmsghdr header{};
    ndmsg message{};
    rtattr attribute{};
    in6_addr address{};
};

NeighbourRequest requestFor(const Neighbour& neighbour, std::uint16_t type, std::uint16_t flags) {
    NeighbourRequest request;
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = type;
    request.header.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
    request.message.ndm_family = AF_INET6;
    request.message.ndm_ifindex = static_cast<int>(neighbour.interfaceIndex);
    request.attribute.rta_type = NDA_DST;
    request.attribute.rta_len = static_cast<unsigned short>(RTA_LENGTH(sizeof(in6_addr)));
    request.address = neighbour.address;
    return request;
}

// Reads a plain structure out of bytes that need not be aligned for it.
template <typename T>
bool readAt(std::span<const std::byte> bytes, std::size_t offset, T& value) {
    if (offset > bytes.size() || bytes.size() - offset < sizeof(T)) return false;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return true;
}

struct Attributes {
    in6_addr address{};
    bool hasAddress = false;
    milliseconds sinceConfirmation{-1};
};

Attributes readAttributes(std::span<const std::byte> bytes, long ticksPerSecond) {
    Attributes found;
    std::size_t offset = 0;
    for (rtattr attribute; readAt(bytes, offset, attribute); offset += RTA_ALIGN(attribute.rta_len)) {
        if (attribute.rta_len < sizeof attribute || attribute.rta_len > bytes.size() - offset) break;
        const auto payload = bytes.subspan(offset + RTA_LENGTH(0), attribute.rta_len - RTA_LENGTH(0));
        if (attribute.rta_type == NDA_DST) found.hasAddress = readAt(payload, 0, found.address);
        nda_cacheinfo times;
        if (attribute.rta_type == NDA_CACHEINFO && readAt(payload, 0, times)) {
            found.sinceConfirmation = milliseconds(1000L * times.ndm_confirmed / ticksPerSecond);
        }
    }
    return found;
}

std::optional<NeighbourEntry> parseMessage(std::span<const std::byte> message, const Neighbour& neighbour,
                                           long ticksPerSecond) {
    ndmsg entry;
    if (!readAt(message, NLMSG_HDRLEN, entry) || entry.ndm_family != AF_INET6) return std::nullopt;
    if (static_cast<unsigned>(entry.ndm_ifindex) != neighbour.interfaceIndex) return std::nullopt;
    constexpr std::size_t kAttributes = NLMSG_HDRLEN + NLMSG_ALIGN(sizeof(ndmsg));
    if (message.size() < kAttributes) return std::nullopt;
    const Attributes found = readAttributes(message.subspan(kAttributes), ticksPerSecond);
    if (!found.hasAddress || !IN6_ARE_ADDR_EQUAL(&found.address, &neighbour.address)) return std::nullopt;
    return NeighbourEntry{entry.ndm_state, entry.ndm_flags, found.sinceConfirmation};
}

}  // namespace

std::optional<NeighbourEntry> parseNeighbour(std::span<const std::byte> datagram, const Neighbour& neighbour,
                                             long ticksPerSecond) {
    for (nlmsghdr header; readAt(datagram, 0, header);) {
        if (header.nlmsg_len < sizeof header || header.nlmsg_len > datagram.size()) break;
        if (header.nlmsg_type == RTM_NEWNEIGH) {
            const auto entry = parseMessage(datagram.first(header.nlmsg_len), neighbour, ticksPerSecond);
            if (entry) return entry;
        }
        datagram = datagram.subspan(std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), datagram.size()));
    }
    return std::nullopt;
}

bool confirmedWithin(const NeighbourEntry& entry, milliseconds sinceProbe) {
    return (entry.state & NUD_REACHABLE) != 0 && entry.sinceConfirmation >= milliseconds(0) &&
           entry.sinceConfirmation < sinceProbe;
}

NeighbourTable::NeighbourTable()
    : socket_(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {}

std::optional<NeighbourEntry> NeighbourTable::find(const Neighbour& neighbour) {
    const NeighbourRequest request = requestFor(neighbour, RTM_GETNEIGH, 0);
    if (send(socket_.number(), &request, sizeof request, 0) < 0) return std::nullopt;
    std::array<std::byte, kReplySize> reply;
    std::optional<NeighbourEntry> entry;
    // The kernel has put its reply into the queue before send() returned.
    for (ssize_t size; (size = recv(socket_.number(), reply.data(), reply.size(), MSG_DONTWAIT)) > 0;) {
        const auto datagram = std::span(reply).first(static_cast<std::size_t>(size));
        if (const auto found = parseNeighbour(datagram, neighbour, sysconf(_SC_CLK_TCK))) entry = found;
    }
    return entry;
}

void NeighbourTable::verifyNow(const Neighbour& neighbour, const NeighbourEntry& entry) {
    if ((entry.state & (NUD_REACHABLE | NUD_STALE | NUD_DELAY)) == 0) return;
    NeighbourRequest request = requestFor(neighbour, RTM_NEWNEIGH, NLM_F_REPLACE);
    request.message.ndm_state = NUD_PROBE;
    request.message.ndm_flags = entry.flags & NTF_ROUTER;  // losing it would cost the default route
    if (send(socket_.number(), &request, sizeof request, 0) < 0) return;
}

}  // namespace network
