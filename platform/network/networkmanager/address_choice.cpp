#include "address_choice.h"

#include <arpa/inet.h>
#include <linux/if_addr.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <tuple>

namespace network {
namespace {

constexpr std::size_t kHexDigits = 32;

enum class Scope { kNone, kLinkLocal, kUniqueLocal, kGlobal };

Scope scopeOf(const std::string& text) {
    in6_addr address;
    if (inet_pton(AF_INET6, text.c_str(), &address) != 1) return Scope::kNone;
    if (IN6_IS_ADDR_UNSPECIFIED(&address) || IN6_IS_ADDR_LOOPBACK(&address) || IN6_IS_ADDR_MULTICAST(&address)) {
        return Scope::kNone;
    }
    if (IN6_IS_ADDR_LINKLOCAL(&address)) return Scope::kLinkLocal;
    const bool uniqueLocal = (address.s6_addr[0] & 0xfe) == 0xfc;  // RFC 4193
    return uniqueLocal || IN6_IS_ADDR_SITELOCAL(&address) ? Scope::kUniqueLocal : Scope::kGlobal;
}

// The form of in6_addr's bytes, without colons.
std::optional<std::string> fromHexDigits(const std::string& digits) {
    if (digits.size() != kHexDigits) return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < kHexDigits; i += 4) {
        text += (i == 0 ? "" : ":") + digits.substr(i, 4);
    }
    return normalisedAddress(text);
}

// Greater is better, but for the address itself, where the lower text wins.
auto rank(const AddressCandidate& candidate) {
    return std::tuple(scopeOf(candidate.address), (candidate.flags & IFA_F_DEPRECATED) == 0,
                      (candidate.flags & IFA_F_TEMPORARY) == 0);
}

bool better(const AddressCandidate& left, const AddressCandidate& right) {
    return rank(left) == rank(right) ? left.address < right.address : rank(left) > rank(right);
}

bool showable(const AddressCandidate& candidate) {
    return !isTentative(candidate.flags) && (candidate.flags & IFA_F_DADFAILED) == 0 &&
           scopeOf(candidate.address) != Scope::kNone;
}

}  // namespace

std::optional<std::string> normalisedAddress(const std::string& text) {
    in6_addr address;
    char normal[INET6_ADDRSTRLEN];
    if (inet_pton(AF_INET6, text.c_str(), &address) != 1) return std::nullopt;
    if (inet_ntop(AF_INET6, &address, normal, sizeof normal) == nullptr) return std::nullopt;
    return normal;
}

// proc(5): address, interface number, prefix length, scope and flags in hexadecimal, then the interface's name.
AddressFlags readAddressFlags(std::istream& lines, const std::string& interfaceName) {
    AddressFlags found;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string digits, number, prefix, scope, flagText, name;
        if (!(words >> digits >> number >> prefix >> scope >> flagText >> name) || name != interfaceName) continue;
        std::uint32_t flags = 0;
        const char* const end = flagText.data() + flagText.size();
        const auto [stop, error] = std::from_chars(flagText.data(), end, flags, 16);
        const auto address = fromHexDigits(digits);
        if (error == std::errc{} && stop == end && address) found.emplace(*address, flags);
    }
    return found;
}

bool isTentative(std::uint32_t flags) {
    return (flags & (IFA_F_TENTATIVE | IFA_F_OPTIMISTIC)) != 0;
}

const AddressCandidate* chooseAddress(std::span<const AddressCandidate> candidates) {
    const AddressCandidate* best = nullptr;
    for (const AddressCandidate& candidate : candidates) {
        if (showable(candidate) && (best == nullptr || better(candidate, *best))) best = &candidate;
    }
    return best;
}

}  // namespace network
