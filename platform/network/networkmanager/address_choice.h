// Which of an interface's IPv6 addresses is the one to show.
#pragma once

#include <netinet/in.h>

#include <cstdint>
#include <istream>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace network {

// IFA_F_* bits of <linux/if_addr.h>, by address text in RFC 5952 form.
using AddressFlags = std::map<std::string, std::uint32_t>;

struct AddressCandidate {
    std::string address;  // RFC 5952 form
    std::uint8_t prefixLength = 0;
    std::uint32_t flags = 0;  // IFA_F_*
};

// The RFC 5952 form of an IPv6 address text, or nullopt when it is none.
std::optional<std::string> normalisedAddress(const std::string& text);

// Reads lines in the form of /proc/net/if_inet6, for one interface. Lines that are not in that form are passed over.
AddressFlags readAddressFlags(std::istream& lines, const std::string& interfaceName);

// Whether duplicate address detection has not finished yet.
bool isTentative(std::uint32_t flags);

/**
 * Global before unique local before link local; preferred before deprecated; permanent before temporary; never a
 * tentative or duplicate address. Between equals the lower text, because the order of a list is no property of it.
 * @return null when no address can be shown
 */
const AddressCandidate* chooseAddress(std::span<const AddressCandidate> candidates);

}  // namespace network
