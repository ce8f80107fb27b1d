// What every backend owes the users of the connection manager. A program includes this once and instantiates
// ConnectionContract with ways to bring up a wired network that is connected and answers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "connection_manager.h"
#include "main_loop.h"
#include "network/network.h"
#include "results.h"

struct NetworkUnderTest {
    std::string name;
    // Selects the network. A text: why this machine cannot, and the case is skipped.
    std::function<std::string()> open;
    std::function<void()> unplug, plug;
    std::function<void()> close = [] {};
};

inline void PrintTo(const NetworkUnderTest& network, std::ostream* out) {
    *out << network.name;
}

class ConnectionContract : public testing::TestWithParam<NetworkUnderTest> {
  protected:
    void SetUp() override {
        if (const std::string obstacle = GetParam().open(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        ASSERT_EQ(connection_create(&client), CONNECTION_ERROR_NONE);
    }
    void TearDown() override {
        if (client != nullptr) connection_destroy(client);
        network::release();
        GetParam().close();
    }

    static std::vector<connection_profile_handle> profiles(connection_handle of, int which) {
        connection_profile_iterator iterator = nullptr;
        EXPECT_EQ(connection_get_profile_iterator(of, which, &iterator), CONNECTION_ERROR_NONE);
        std::vector<connection_profile_handle> found;
        while (connection_profile_iterator_has_next(iterator)) {
            EXPECT_EQ(connection_profile_iterator_next(iterator, &found.emplace_back()), CONNECTION_ERROR_NONE);
        }
        connection_profile_handle untouched = iterator;
        EXPECT_EQ(connection_profile_iterator_next(iterator, &untouched), CONNECTION_ERROR_ITERATOR_END);
        EXPECT_EQ(untouched, iterator);
        EXPECT_EQ(connection_destroy_profile_iterator(iterator), CONNECTION_ERROR_NONE);
        return found;
    }
    connection_profile_handle wiredProfile() const {
        for (connection_profile_handle profile : profiles(client, CONNECTION_ITERATOR_CONNECTED)) {
            const int type = contract::number<int>(connection_profile_get_type, profile);
            if (type == CONNECTION_PROFILE_TYPE_ETHERNET) return profile;
        }
        return nullptr;
    }

    MainLoop loop;
    connection_handle client = nullptr;
};

TEST_P(ConnectionContract, TellsTheLiveValuesOfTheConnectedProfile) {
    constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
    using contract::isAddress, contract::number, contract::text;
    const auto profile = wiredProfile();
    ASSERT_NE(profile, nullptr);
    EXPECT_TRUE(isAddress(text(connection_profile_get_ip_address, profile, kIpv6)));
    EXPECT_TRUE(isAddress(text(connection_profile_get_gateway_address, profile, kIpv6)));
    EXPECT_TRUE(isAddress(text(connection_profile_get_dns_address, profile, 1, kIpv6)));
    EXPECT_EQ(number<std::uint8_t>(connection_profile_get_prefix_length, profile, kIpv6), 64);
    EXPECT_EQ(number<int>(connection_profile_get_dns_config_type, profile, kIpv6), CONNECTION_DNS_CONFIG_DYNAMIC);
    EXPECT_EQ(number<int>(connection_profile_get_state, profile), CONNECTION_PROFILE_STATE_CONNECTED);
    EXPECT_EQ(number<int>(connection_get_ethernet_state, client), CONNECTION_ETHERNET_CONNECTED);
    EXPECT_EQ(text(connection_get_mac_address, client, int{CONNECTION_TYPE_ETHERNET}).size(), 17U);
}

TEST_P(ConnectionContract, KeepsOneHandleForOneProfileAndSeparateOnesForSeparateClients) {
    connection_handle other = nullptr;
    ASSERT_EQ(connection_create(&other), 0);
    const auto first = profiles(client, CONNECTION_ITERATOR_REGISTERED);
    EXPECT_EQ(first, profiles(client, CONNECTION_ITERATOR_REGISTERED));
    for (connection_profile_handle profile : first)
        EXPECT_GE(contract::number<int>(connection_profile_get_type, profile), 0);
    const auto theirs = profiles(other, CONNECTION_ITERATOR_REGISTERED);
    ASSERT_FALSE(theirs.empty());
    EXPECT_NE(first.front(), theirs.front());

    connection_profile_handle clone = nullptr;
    ASSERT_EQ(connection_profile_clone(&clone, theirs.front()), 0);
    ASSERT_EQ(connection_destroy(other), 0);
    int type = -1;
    for (connection_profile_handle ended : {theirs.front(), clone})
        EXPECT_EQ(connection_profile_get_type(ended, &type), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(type, -1);
    EXPECT_EQ(connection_profile_get_type(first.front(), &type), 0);
    EXPECT_EQ(connection_profile_destroy(first.front()), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(connection_profile_destroy(clone), 0);
    EXPECT_EQ(connection_profile_destroy(clone), CONNECTION_ERROR_INVALID_OPERATION);
}

TEST_P(ConnectionContract, AnswersNobodyAfterUnsetOrDestroy) {
    connection_handle doomed = nullptr;
    connection_profile_handle clone = nullptr;
    ASSERT_EQ(connection_create(&doomed), 0);
    ASSERT_EQ(connection_profile_clone(&clone, wiredProfile()), 0);
    contract::Results dropped, kept;
    ASSERT_EQ(connection_profile_check_gateway6_async(wiredProfile(), contract::record, &dropped), 0);
    ASSERT_EQ(connection_profile_check_gateway6_async(clone, contract::record, &dropped), 0);
    ASSERT_EQ(connection_get_is_online_ipv6_async(doomed, contract::record, &dropped), 0);
    ASSERT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &kept), 0);
    EXPECT_EQ(connection_unset_async_cb(wiredProfile()), 0);
    EXPECT_EQ(connection_profile_destroy(clone), 0);
    EXPECT_EQ(connection_destroy(doomed), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return !kept.codes.empty(); }));
    MainLoop::settle();
    EXPECT_TRUE(dropped.codes.empty());
}

