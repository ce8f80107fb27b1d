// Connection manager: changing a profile object, and having it stored.
#include <arpa/inet.h>
#include <netinet/in.h>

#include <optional>
#include <string>

#include "connection_service.h"

namespace {

using network::Ipv6Settings;
using network::ProfileHandle;

constexpr int kNone = CONNECTION_ERROR_NONE;
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;
constexpr int kMostServers = 3;  // resolv.conf(5): MAXNS
constexpr int kLongestPrefix = 128;

// An address that one host can have (RFC 4291); `::` is none.
enum class AddressKind { Unusable, None, Unicast };

AddressKind kindOf(const char* text) {
    in6_addr address{};
    if (inet_pton(AF_INET6, text, &address) != 1 || IN6_IS_ADDR_MULTICAST(&address)) return AddressKind::Unusable;
    return IN6_IS_ADDR_UNSPECIFIED(&address) ? AddressKind::None : AddressKind::Unicast;
}

// The text of a gateway or server, which may be none; or nothing when it can be neither.
std::optional<std::string> optionalAddress(const char* text) {
    const AddressKind kind = kindOf(text);
    if (kind == AddressKind::Unusable) return std::nullopt;
    return kind == AddressKind::None ? "" : text;
}

// A setter: argument and family checks, then the change, which says whether the value is possible.
template <typename Change>
int changeProfile(std::string_view function, connection_profile_handle handle, int family, bool argumentsGiven,
                  Change change) {
    return network::profileCall(function, handle, argumentsGiven, [&](ProfileHandle& profile) -> int {
        if (const int error = network::familyError(family); error != kNone) return error;
        return change(profile.changes) ? kNone : kInvalidParameter;
    });
}

}  // namespace

int connection_profile_set_ip_config_type(connection_profile_handle profile, int family, int type) {
    return changeProfile(__func__, profile, family, true, [&](Ipv6Settings& changes) {
        if (type != CONNECTION_IP_CONFIG_STATIC && type != CONNECTION_IP_CONFIG_AUTOMATIC) return false;
        changes.isStatic = type == CONNECTION_IP_CONFIG_STATIC;
        return true;
    });
}

int connection_profile_set_dns_config_type(connection_profile_handle profile, int family, int type) {
    return changeProfile(__func__, profile, family, true, [&](Ipv6Settings& changes) {
        if (type != CONNECTION_DNS_CONFIG_STATIC && type != CONNECTION_DNS_CONFIG_DYNAMIC) return false;
        changes.dnsIsStatic = type == CONNECTION_DNS_CONFIG_STATIC;
        return true;
    });
}

int connection_profile_set_ip_address(connection_profile_handle profile, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr, [&](Ipv6Settings& changes) {
        if (kindOf(address) != AddressKind::Unicast) return false;
        changes.address = address;
        return true;
    });
}

int connection_profile_set_prefix_length(connection_profile_handle profile, int family, uint8_t length) {
    return changeProfile(__func__, profile, family, true, [&](Ipv6Settings& changes) {
        if (length == 0 || length > kLongestPrefix) return false;
        changes.prefixLength = length;
        return true;
    });
}

int connection_profile_set_gateway_address(connection_profile_handle profile, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr, [&](Ipv6Settings& changes) {
        const auto gateway = optionalAddress(address);
        if (gateway) changes.gateway = gateway;
        return gateway.has_value();
    });
}

int connection_profile_set_dns_address(connection_profile_handle profile, int order, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr, [&](Ipv6Settings& changes) {
        const auto server = optionalAddress(address);
        if (!server || order < 1 || order > kMostServers) return false;
        changes.dns[order] = *server;
        return true;
    });
}

// What could not be stored stays on the profile object.
int connection_update_profile(connection_handle connection, connection_profile_handle profile) {
    const auto& service = network::connectionService();
    return network::handleCall(__func__, service.clients, connection, profile != nullptr, [&](const auto&) -> int {
        ProfileHandle* changed = service.profiles.find(profile);
        if (changed == nullptr || changed->client != connection) return CONNECTION_ERROR_INVALID_OPERATION;
        const int error = network::backend()->store(changed->id, changed->changes);
        if (error == kNone) changed->changes = {};
        return error;
    });
}
