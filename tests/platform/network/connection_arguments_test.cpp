// Every boundary function of the connection manager against null, foreign, stale and wrong-kind handles, null outs,
// impossible values and failures that a scenario wants.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "connection_manager.h"
#include "main_loop.h"
#include "temporary_scenario.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;
constexpr int kInvalidOperation = CONNECTION_ERROR_INVALID_OPERATION;

void onResult(int, void*) {}
void onAddress(const char*, const char*, void*) {}

// Frees what a call gave, so that a row is one line.
struct Text {
    char* text = nullptr;
    ~Text() { std::free(text); }
    operator char**() { return &text; }
};

enum class Kind { Client, Iterator, Profile, Clone };

struct Row {
    const char* name;
    Kind kind;
    std::function<int(void*)> call;          // with all other arguments right
    std::function<int(void*)> nullArgument;  // with a null in them, or empty when there is no other pointer
};

const Row kRows[] = {
    {"connection_set_type_changed_cb", Kind::Client,
     [](void* h) { return connection_set_type_changed_cb(h, onResult, nullptr); },
     [](void* h) { return connection_set_type_changed_cb(h, nullptr, nullptr); }},
    {"connection_unset_type_changed_cb", Kind::Client, connection_unset_type_changed_cb, {}},
    {"connection_set_ip_address_changed_cb", Kind::Client,
     [](void* h) { return connection_set_ip_address_changed_cb(h, onAddress, nullptr); },
     [](void* h) { return connection_set_ip_address_changed_cb(h, nullptr, nullptr); }},
    {"connection_unset_ip_address_changed_cb", Kind::Client, connection_unset_ip_address_changed_cb, {}},
    {"connection_get_ethernet_state", Kind::Client,
     [](void* h) {
         int state;
         return connection_get_ethernet_state(h, &state);
     },
     [](void* h) { return connection_get_ethernet_state(h, nullptr); }},
    {"connection_get_mac_address", Kind::Client,
     [](void* h) { return connection_get_mac_address(h, CONNECTION_TYPE_ETHERNET, Text()); },
     [](void* h) { return connection_get_mac_address(h, CONNECTION_TYPE_ETHERNET, nullptr); }},
    {"connection_get_is_online_ipv6_async", Kind::Client,
     [](void* h) { return connection_get_is_online_ipv6_async(h, onResult, nullptr); },
     [](void* h) { return connection_get_is_online_ipv6_async(h, nullptr, nullptr); }},
    {"connection_unset_async_cb", Kind::Client, connection_unset_async_cb, {}},
    {"connection_unset_async_cb", Kind::Profile, connection_unset_async_cb, {}},
    {"connection_get_profile_iterator", Kind::Client,
     [](void* h) {
         void* it;
         return connection_get_profile_iterator(h, CONNECTION_ITERATOR_CONNECTED, &it);
     },
     [](void* h) { return connection_get_profile_iterator(h, CONNECTION_ITERATOR_CONNECTED, nullptr); }},
    {"connection_profile_iterator_next", Kind::Iterator,
     [](void* h) {
         void* profile;
         return connection_profile_iterator_next(h, &profile);
     },
     [](void* h) { return connection_profile_iterator_next(h, nullptr); }},
    {"connection_profile_clone", Kind::Profile,
     [](void* h) {
         void* copy;
         return connection_profile_clone(&copy, h);
     },
     [](void* h) { return connection_profile_clone(nullptr, h); }},
    {"connection_profile_get_type", Kind::Profile,
     [](void* h) {
         int type;
         return connection_profile_get_type(h, &type);
     },
     [](void* h) { return connection_profile_get_type(h, nullptr); }},
    {"connection_profile_get_state", Kind::Profile,
     [](void* h) {
         int state;
         return connection_profile_get_state(h, &state);
     },
     [](void* h) { return connection_profile_get_state(h, nullptr); }},
    {"connection_profile_get_ip_address", Kind::Profile,
     [](void* h) { return connection_profile_get_ip_address(h, kIpv6, Text()); },
     [](void* h) { return connection_profile_get_ip_address(h, kIpv6, nullptr); }},
    {"connection_profile_get_prefix_length", Kind::Profile,
     [](void* h) {
         uint8_t length;
         return connection_profile_get_prefix_length(h, kIpv6, &length);
     },
     [](void* h) { return connection_profile_get_prefix_length(h, kIpv6, nullptr); }},
    {"connection_profile_get_gateway_address", Kind::Profile,
     [](void* h) { return connection_profile_get_gateway_address(h, kIpv6, Text()); },
     [](void* h) { return connection_profile_get_gateway_address(h, kIpv6, nullptr); }},
    {"connection_profile_get_dns_address", Kind::Profile,
     [](void* h) { return connection_profile_get_dns_address(h, 1, kIpv6, Text()); },
     [](void* h) { return connection_profile_get_dns_address(h, 1, kIpv6, nullptr); }},
    {"connection_profile_get_dns_config_type", Kind::Profile,
     [](void* h) {
         int type;
         return connection_profile_get_dns_config_type(h, kIpv6, &type);
     },
     [](void* h) { return connection_profile_get_dns_config_type(h, kIpv6, nullptr); }},
    {"connection_profile_check_gateway6_async", Kind::Profile,
     [](void* h) { return connection_profile_check_gateway6_async(h, onResult, nullptr); },
     [](void* h) { return connection_profile_check_gateway6_async(h, nullptr, nullptr); }},
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
              CONNECTION_ERROR_OPERATION_FAILED);
    say({"profile", "remove", "wired"});
    int type = 77;
    EXPECT_EQ(connection_profile_get_type(handles.profile, &type), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(connection_profile_get_type(handles.clone, &type), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(type, 77);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(length, 77);
}

}  // namespace