TEST_P(ConnectionContract, AnswersLaterAndLetsACallbackAskAgainUnsetAndRelease) {
    contract::Results results;
    results.then = [&] {
        if (results.codes.size() == 1) {
            EXPECT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &results), 0);
            return;
        }
        EXPECT_EQ(connection_unset_async_cb(client), 0);
        network::release();
    };
    ASSERT_EQ(connection_profile_check_gateway6_async(wiredProfile(), contract::record, &results), 0);
    EXPECT_TRUE(results.codes.empty());
    ASSERT_TRUE(MainLoop::runUntil([&] { return results.codes.size() == 2; }));
    EXPECT_EQ(results.codes, (std::vector<int>{0, 0}));
    int state = 0;
    EXPECT_EQ(connection_get_ethernet_state(client, &state), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(connection_create(&client), CONNECTION_ERROR_INVALID_OPERATION);
}

TEST_P(ConnectionContract, TellsOfAPulledAndPluggedCable) {
    contract::Results types;
    std::vector<std::string> addresses;
    ASSERT_EQ(connection_set_type_changed_cb(client, contract::record, &types), 0);
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, contract::recordAddress, &addresses), 0);
    const auto address = [&] { return addresses.back().substr(addresses.back().find(' ') + 1); };
    GetParam().unplug();
    ASSERT_TRUE(MainLoop::runUntil([&] { return !types.codes.empty() && !addresses.empty(); }));
    EXPECT_EQ(types.codes.back(), CONNECTION_TYPE_DISCONNECTED);
    EXPECT_EQ(address(), "");
    EXPECT_EQ(contract::number<int>(connection_get_ethernet_state, client), CONNECTION_ETHERNET_DISCONNECTED);
    EXPECT_EQ(wiredProfile(), nullptr);

    ASSERT_EQ(connection_unset_type_changed_cb(client), 0);
    GetParam().plug();
    ASSERT_TRUE(MainLoop::runUntil([&] { return contract::isAddress(address()); }));
    EXPECT_EQ(types.codes.back(), CONNECTION_TYPE_DISCONNECTED);
    EXPECT_NE(wiredProfile(), nullptr);
}
