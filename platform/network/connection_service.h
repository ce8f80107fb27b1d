// What the connection manager's C functions share: the live clients, profiles, iterators and pending checks.
#pragma once

#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backend.h"
#include "connection_manager.h"
#include "handle_table.h"
#include "ipv6_settings.h"
#include "network.h"

namespace network {

template <typename Function>
struct Callback {
    Function function = nullptr;
    void* userData = nullptr;
};

struct Client {
    Callback<connection_type_changed_cb> typeChanged;
    Callback<connection_address_changed_cb> addressChanged;
    std::map<std::string, connection_profile_handle> profiles;  // one handle for each identity, for the client's life
};

struct ProfileHandle {
    connection_handle client = nullptr;
    std::string id;
    bool isClone = false;
    Ipv6Settings changes;  // set on the object, not stored yet
};

struct ProfileIterator {
    connection_handle client = nullptr;
    std::vector<std::string> ids;
    std::size_t next = 0;
};

struct Check {
    void* askedOn = nullptr;  // the client or profile handle
    Callback<connection_result_cb> callback;
    std::unique_ptr<Question> question;
};

struct ConnectionService {
    HandleTable<Client> clients;
    HandleTable<ProfileHandle> profiles;
    HandleTable<ProfileIterator> iterators;
    std::map<std::uint64_t, Check> checks;
};

ConnectionService& connectionService();

// A heap copy for a C caller, who frees it.
int copyText(const std::string& text, char** out);

// One value of a profile or an access point for a C caller. What the network has not given is NO_CONNECTION.
int giveText(const std::string& text, char** out);
int givePrefixLength(const Ipv6Values& values, std::uint8_t* length);
int giveServer(const Ipv6Values& values, int order, char** address);  // order from 1
int giveDnsMode(const Ipv6Values& values, int* type);

// Drops the pending checks that were asked on a client or profile handle.
void dropChecks(const void* askedOn);

// Asks the backend through `ask(answer, question)` and keeps the check until its answer, its unset or its owner's end.
template <typename Ask>
int startCheck(void* askedOn, connection_result_cb function, void* userData, Ask ask);

// Ends every client, for a network that goes away.
void releaseConnections();

// One boundary call: a failure that the scenario wants, else the body's result. Running out of memory is a result too.
template <typename Body>
int boundaryCall(std::string_view function, Body body) {
    try {
        Backend* network = backend();
        if (const int fault = network == nullptr ? 0 : network->injectedFault(function); fault != 0) return fault;
        return body();
    } catch (const std::bad_alloc&) {
        return CONNECTION_ERROR_OUT_OF_MEMORY;
    }
}

// As above for a call on a handle: the body gets the live object. `argumentsGiven` is false when a pointer is null.
template <typename Object, typename Body>
int handleCall(std::string_view function, const HandleTable<Object>& table, const void* handle, bool argumentsGiven,
               Body body) {
    return boundaryCall(function, [&]() -> int {
        if (handle == nullptr || !argumentsGiven) return CONNECTION_ERROR_INVALID_PARAMETER;
        Object* object = table.find(handle);
        return object == nullptr ? CONNECTION_ERROR_INVALID_OPERATION : body(*object);
    });
}

// Of an address family argument.
constexpr int familyError(int family) {
    if (family == CONNECTION_ADDRESS_FAMILY_IPV6) return CONNECTION_ERROR_NONE;
    return family == CONNECTION_ADDRESS_FAMILY_IPV4 ? CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED
                                                    : CONNECTION_ERROR_INVALID_PARAMETER;
}

// A call on a profile whose client lives. A clone outlasts its client, but can only be destroyed then.
template <typename Body>
int profileCall(std::string_view function, connection_profile_handle handle, bool argumentsGiven, Body body) {
    const auto& service = connectionService();
    return handleCall(function, service.profiles, handle, argumentsGiven, [&](ProfileHandle& profile) -> int {
        return service.clients.find(profile.client) ? body(profile) : CONNECTION_ERROR_INVALID_OPERATION;
    });
}

void deliverAnswer(std::uint64_t number, int result);
std::uint64_t newCheckNumber();

template <typename Ask>
int startCheck(void* askedOn, connection_result_cb function, void* userData, Ask ask) {
    const std::uint64_t number = newCheckNumber();
    std::unique_ptr<Question> question;
    const int error = ask([number](int result) { deliverAnswer(number, result); }, question);
    if (error != CONNECTION_ERROR_NONE) return error;
    connectionService().checks.emplace(number, Check{askedOn, {function, userData}, std::move(question)});
    return CONNECTION_ERROR_NONE;
}

}  // namespace network
