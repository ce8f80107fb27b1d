// Pending checks of the connection manager, and the end of everything when the network goes away.
#include "connection_service.h"

#include <cstring>
#include <utility>

namespace network {

ConnectionService& connectionService() {
    // Never destroyed: at process end the toolkit, which the questions' timers need, is gone already.
    static ConnectionService& service = *new ConnectionService;
    return service;
}

std::uint64_t newCheckNumber() {
    static constinit std::uint64_t last = 0;
    return ++last;
}

int copyText(const std::string& text, char** out) {
    char* copy = strdup(text.c_str());
    if (copy == nullptr) return CONNECTION_ERROR_OUT_OF_MEMORY;
    *out = copy;
    return CONNECTION_ERROR_NONE;
}

int giveText(const std::string& text, char** out) {
    return text.empty() ? CONNECTION_ERROR_NO_CONNECTION : copyText(text, out);
}

int givePrefixLength(const Ipv6Values& values, std::uint8_t* length) {
    if (!values.prefixLength) return CONNECTION_ERROR_NO_CONNECTION;
    *length = *values.prefixLength;
    return CONNECTION_ERROR_NONE;
}

int giveServer(const Ipv6Values& values, int order, char** address) {
    if (order < 1) return CONNECTION_ERROR_INVALID_PARAMETER;
    const auto index = static_cast<std::size_t>(order) - 1;
    return index < values.dns.size() ? giveText(values.dns[index], address) : CONNECTION_ERROR_NO_CONNECTION;
}

int giveDnsMode(const Ipv6Values& values, int* type) {
    *type = values.dnsIsStatic ? CONNECTION_DNS_CONFIG_STATIC : CONNECTION_DNS_CONFIG_DYNAMIC;
    return CONNECTION_ERROR_NONE;
}

void dropChecks(const void* askedOn) {
    std::erase_if(connectionService().checks, [&](const auto& entry) { return entry.second.askedOn == askedOn; });
}

// Forgets the check before its callback runs: the callback may unset, ask again or destroy the client.
void deliverAnswer(std::uint64_t number, int result) {
    const auto check = connectionService().checks.extract(number);
    if (check.empty()) return;
    const auto [function, userData] = check.mapped().callback;
    function(result, userData);
}

void releaseConnections() {
    if (Backend* network = backend()) network->observe(nullptr);
    connectionService() = ConnectionService{};
}

}  // namespace network
