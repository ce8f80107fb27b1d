// Every boundary function of the connection manager against null, foreign, stale and wrong-kind handles, null outs,
// impossible values and failures that a scenario wants.
#include <gtest/gtest.h>

#include "argument_rows.h"
#include "connection_manager.h"
#include "main_loop.h"
#include "temporary_scenario.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;
constexpr int kInvalidOperation = CONNECTION_ERROR_INVALID_OPERATION;

void onResult(int, void*) {}
void onAddress(const char*, const char*, void*) {}

enum class Kind { Client, Iterator, Profile, Clone };

using Row = ArgumentRow<Kind>;

template <typename Call>
Row textSetter(const char* name, Call call) {
    return {name, Kind::Profile, [call](void* handle) { return call(handle, "2001:db8::7"); },
            [call](void* handle) { return call(handle, nullptr); }};
}

const Row kRows[] = {
    registration("connection_set_type_changed_cb", Kind::Client, onResult, connection_set_type_changed_cb),
    registration("connection_set_ip_address_changed_cb", Kind::Client, onAddress, connection_set_ip_address_changed_cb),
    registration("connection_get_is_online_ipv6_async", Kind::Client, onResult, connection_get_is_online_ipv6_async),
    registration("connection_profile_check_gateway6_async", Kind::Profile, onResult,
                 connection_profile_check_gateway6_async),
    {"connection_unset_type_changed_cb", Kind::Client, connection_unset_type_changed_cb, {}},
    {"connection_unset_ip_address_changed_cb", Kind::Client, connection_unset_ip_address_changed_cb, {}},
    {"connection_unset_async_cb", Kind::Client, connection_unset_async_cb, {}},
    {"connection_unset_async_cb", Kind::Profile, connection_unset_async_cb, {}},
    getter<int>("connection_get_ethernet_state", Kind::Client, connection_get_ethernet_state),
    textGetter("connection_get_mac_address", Kind::Client,
               [](void* h, char** out) { return connection_get_mac_address(h, CONNECTION_TYPE_ETHERNET, out); }),
    getter<void*>("connection_get_profile_iterator", Kind::Client,
                  [](void* h, void** out) { return connection_get_profile_iterator(h, 1, out); }),
    getter<void*>("connection_profile_iterator_next", Kind::Iterator, connection_profile_iterator_next),
    getter<void*>("connection_profile_clone", Kind::Profile,
                  [](void* h, void** out) { return connection_profile_clone(out, h); }),
    getter<int>("connection_profile_get_type", Kind::Profile, connection_profile_get_type),
    getter<int>("connection_profile_get_state", Kind::Profile, connection_profile_get_state),
    textGetter("connection_profile_get_ip_address", Kind::Profile,
               [](void* h, char** out) { return connection_profile_get_ip_address(h, kIpv6, out); }),
    getter<uint8_t>("connection_profile_get_prefix_length", Kind::Profile,
                    [](void* h, uint8_t* out) { return connection_profile_get_prefix_length(h, kIpv6, out); }),
    textGetter("connection_profile_get_gateway_address", Kind::Profile,
               [](void* h, char** out) { return connection_profile_get_gateway_address(h, kIpv6, out); }),
    textGetter("connection_profile_get_dns_address", Kind::Profile,
               [](void* h, char** out) { return connection_profile_get_dns_address(h, 1, kIpv6, out); }),
    getter<int>("connection_profile_get_dns_config_type", Kind::Profile,
                [](void* h, int* out) { return connection_profile_get_dns_config_type(h, kIpv6, out); }),
    {"connection_profile_set_ip_config_type",
     Kind::Profile,
     [](void* h) { return connection_profile_set_ip_config_type(h, kIpv6, CONNECTION_IP_CONFIG_STATIC); },
     {}},
    {"connection_profile_set_dns_config_type",
     Kind::Profile,
     [](void* h) { return connection_profile_set_dns_config_type(h, kIpv6, CONNECTION_DNS_CONFIG_STATIC); },
     {}},
    {"connection_profile_set_prefix_length",
     Kind::Profile,
     [](void* h) { return connection_profile_set_prefix_length(h, kIpv6, 48); },
     {}},
    textSetter("connection_profile_set_ip_address",
               [](void* h, const char* text) { return connection_profile_set_ip_address(h, kIpv6, text); }),
    textSetter("connection_profile_set_gateway_address",
               [](void* h, const char* text) { return connection_profile_set_gateway_address(h, kIpv6, text); }),
    textSetter("connection_profile_set_dns_address",
               [](void* h, const char* text) { return connection_profile_set_dns_address(h, 2, kIpv6, text); }),
    {"connection_profile_destroy", Kind::Clone, connection_profile_destroy, {}},
    {"connection_destroy_profile_iterator", Kind::Iterator, connection_destroy_profile_iterator, {}},
    {"connection_destroy", Kind::Client, connection_destroy, {}},
};

// One live handle of each kind.
struct Handles {
    Handles() {
        EXPECT_EQ(connection_create(&client), 0);
        void* used = nullptr;
        EXPECT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_REGISTERED, &used), 0);
        EXPECT_EQ(connection_profile_iterator_next(used, &profile), 0);
        EXPECT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_REGISTERED, &iterator), 0);
        EXPECT_EQ(connection_profile_clone(&clone, profile), 0);
    }
    void* of(Kind kind) const {
        switch (kind) {
            case Kind::Client:
                return client;
            case Kind::Iterator:
                return iterator;
            case Kind::Profile:
                return profile;
            case Kind::Clone:
                return clone;
        }
        return nullptr;
    }
    void *client = nullptr, *iterator = nullptr, *profile = nullptr, *clone = nullptr;
};

