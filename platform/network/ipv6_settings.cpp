#include "ipv6_settings.h"

#include <arpa/inet.h>
#include <netinet/in.h>

namespace network {
namespace {

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

template <typename Value, typename Field>
void take(const std::optional<Value>& change, Field& field) {
    if (change) field = *change;
}

}  // namespace

void overlay(const Ipv6Settings& settings, Ipv6Values& values) {
    take(settings.address, values.address);
    take(settings.gateway, values.gateway);
    take(settings.dnsIsStatic, values.dnsIsStatic);
    if (settings.prefixLength) values.prefixLength = settings.prefixLength;
    for (const auto& [order, server] : settings.dns) {
        const auto count = static_cast<std::size_t>(order);
        if (values.dns.size() < count) values.dns.resize(count);
        values.dns[count - 1] = server;
    }
    std::erase(values.dns, "");
}

void merge(const Ipv6Settings& changes, Ipv6Settings& settings) {
    take(changes.isStatic, settings.isStatic);
    take(changes.address, settings.address);
    take(changes.prefixLength, settings.prefixLength);
    take(changes.gateway, settings.gateway);
    take(changes.dnsIsStatic, settings.dnsIsStatic);
    for (const auto& [order, server] : changes.dns)
        settings.dns[order] = server;
}

bool changeMode(Ipv6Settings& settings, int type) {
    if (type != CONNECTION_IP_CONFIG_STATIC && type != CONNECTION_IP_CONFIG_AUTOMATIC) return false;
    settings.isStatic = type == CONNECTION_IP_CONFIG_STATIC;
    return true;
}

bool changeDnsMode(Ipv6Settings& settings, int type) {
    if (type != CONNECTION_DNS_CONFIG_STATIC && type != CONNECTION_DNS_CONFIG_DYNAMIC) return false;
    settings.dnsIsStatic = type == CONNECTION_DNS_CONFIG_STATIC;
    return true;
}

bool changeAddress(Ipv6Settings& settings, const char* address) {
    if (kindOf(address) != AddressKind::Unicast) return false;
    settings.address = address;
    return true;
}

bool changePrefixLength(Ipv6Settings& settings, std::uint8_t length) {
    if (length == 0 || length > kLongestPrefix) return false;
    settings.prefixLength = length;
    return true;
}

bool changeGateway(Ipv6Settings& settings, const char* address) {
    const auto gateway = optionalAddress(address);
    if (gateway) settings.gateway = gateway;
    return gateway.has_value();
}

bool changeServer(Ipv6Settings& settings, int order, const char* address) {
    const auto server = optionalAddress(address);
    if (!server || order < 1 || order > kMostServers) return false;
    settings.dns[order] = *server;
    return true;
}

}  // namespace network
