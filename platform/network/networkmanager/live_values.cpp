#include "live_values.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <fstream>

#include "address_choice.h"

namespace network {
namespace {

constexpr const char* kKernelAddresses = "/proc/net/if_inet6";

// Without flags from the kernel, or its interface, every address is taken for usable; one that the kernel does not
// have is not.
std::vector<AddressCandidate> candidatesOf(NMIPConfig* config, const std::string& interfaceName) {
    std::vector<AddressCandidate> candidates;
    std::ifstream lines(kKernelAddresses);
    const bool flagsAreKnown = lines.is_open() && if_nametoindex(interfaceName.c_str()) != 0;
    const AddressFlags flags = readAddressFlags(lines, interfaceName);
    for (auto* address : itemsOf<NMIPAddress>(nm_ip_config_get_addresses(config))) {
        const auto text = normalisedAddress(textOf(nm_ip_address_get_address(address)));
        if (!text) continue;
        const auto known = flags.find(*text);
        if (flagsAreKnown && known == flags.end()) continue;
        candidates.push_back({*text, static_cast<std::uint8_t>(nm_ip_address_get_prefix(address)),
                              known == flags.end() ? 0 : known->second});
    }
    return candidates;
}

std::string firstIpv4(NMDevice* device) {
    NMIPConfig* config = nm_device_get_ip4_config(device);
    if (config == nullptr) return "";
    const auto addresses = itemsOf<NMIPAddress>(nm_ip_config_get_addresses(config));
    return addresses.empty() ? "" : textOf(nm_ip_address_get_address(addresses.front()));
}

}  // namespace

NMDevice* deviceOf(NMActiveConnection* active) {
    const auto devices = itemsOf<NMDevice>(nm_active_connection_get_devices(active));
    return devices.empty() ? nullptr : devices.front();
}

void readLiveValues(NMActiveConnection* active, Ipv6Values& values) {
    NMIPConfig* config = nm_active_connection_get_ip6_config(active);
    NMDevice* device = deviceOf(active);
    if (config == nullptr || device == nullptr) return;
    const auto candidates = candidatesOf(config, interfaceOf(device));
    if (const AddressCandidate* shown = chooseAddress(candidates); shown != nullptr) {
        values.address = shown->address;
        values.prefixLength = shown->prefixLength;
    }
    values.gateway = normalisedAddress(textOf(nm_ip_config_get_gateway(config))).value_or("");
    const char* const* servers = nm_ip_config_get_nameservers(config);
    for (; servers != nullptr && *servers != nullptr; ++servers) {
        if (const auto server = normalisedAddress(*servers)) values.dns.push_back(*server);
    }
}

Ipv6Values liveValuesOf(NMClient* client, const std::string& uuid) {
    Ipv6Values values;
    for (auto* active : itemsOf<NMActiveConnection>(nm_client_get_active_connections(client))) {
        const bool runs = nm_active_connection_get_state(active) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED;
        if (!runs || uuid != textOf(nm_active_connection_get_uuid(active))) continue;
        readLiveValues(active, values);
        break;
    }
    return values;
}

ShownAddresses shownAddressesOf(NMDevice* device) {
    ShownAddresses shown;
    shown.ipv4 = firstIpv4(device);
    NMIPConfig* config = nm_device_get_ip6_config(device);
    if (config == nullptr) return shown;
    const auto candidates = candidatesOf(config, interfaceOf(device));
    if (const AddressCandidate* chosen = chooseAddress(candidates)) shown.ipv6 = chosen->address;
    shown.settled = std::ranges::none_of(candidates, isTentative, &AddressCandidate::flags);
    return shown;
}

std::string interfaceOf(NMDevice* device) {
    const char* name = nm_device_get_ip_iface(device);
    return textOf(name != nullptr ? name : nm_device_get_iface(device));
}

std::optional<Neighbour> gatewayOf(NMActiveConnection* active) {
    if (active == nullptr) return std::nullopt;
    NMIPConfig* config = nm_active_connection_get_ip6_config(active);
    NMDevice* device = deviceOf(active);
    if (config == nullptr || device == nullptr) return std::nullopt;
    Neighbour gateway;
    gateway.interfaceIndex = if_nametoindex(interfaceOf(device).c_str());
    const bool usable = inet_pton(AF_INET6, textOf(nm_ip_config_get_gateway(config)).c_str(), &gateway.address) == 1 &&
                        !IN6_IS_ADDR_UNSPECIFIED(&gateway.address) && gateway.interfaceIndex != 0;
    return usable ? std::optional(gateway) : std::nullopt;
}

}  // namespace network
