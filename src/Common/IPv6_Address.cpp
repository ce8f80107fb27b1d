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

// Counts colons and double colons; false at three in a row. The last character never starts a run.
bool countColons(std::string_view text, ColonCount& count) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != ':') continue;
        if (text[i + 1] != ':') {
            ++count.single;
            ++count.total;
            continue;
        }
        if (i + 2 < text.size() && text[i + 2] == ':') return false;
        ++count.twice;
        count.total += 2;
        ++i;
    }
    return true;
}

constexpr bool isColonCountValid(const ColonCount& count) {
    if (count.total < 2 || count.total > kGroupSeparators) return false;
    if (count.single > kGroupSeparators || count.twice > 1) return false;
    return count.twice == 1 || count.single == kGroupSeparators;
}

bool check_colons(std::string_view text) {
    LOG_SCOPE();
    ColonCount count;
    if (!countColons(text, count)) return false;
    LOG_DEBUG("single_colon_count [%d] double_colon_count [%d] totle_colon_count [%d]\n", count.single, count.twice,
              count.total);
    if (isColonCountValid(count)) return true;
    LOG_DEBUG("Error: Colon count is invalid!!\n");
    return false;
}

bool ip_part_all_zero_validation(std::string_view group) {
    LOG_SCOPE();
    char combined = '0';
    for (const char character : group)
        combined = static_cast<char>(combined | character);
    LOG_DEBUG("Zero check : num [%c]\n", combined);
    if (combined != '0') return false;
    LOG_DEBUG("Error: All Zero in either first or last part of Address!!\n");
    return true;
}

// Walks the groups; each run of colons is one separator.
bool checkGroups(std::string_view text) {
    std::string_view group;
    int groups = 0;
    while (!text.empty()) {
        group = text.substr(0, text.find(':'));
        LOG_DEBUG("temp_ip_part [%.*s] ip_part_len [%d]\n", static_cast<int>(group.size()), group.data(),
                  static_cast<int>(group.size()));
        if (group.size() > kLongestGroup) {
            LOG_DEBUG("Error:IP Address Part length is more than 4!!\n");
            return false;
        }
        if (groups == 0 && ip_part_all_zero_validation(group)) return false;
        ++groups;
        text.remove_prefix(group.size());
        const std::size_t next = text.find_first_not_of(':');
        text.remove_prefix(next == std::string_view::npos ? text.size() : next);
    }
    const int length = static_cast<int>(group.size());
    LOG_DEBUG("ip_part [%d]temp_last_ip_part [%.*s] temp_ip_part [%.*s]\n", groups, length, group.data(), length,
              group.data());
    return !ip_part_all_zero_validation(group);
}

bool ipv6Address_optimization(char* address) {
    LOG_SCOPE();
    LOG_DEBUG("IPv6 address input str[%s]!!\n", address);
    in6_addr binary{};
    const int parsed = inet_pton(AF_INET6, address, &binary);
    LOG_DEBUG("inet_pton ret[%d]!!\n", parsed);
    if (parsed != 1) return false;
    if (!inet_ntop(AF_INET6, &binary, address, INET6_ADDRSTRLEN)) {
        LOG_DEBUG("IPv6 address conversion Fail!!\n");
        return false;
    }
    LOG_DEBUG("IPv6 address optimize[%s]!!\n", address);
    return true;
}

}  // namespace

bool ipv6Address_validation(char* address) {
    LOG_SCOPE();
    if (!address) return false;
    const std::string_view text(address, strnlen(address, kLongestAddress));
    if (text.size() < kShortestAddress) return false;
    if (text.front() == ':' || text.back() == ':') return false;
    if (!check_colons(text) || !checkGroups(text)) return false;
    LOG_DEBUG("IPv6 address is Valid!!\n");
    if (!ipv6Address_optimization(address)) return false;
    LOG_DEBUG("IPv6 address is optimize!! str[%s]\n", address);
    return true;
}