class ConnectionArguments : public testing::Test {
  protected:
    void SetUp() override {
        const auto selection = network::select(TemporaryScenario(kPromptNetwork).choice(), {});
        ASSERT_TRUE(selection.selected) << selection.text;
    }
    void say(const std::vector<std::string>& words) { ASSERT_EQ(network::command(words), ""); }

    MainLoop loop;
};

TEST_F(ConnectionArguments, AreCheckedByEveryFunction) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const Handles handles;
        int notAHandle = 0;
        EXPECT_EQ(row.call(nullptr), kInvalidParameter);
        EXPECT_EQ(row.call(&notAHandle), kInvalidOperation);
        void* wrongKind = row.kind == Kind::Iterator ? handles.client : handles.iterator;
        EXPECT_EQ(row.call(wrongKind), kInvalidOperation);
        if (row.nullArgument) {
            EXPECT_EQ(row.nullArgument(handles.of(row.kind)), kInvalidParameter);
        }
        EXPECT_EQ(row.call(handles.of(row.kind)), 0);
        connection_destroy(handles.client);
        if (row.kind != Kind::Clone) {
            EXPECT_EQ(row.call(handles.of(row.kind)), kInvalidOperation);
        }
    }
    EXPECT_EQ(connection_create(nullptr), kInvalidParameter);
}

TEST_F(ConnectionArguments, GiveWayToAWantedFailureOnce) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const Handles handles;
        say({"fault", row.name, "NOW_IN_PROGRESS", "2"});
        EXPECT_EQ(row.call(handles.of(row.kind)), CONNECTION_ERROR_NOW_IN_PROGRESS);
        EXPECT_EQ(row.call(handles.of(row.kind)), CONNECTION_ERROR_NOW_IN_PROGRESS);
        EXPECT_EQ(row.call(handles.of(row.kind)), 0);
    }
    say({"fault", "connection_create", "-12"});
    void* client = nullptr;
    EXPECT_EQ(connection_create(&client), CONNECTION_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(client, nullptr);
    const Handles handles;
    say({"fault", "connection_profile_iterator_has_next", "OPERATION_FAILED", "always"});
    EXPECT_FALSE(connection_profile_iterator_has_next(handles.iterator));
    say({"no-faults"});
    EXPECT_TRUE(connection_profile_iterator_has_next(handles.iterator));
}

TEST_F(ConnectionArguments, AreRefusedWhenImpossible) {
    const Handles handles;
    char* text = nullptr;
    uint8_t length = 77;
    int type = 77;
    constexpr int kIpv4 = CONNECTION_ADDRESS_FAMILY_IPV4, kUnknown = 2;
    constexpr int kNotSupported = CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED;
    for (const auto& [family, error] : {std::pair{kIpv4, kNotSupported}, std::pair{kUnknown, kInvalidParameter}}) {
        EXPECT_EQ(connection_profile_get_ip_address(handles.profile, family, &text), error);
        EXPECT_EQ(connection_profile_get_prefix_length(handles.profile, family, &length), error);
        EXPECT_EQ(connection_profile_get_gateway_address(handles.profile, family, &text), error);
        EXPECT_EQ(connection_profile_get_dns_address(handles.profile, 1, family, &text), error);
        EXPECT_EQ(connection_profile_get_dns_config_type(handles.profile, family, &type), error);
    }
    EXPECT_EQ(connection_profile_get_dns_address(handles.profile, 0, kIpv6, &text), kInvalidParameter);
    EXPECT_EQ(connection_profile_get_dns_address(handles.profile, 3, kIpv6, &text), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_get_mac_address(handles.client, 2, &text), kInvalidParameter);
    EXPECT_EQ(connection_get_mac_address(handles.client, CONNECTION_TYPE_WIFI, &text), CONNECTION_ERROR_NO_CONNECTION);
    void* iterator = nullptr;
    EXPECT_EQ(connection_get_profile_iterator(handles.client, 2, &iterator), kInvalidParameter);
    int notAHandle = 0;
    for (void* garbage : {static_cast<void*>(nullptr), static_cast<void*>(&notAHandle), handles.client}) {
        EXPECT_FALSE(connection_profile_iterator_has_next(garbage));
    }
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(length, 77);
    EXPECT_EQ(type, 77);
}

TEST_F(ConnectionArguments, FindNoValueWhereTheNetworkGaveNone) {
    const Handles handles;
    for (const auto& words : {std::vector<std::string>{"address", "none"}, {"router", "none"}, {"dns", "none"}})
        say(words);
    char* text = nullptr;
    uint8_t length = 77;
    EXPECT_EQ(connection_profile_get_ip_address(handles.profile, kIpv6, &text), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_profile_get_prefix_length(handles.profile, kIpv6, &length), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_profile_get_gateway_address(handles.profile, kIpv6, &text), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_profile_check_gateway6_async(handles.profile, onResult, nullptr),
              CONNECTION_ERROR_INVALID_GATEWAY);
    say({"mac", "none"});
    EXPECT_EQ(connection_get_mac_address(handles.client, CONNECTION_TYPE_ETHERNET, &text),
              CONNECTION_ERROR_NO_CONNECTION);
    say({"profile", "remove", "wired"});
    int type = 77;
    EXPECT_EQ(connection_profile_get_type(handles.profile, &type), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_profile_get_type(handles.clone, &type), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(type, 77);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(length, 77);
}

}  // namespace
