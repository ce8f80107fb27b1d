// Connection manager: clients, their notifications, and what belongs to no single profile.
#include <string>
#include <utility>

#include "connection_service.h"

namespace {

using network::backend;
using network::Client;
using network::connectionService;
using network::handleCall;

// Passes a change on to every client that listens, also when a callback destroys clients meanwhile.
class Notifier final : public network::Observer {
  public:
    void connectionTypeChanged(int connectionType) override {
        for (const void* handle : connectionService().clients.handles()) {
            const Client* client = connectionService().clients.find(handle);
            if (client == nullptr || client->typeChanged.function == nullptr) continue;
            const auto [function, userData] = client->typeChanged;
            function(connectionType, userData);
        }
    }

    void addressChanged(const std::string& ipv4, const std::string& ipv6) override {
        const std::pair texts(ipv4, ipv6);  // the callback may end the network that the texts belong to
        for (const void* handle : connectionService().clients.handles()) {
            const Client* client = connectionService().clients.find(handle);
            if (client == nullptr || client->addressChanged.function == nullptr) continue;
            const auto [function, userData] = client->addressChanged;
            function(texts.first.c_str(), texts.second.c_str(), userData);
        }
    }
};

constinit Notifier notifier;

void dropProfilesAndChecks(connection_handle client) {
    auto& service = connectionService();
    network::dropChecks(client);
    for (const void* handle : service.profiles.handles()) {
        if (service.profiles.find(handle)->client == client) network::dropChecks(handle);
    }
    service.profiles.removeIf([&](const auto& profile) { return profile.client == client && !profile.isClone; });
    service.iterators.removeIf([&](const auto& iterator) { return iterator.client == client; });
}

}  // namespace

int connection_create(connection_handle* connection) {
    return network::boundaryCall(__func__, [&]() -> int {
        if (connection == nullptr) return CONNECTION_ERROR_INVALID_PARAMETER;
        if (backend() == nullptr) return CONNECTION_ERROR_INVALID_OPERATION;
        *connection = connectionService().clients.add({});
        backend()->observe(&notifier);
        return CONNECTION_ERROR_NONE;
    });
}

int connection_destroy(connection_handle connection) {
    return handleCall(__func__, connectionService().clients, connection, true, [&](const Client&) -> int {
        dropProfilesAndChecks(connection);
        connectionService().clients.remove(connection);
        if (connectionService().clients.empty()) backend()->observe(nullptr);
        return CONNECTION_ERROR_NONE;
    });
}

int connection_set_type_changed_cb(connection_handle connection, connection_type_changed_cb cb, void* user_data) {
    return handleCall(__func__, connectionService().clients, connection, cb != nullptr, [&](Client& client) -> int {
        client.typeChanged = {cb, user_data};
        return CONNECTION_ERROR_NONE;
    });
}

int connection_unset_type_changed_cb(connection_handle connection) {
    return handleCall(__func__, connectionService().clients, connection, true, [&](Client& client) -> int {
        client.typeChanged = {};
        return CONNECTION_ERROR_NONE;
    });
}

int connection_set_ip_address_changed_cb(connection_handle connection, connection_address_changed_cb cb,
                                         void* user_data) {
    return handleCall(__func__, connectionService().clients, connection, cb != nullptr, [&](Client& client) -> int {
        client.addressChanged = {cb, user_data};
        return CONNECTION_ERROR_NONE;
    });
}

int connection_unset_ip_address_changed_cb(connection_handle connection) {
    return handleCall(__func__, connectionService().clients, connection, true, [&](Client& client) -> int {
        client.addressChanged = {};
        return CONNECTION_ERROR_NONE;
    });
}

int connection_get_ethernet_state(connection_handle connection, int* state) {
    return handleCall(__func__, connectionService().clients, connection, state != nullptr,
                      [&](const Client&) -> int { return backend()->ethernetState(*state); });
}

int connection_get_mac_address(connection_handle connection, int connection_type, char** mac) {
    return handleCall(__func__, connectionService().clients, connection, mac != nullptr, [&](const Client&) -> int {
        if (connection_type != CONNECTION_TYPE_ETHERNET && connection_type != CONNECTION_TYPE_WIFI) {
            return CONNECTION_ERROR_INVALID_PARAMETER;
        }
        std::string text;
        const int error = backend()->macAddress(connection_type, text);
        return error == CONNECTION_ERROR_NONE ? network::copyText(text, mac) : error;
    });
}

int connection_get_is_online_ipv6_async(connection_handle connection, connection_result_cb cb, void* user_data) {
    return handleCall(__func__, connectionService().clients, connection, cb != nullptr, [&](const Client&) -> int {
        return network::startCheck(connection, cb, user_data, [](const network::Answer& answer, auto& question) {
            return backend()->askOnline(answer, question);
        });
    });
}

int connection_unset_async_cb(void* connection_or_profile) {
    return network::boundaryCall(__func__, [&]() -> int {
        if (connection_or_profile == nullptr) return CONNECTION_ERROR_INVALID_PARAMETER;
        const auto& service = connectionService();
        if (service.clients.find(connection_or_profile) == nullptr &&
            service.profiles.find(connection_or_profile) == nullptr) {
            return CONNECTION_ERROR_INVALID_OPERATION;
        }
        network::dropChecks(connection_or_profile);
        return CONNECTION_ERROR_NONE;
    });
}
