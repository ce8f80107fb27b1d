// Connection manager: profiles, their iterators and their live values.
#include <string>
#include <utility>

#include "connection_service.h"

namespace {

using network::backend;
using network::connectionService;
using network::familyError;
using network::handleCall;
using network::Ipv6Values;
using network::Profile;
using network::profileCall;
using network::ProfileHandle;
using network::ProfileIterator;

constexpr int kNone = CONNECTION_ERROR_NONE;

template <typename Read>
int readProfile(std::string_view function, connection_profile_handle handle, const void* out, Read read) {
    return profileCall(function, handle, out != nullptr, [&](const ProfileHandle& identity) -> int {
        Profile profile;
        const int error = backend()->profile(identity.id, profile);
        return error == kNone ? read(profile) : error;
    });
}

template <typename Read>
int readIpv6(std::string_view function, connection_profile_handle handle, int family, const void* out, Read read) {
    return profileCall(function, handle, out != nullptr, [&](const ProfileHandle& identity) -> int {
        if (const int error = familyError(family); error != kNone) return error;
        Profile profile;
        const int error = backend()->profile(identity.id, profile);
        if (error != kNone) return error;
        network::overlay(identity.changes, profile.ipv6);
        return read(profile.ipv6);
    });
}

// The service's own handle of a profile: the same one each time, but handed out without changes that were never stored.
connection_profile_handle handleOf(connection_handle client, const std::string& id) {
    auto& service = connectionService();
    connection_profile_handle& handle = service.clients.find(client)->profiles[id];
    if (handle == nullptr) handle = service.profiles.add({client, id, false, {}});
    service.profiles.find(handle)->changes = {};
    return handle;
}

}  // namespace

int connection_get_profile_iterator(connection_handle connection, int iterator_type, connection_profile_iterator* it) {
    return handleCall(__func__, connectionService().clients, connection, it != nullptr, [&](const auto&) -> int {
        if (iterator_type != CONNECTION_ITERATOR_REGISTERED && iterator_type != CONNECTION_ITERATOR_CONNECTED) {
            return CONNECTION_ERROR_INVALID_PARAMETER;
        }
        ProfileIterator iterator{connection, {}, 0};
        const int error = backend()->profiles(iterator_type, iterator.ids);
        if (error != kNone) return error;
        *it = connectionService().iterators.add(std::move(iterator));
        return kNone;
    });
}

bool connection_profile_iterator_has_next(connection_profile_iterator it) {
    return handleCall(__func__, connectionService().iterators, it, true, [](const ProfileIterator& iterator) -> int {
               return iterator.next < iterator.ids.size() ? kNone : CONNECTION_ERROR_ITERATOR_END;
           }) == kNone;
}

int connection_profile_iterator_next(connection_profile_iterator it, connection_profile_handle* profile) {
    return handleCall(__func__, connectionService().iterators, it, profile != nullptr,
                      [&](ProfileIterator& iterator) -> int {
                          if (iterator.next == iterator.ids.size()) return CONNECTION_ERROR_ITERATOR_END;
                          *profile = handleOf(iterator.client, iterator.ids[iterator.next++]);
                          return kNone;
                      });
}

int connection_destroy_profile_iterator(connection_profile_iterator it) {
    return handleCall(__func__, connectionService().iterators, it, true, [&](const auto&) -> int {
        connectionService().iterators.remove(it);
        return kNone;
    });
}

int connection_profile_clone(connection_profile_handle* copy, connection_profile_handle source) {
    return profileCall(__func__, source, copy != nullptr, [&](const ProfileHandle& profile) -> int {
        ProfileHandle clone = profile;
        clone.isClone = true;
        *copy = connectionService().profiles.add(std::move(clone));
        return kNone;
    });
}

int connection_profile_destroy(connection_profile_handle profile) {
    return handleCall(__func__, connectionService().profiles, profile, true, [&](const ProfileHandle& object) -> int {
        if (!object.isClone) return CONNECTION_ERROR_INVALID_OPERATION;
        network::dropChecks(profile);
        connectionService().profiles.remove(profile);
        return kNone;
    });
}

int connection_profile_get_type(connection_profile_handle profile, int* type) {
    return readProfile(__func__, profile, type, [&](const Profile& values) {
        *type = values.type;
        return kNone;
    });
}

int connection_profile_get_state(connection_profile_handle profile, int* state) {
    return readProfile(__func__, profile, state, [&](const Profile& values) {
        *state = values.state;
        return kNone;
    });
}

int connection_profile_get_ip_address(connection_profile_handle profile, int family, char** address) {
    return readIpv6(__func__, profile, family, address,
                    [&](const Ipv6Values& values) { return network::giveText(values.address, address); });
}

int connection_profile_get_prefix_length(connection_profile_handle profile, int family, uint8_t* length) {
    return readIpv6(__func__, profile, family, length,
                    [&](const Ipv6Values& values) { return network::givePrefixLength(values, length); });
}

int connection_profile_get_gateway_address(connection_profile_handle profile, int family, char** address) {
    return readIpv6(__func__, profile, family, address,
                    [&](const Ipv6Values& values) { return network::giveText(values.gateway, address); });
}

int connection_profile_get_dns_address(connection_profile_handle profile, int order, int family, char** address) {
    return readIpv6(__func__, profile, family, address,
                    [&](const Ipv6Values& values) { return network::giveServer(values, order, address); });
}

int connection_profile_get_dns_config_type(connection_profile_handle profile, int family, int* type) {
    return readIpv6(__func__, profile, family, type,
                    [&](const Ipv6Values& values) { return network::giveDnsMode(values, type); });
}

int connection_profile_check_gateway6_async(connection_profile_handle profile, connection_result_cb cb,
                                            void* user_data) {
    return profileCall(__func__, profile, cb != nullptr, [&](const ProfileHandle& identity) -> int {
        return network::startCheck(profile, cb, user_data, [&](const network::Answer& answer, auto& question) {
            return backend()->askGateway(identity.id, answer, question);
        });
    });
}
