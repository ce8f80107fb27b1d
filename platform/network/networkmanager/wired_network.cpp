#include "wired_network.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <fstream>
#include <string_view>

#include "address_choice.h"
#include "connection_manager.h"
#include "ipv6_change.h"

namespace network {
namespace {

constexpr const char* kKernelAddresses = "/proc/net/if_inet6";

template <typename T>
std::span<T* const> itemsOf(const GPtrArray* array) {
    if (array == nullptr) return {};
    return {reinterpret_cast<T* const*>(array->pdata), array->len};
}

std::string textOf(const char* text) {
    return text == nullptr ? "" : text;
}

bool isWired(NMConnection* profile) {
    return nm_connection_is_type(profile, NM_SETTING_WIRED_SETTING_NAME);
}

bool isWired(NMActiveConnection* active) {
    return textOf(nm_active_connection_get_connection_type(active)) == NM_SETTING_WIRED_SETTING_NAME;
}

// A veth becomes wired by the profile that runs on it.
bool isWired(NMDevice* device) {
    const NMDeviceType type = nm_device_get_device_type(device);
    return type == NM_DEVICE_TYPE_ETHERNET || type == NM_DEVICE_TYPE_VETH;
}

bool hasLink(NMDevice* device) {
    return (nm_device_get_interface_flags(device) & NM_DEVICE_INTERFACE_FLAG_CARRIER) != 0;
}

bool isManaged(NMDevice* device) {
    return nm_device_get_state(device) > NM_DEVICE_STATE_UNMANAGED;
}

// The most advanced activation of a profile, or null.
NMActiveConnection* activationOf(NMClient* client, const std::string& id) {
    NMActiveConnection* best = nullptr;
    for (auto* active : itemsOf<NMActiveConnection>(nm_client_get_active_connections(client))) {
        if (!isWired(active) || id != textOf(nm_active_connection_get_uuid(active))) continue;
        if (nm_active_connection_get_state(active) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED) return active;
        best = active;
    }
    return best;
}

NMDevice* deviceOf(NMActiveConnection* active) {
    const auto devices = itemsOf<NMDevice>(nm_active_connection_get_devices(active));
    return devices.empty() ? nullptr : devices.front();
}

// The daemon keeps a profile active for some seconds after its cable is pulled; it is not connected all the same.
int profileState(NMActiveConnection* active) {
    NMDevice* device = active == nullptr ? nullptr : deviceOf(active);
    if (device == nullptr || !hasLink(device)) return CONNECTION_PROFILE_STATE_DISCONNECTED;
    switch (nm_active_connection_get_state(active)) {
        case NM_ACTIVE_CONNECTION_STATE_ACTIVATED:
            return CONNECTION_PROFILE_STATE_CONNECTED;
        case NM_ACTIVE_CONNECTION_STATE_ACTIVATING:
            return CONNECTION_PROFILE_STATE_CONFIGURATION;
        default:
            return CONNECTION_PROFILE_STATE_DISCONNECTED;
    }
}

bool isConnected(NMDevice* device) {
    NMActiveConnection* active = nm_device_get_active_connection(device);
    return active != nullptr && isWired(active) && profileState(active) == CONNECTION_PROFILE_STATE_CONNECTED;
}

// Without flags from the kernel every address is taken for usable; one that the kernel does not have is not.
std::vector<AddressCandidate> candidatesOf(NMIPConfig* config, const std::string& interfaceName) {
    std::vector<AddressCandidate> candidates;
    std::ifstream lines(kKernelAddresses);
    const bool flagsAreKnown = lines.is_open();
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

int rankOf(NMDevice* device) {
    if (!isManaged(device)) return 0;
    if (isConnected(device)) return 3;
    return hasLink(device) ? 2 : 1;
}

std::string firstIpv4(NMDevice* device) {
    NMIPConfig* config = nm_device_get_ip4_config(device);
    if (config == nullptr) return "";
    const auto addresses = itemsOf<NMIPAddress>(nm_ip_config_get_addresses(config));
    return addresses.empty() ? "" : textOf(nm_ip_address_get_address(addresses.front()));
}

}  // namespace

std::vector<std::string> wiredProfiles(NMClient* client, int which) {
    std::vector<std::string> ids;
    for (auto* profile : itemsOf<NMConnection>(nm_client_get_connections(client))) {
        if (!isWired(profile)) continue;
        const std::string id = textOf(nm_connection_get_uuid(profile));
        const bool connected = profileState(activationOf(client, id)) == CONNECTION_PROFILE_STATE_CONNECTED;
        if (which == CONNECTION_ITERATOR_REGISTERED || connected) ids.push_back(id);
    }
    return ids;
}

std::optional<Profile> readProfile(NMClient* client, const std::string& id) {
    NMRemoteConnection* stored = nm_client_get_connection_by_uuid(client, id.c_str());
    if (stored == nullptr || !isWired(NM_CONNECTION(stored))) return std::nullopt;
    NMActiveConnection* active = activationOf(client, id);
    Profile profile{CONNECTION_PROFILE_TYPE_ETHERNET, profileState(active), {}};
    profile.ipv6.dnsIsStatic = dnsIsStatic(NM_CONNECTION(stored));
    if (profile.state != CONNECTION_PROFILE_STATE_DISCONNECTED) readLiveValues(active, profile.ipv6);
    return profile;
}

std::optional<int> linkState(NMClient* client) {
    bool managed = false;
    for (auto* device : itemsOf<NMDevice>(nm_client_get_devices(client))) {
        if (!isWired(device) || !isManaged(device)) continue;
        if (hasLink(device)) return CONNECTION_ETHERNET_CONNECTED;
        managed = true;
    }
    if (managed) return CONNECTION_ETHERNET_DISCONNECTED;
    if (nm_client_get_startup(client)) return std::nullopt;
    return CONNECTION_ETHERNET_DEACTIVATED;
}

NMDevice* wiredDevice(NMClient* client) {
    NMDevice* best = nullptr;
    for (auto* device : itemsOf<NMDevice>(nm_client_get_devices(client))) {
        if (isWired(device) && (best == nullptr || rankOf(device) > rankOf(best))) best = device;
    }
    return best;
}

ShownAddresses shownAddresses(NMClient* client) {
    ShownAddresses shown;
    NMDevice* device = wiredDevice(client);
    if (device == nullptr || !isConnected(device)) return shown;
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

std::optional<Neighbour> gatewayOf(NMClient* client, const std::string& id) {
    NMActiveConnection* active = activationOf(client, id);
    NMIPConfig* config = active == nullptr ? nullptr : nm_active_connection_get_ip6_config(active);
    NMDevice* device = active == nullptr ? nullptr : deviceOf(active);
    if (config == nullptr || device == nullptr) return std::nullopt;
    Neighbour gateway;
    gateway.interfaceIndex = if_nametoindex(interfaceOf(device).c_str());
    const bool usable = inet_pton(AF_INET6, textOf(nm_ip_config_get_gateway(config)).c_str(), &gateway.address) == 1 &&
                        !IN6_IS_ADDR_UNSPECIFIED(&gateway.address) && gateway.interfaceIndex != 0;
    return usable ? std::optional(gateway) : std::nullopt;
}

}  // namespace network
