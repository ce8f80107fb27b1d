#include "neighbour_table.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>

#include <cstring>
#include <vector>

using network::confirmedWithin;
using network::Neighbour;
using network::parseNeighbour;
using std::chrono::milliseconds;

namespace {

constexpr long kTicksPerSecond = 100;
constexpr unsigned kInterface = 7;

in6_addr address(const char* text) {
    in6_addr parsed{};
    EXPECT_EQ(inet_pton(AF_INET6, text, &parsed), 1);
    return parsed;
}

using Bytes = std::vector<std::byte>;

template <typename T>
void append(Bytes& bytes, const T& value) {
    const auto* first = reinterpret_cast<const std::byte*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof value);
}

template <typename T>
void appendAttribute(Bytes& bytes, unsigned short type, const T& value) {
    append(bytes, rtattr{static_cast<unsigned short>(RTA_LENGTH(sizeof value)), type});
    append(bytes, value);
}

// One message as the kernel writes it.
Bytes message(const char* neighbour, unsigned interfaceIndex, unsigned confirmedTicks,
              std::uint16_t type = RTM_NEWNEIGH) {
    ndmsg entry{};
    entry.ndm_family = AF_INET6;
    entry.ndm_ifindex = static_cast<int>(interfaceIndex);
    entry.ndm_state = NUD_REACHABLE;
    entry.ndm_flags = NTF_ROUTER;
    nda_cacheinfo times{};
    times.ndm_confirmed = confirmedTicks;
    Bytes body;
    append(body, entry);
    appendAttribute(body, NDA_CACHEINFO, times);
    appendAttribute(body, NDA_DST, address(neighbour));
    Bytes bytes;
    append(bytes, nlmsghdr{static_cast<unsigned>(NLMSG_HDRLEN + body.size()), type, 0, 1, 2});
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

const Neighbour& gateway() {
    static const Neighbour neighbour{address("fe80::1"), kInterface};
    return neighbour;
}

}  // namespace

TEST(NeighbourMessage, IsReadForOneNeighbourAmongOthers) {
    Bytes datagram = message("fe80::2", kInterface, 1);
    for (const Bytes& more : {message("fe80::1", kInterface + 1, 2), message("fe80::1", kInterface, 3, NLMSG_ERROR),
                              message("fe80::1", kInterface, 25)}) {
        datagram.insert(datagram.end(), more.begin(), more.end());
    }
    const auto entry = parseNeighbour(datagram, gateway(), kTicksPerSecond);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->state, NUD_REACHABLE);
    EXPECT_EQ(entry->flags, NTF_ROUTER);
    EXPECT_EQ(entry->sinceConfirmation, milliseconds(250));
}

TEST(NeighbourMessage, IsNotReadBeyondItsEnd) {
    const Bytes whole = message("fe80::1", kInterface, 25);
    ASSERT_TRUE(parseNeighbour(whole, gateway(), kTicksPerSecond));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A copy of exactly that size lets the address sanitizer see a read beyond it.
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(parseNeighbour(cut, gateway(), kTicksPerSecond)) << size;
    }
    for (std::size_t i = 0; i < whole.size(); ++i) {  // lengths of 0 and of far too much, wherever one stands
        for (const auto value : {std::byte{0}, std::byte{0xff}}) {
            Bytes damaged = whole;
            damaged[i] = value;
            (void)parseNeighbour(damaged, gateway(), kTicksPerSecond);
        }
    }
}

TEST(NeighbourConfirmation, CountsOnlyAfterTheProbe) {
    const milliseconds sinceProbe(500);
    EXPECT_TRUE(confirmedWithin({NUD_REACHABLE, 0, milliseconds(490)}, sinceProbe));
    EXPECT_FALSE(confirmedWithin({NUD_REACHABLE, 0, milliseconds(500)}, sinceProbe));
    EXPECT_FALSE(confirmedWithin({NUD_REACHABLE, 0, milliseconds(-1)}, sinceProbe));
    for (const int state : {NUD_STALE, NUD_DELAY, NUD_PROBE, NUD_FAILED, NUD_PERMANENT}) {
        EXPECT_FALSE(confirmedWithin({static_cast<std::uint16_t>(state), 0, milliseconds(0)}, sinceProbe)) << state;
    }
}
