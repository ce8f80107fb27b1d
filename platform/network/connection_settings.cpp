// Connection manager: changing a profile object, and having it stored.
#include "connection_service.h"

namespace {

using network::Ipv6Settings;
using network::ProfileHandle;

constexpr int kNone = CONNECTION_ERROR_NONE;

// A setter: argument and family checks, then the change, which says whether the value is possible.
template <typename Change>
int changeProfile(std::string_view function, connection_profile_handle handle, int family, bool argumentsGiven,
                  Change change) {
    return network::profileCall(function, handle, argumentsGiven, [&](ProfileHandle& profile) -> int {
        if (const int error = network::familyError(family); error != kNone) return error;
        return change(profile.changes) ? kNone : CONNECTION_ERROR_INVALID_PARAMETER;
    });
}

}  // namespace

int connection_profile_set_ip_config_type(connection_profile_handle profile, int family, int type) {
    return changeProfile(__func__, profile, family, true,
                         [&](Ipv6Settings& changes) { return network::changeMode(changes, type); });
}

int connection_profile_set_dns_config_type(connection_profile_handle profile, int family, int type) {
    return changeProfile(__func__, profile, family, true,
                         [&](Ipv6Settings& changes) { return network::changeDnsMode(changes, type); });
}

int connection_profile_set_ip_address(connection_profile_handle profile, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr,
                         [&](Ipv6Settings& changes) { return network::changeAddress(changes, address); });
}

int connection_profile_set_prefix_length(connection_profile_handle profile, int family, uint8_t length) {
    return changeProfile(__func__, profile, family, true,
                         [&](Ipv6Settings& changes) { return network::changePrefixLength(changes, length); });
}

int connection_profile_set_gateway_address(connection_profile_handle profile, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr,
                         [&](Ipv6Settings& changes) { return network::changeGateway(changes, address); });
}

int connection_profile_set_dns_address(connection_profile_handle profile, int order, int family, const char* address) {
    return changeProfile(__func__, profile, family, address != nullptr,
                         [&](Ipv6Settings& changes) { return network::changeServer(changes, order, address); });
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
