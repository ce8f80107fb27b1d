#include "ipv6_settings.h"

namespace network {
namespace {

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

}  // namespace network
