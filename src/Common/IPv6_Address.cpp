#include "Common/IPv6_Address.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstddef>
#include <cstring>
#include <string_view>

#include "Common/Log.h"

namespace {

constexpr std::size_t kLongestAddress = 39;
constexpr std::size_t kShortestAddress = 2;
constexpr std::size_t kLongestGroup = 4;
constexpr int kGroupSeparators = 7;

struct ColonCount {
    int single = 0;
    int twice = 0;
    int total = 0;
};

// Where the next colon stands, or the end: groups are too short for a library's search to pay.
const char* nextColon(const char* at, const char* end) {
    while (at != end && *at != ':')
        ++at;
    return at;
}

// Counts colons and double colons; false at three in a row. The last character is no colon.
bool countColons(std::string_view text, ColonCount& count) {
    const char* const end = text.data() + text.size();
    for (const char* at = nextColon(text.data(), end); at != end; at = nextColon(at + 1, end)) {
        if (at[1] != ':') {
            ++count.single;
            continue;
        }
        if (at[2] == ':') return false;
        ++count.twice;
        ++at;
    }
    count.total = count.single + 2 * count.twice;
    return true;
}

constexpr bool isColonCountValid(const ColonCount& count) {
    if (count.total < 2 || count.total > kGroupSeparators) return false;
    return count.twice == 1 || count.single == kGroupSeparators;
}

template <bool kHeard>
bool check_colons(std::string_view text) {
    LOG_SCOPE_IF(kHeard);
    ColonCount count;
    if (!countColons(text, count)) return false;
    LOG_DEBUG_IF(kHeard, "single_colon_count [%d] double_colon_count [%d] totle_colon_count [%d]\n", count.single,
                 count.twice, count.total);
    if (isColonCountValid(count)) return true;
    LOG_DEBUG_IF(kHeard, "Error: Colon count is invalid!!\n");
    return false;
}

template <bool kHeard>
bool ip_part_all_zero_validation(std::string_view group) {
    LOG_SCOPE_IF(kHeard);
    char combined = '0';
    for (const char character : group)
        combined = static_cast<char>(combined | character);
    LOG_DEBUG_IF(kHeard, "Zero check : num [%c]\n", combined);
    if (combined != '0') return false;
    LOG_DEBUG_IF(kHeard, "Error: All Zero in either first or last part of Address!!\n");
    return true;
}

// Walks the groups; each run of colons is one separator.
template <bool kHeard>
bool checkGroups(std::string_view text) {
    const char* const end = text.data() + text.size();
    std::string_view group;
    int groups = 0;
    for (const char* at = text.data(); at != end; ++groups) {
        const char* const colon = nextColon(at, end);
        group = {at, colon};
        const int length = static_cast<int>(group.size());
        LOG_DEBUG_IF(kHeard, "temp_ip_part [%.*s] ip_part_len [%d]\n", length, at, length);
        if (group.size() > kLongestGroup) {
            LOG_DEBUG_IF(kHeard, "Error:IP Address Part length is more than 4!!\n");
            return false;
        }
        if (groups == 0 && ip_part_all_zero_validation<kHeard>(group)) return false;
        for (at = colon; at != end && *at == ':';)
            ++at;
    }
    const int length = static_cast<int>(group.size());
    LOG_DEBUG_IF(kHeard, "ip_part [%d]temp_last_ip_part [%.*s] temp_ip_part [%.*s]\n", groups, length, group.data(),
                 length, group.data());
    return !ip_part_all_zero_validation<kHeard>(group);
}

template <bool kHeard>
bool ipv6Address_optimization(char* address) {
    LOG_SCOPE_IF(kHeard);
    LOG_DEBUG_IF(kHeard, "IPv6 address input str[%s]!!\n", address);
    in6_addr binary{};
    const int parsed = inet_pton(AF_INET6, address, &binary);
    LOG_DEBUG_IF(kHeard, "inet_pton ret[%d]!!\n", parsed);
    if (parsed != 1) return false;
    if (!inet_ntop(AF_INET6, &binary, address, INET6_ADDRSTRLEN)) {
        LOG_DEBUG_IF(kHeard, "IPv6 address conversion Fail!!\n");
        return false;
    }
    LOG_DEBUG_IF(kHeard, "IPv6 address optimize[%s]!!\n", address);
    return true;
}

template <bool kHeard>
bool ipv6Address_validation(char* address) {
    if (!address) return false;
    const std::string_view text(address, strnlen(address, kLongestAddress));
    if (text.size() < kShortestAddress) return false;
    if (text.front() == ':' || text.back() == ':') return false;
    if (!check_colons<kHeard>(text) || !checkGroups<kHeard>(text)) return false;
    LOG_DEBUG_IF(kHeard, "IPv6 address is Valid!!\n");
    if (!ipv6Address_optimization<kHeard>(address)) return false;
    LOG_DEBUG_IF(kHeard, "IPv6 address is optimize!! str[%s]\n", address);
    return true;
}

}  // namespace

bool ipv6Address_validation(char* address) {
    // Nobody listens to most checks: those take the code without the lines.
    const bool heard = LOG_DEBUG("START\n") > 0;
    if (!heard) return ipv6Address_validation<false>(address);
    const bool accepted = ipv6Address_validation<true>(address);
    LOG_DEBUG("END\n");
    return accepted;
}
