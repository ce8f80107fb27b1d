// What every backend owes the users of the Wi-Fi manager. A program includes this once and instantiates WifiContract
// with ways to bring up a radio that is associated with a network which answers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "connection_manager.h"
#include "main_loop.h"
#include "results.h"
#include "wifi_manager.h"

struct RadioUnderTest {
    std::string name;
    // Selects the network. A text: why this machine cannot, and the case is skipped.
    std::function<std::string()> open;
    std::function<void()> lose;  // the association
    std::function<void()> close = [] {};
};

inline void PrintTo(const RadioUnderTest& radio, std::ostream* out) {
    *out << radio.name;
}

inline std::vector<wifi_ap_handle> foundAps() {
    std::vector<wifi_ap_handle> found;
    const auto add = [](wifi_ap_handle ap, void* data) {
        static_cast<std::vector<wifi_ap_handle>*>(data)->push_back(ap);
        return true;
    };
    EXPECT_EQ(wifi_foreach_found_aps(add, &found), WIFI_ERROR_NONE);
    return found;
}

inline std::string bssidOf(wifi_ap_handle ap) {
    char* text = nullptr;
    EXPECT_EQ(wifi_ap_get_bssid(ap, &text), WIFI_ERROR_NONE);
    return contract::take(text);
}

class WifiContract : public testing::TestWithParam<RadioUnderTest> {
  protected:
    void SetUp() override {
        if (const std::string obstacle = GetParam().open(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        ASSERT_EQ(wifi_initialize(), WIFI_ERROR_NONE);
        ASSERT_EQ(wifi_get_connected_ap(&connected), WIFI_ERROR_NONE);
    }
    void TearDown() override {
        network::release();
        GetParam().close();
    }

    MainLoop loop;
    wifi_ap_handle connected = nullptr;
};

TEST_P(WifiContract, IsInitialisedOnceAtATime) {
    EXPECT_EQ(wifi_initialize(), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(wifi_deinitialize(), WIFI_ERROR_NONE);
    EXPECT_EQ(wifi_deinitialize(), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(wifi_initialize(), WIFI_ERROR_NONE);
}

TEST_P(WifiContract, TellsTheLiveValuesOfTheConnectedAccessPoint) {
    constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
    char *essid = nullptr, *address = nullptr, *gateway = nullptr, *server = nullptr, *mac = nullptr;
    std::uint8_t length = 0;
    int rssi = 0, security = -1, dnsType = 0;
    bool activated = false;
    EXPECT_EQ(wifi_is_activated(&activated), 0);
    EXPECT_EQ(wifi_get_mac_address(&mac), 0);
    EXPECT_EQ(wifi_ap_get_essid(connected, &essid), 0);
    EXPECT_EQ(wifi_ap_get_rssi(connected, &rssi), 0);
    EXPECT_EQ(wifi_ap_get_security_type(connected, &security), 0);
    EXPECT_EQ(wifi_ap_get_ip_address(connected, kIpv6, &address), 0);
    EXPECT_EQ(wifi_ap_get_prefix_length(connected, &length), 0);
    EXPECT_EQ(wifi_ap_get_gateway_address(connected, kIpv6, &gateway), 0);
    EXPECT_EQ(wifi_ap_get_dns_address(connected, 1, kIpv6, &server), 0);
    EXPECT_EQ(wifi_ap_get_dns_config_type(connected, kIpv6, &dnsType), 0);
    EXPECT_TRUE(activated);
    EXPECT_EQ(contract::take(mac).size(), std::string("00:00:00:00:00:00").size());
    EXPECT_NE(contract::take(essid), "");
    EXPECT_LT(rssi, 0);
    EXPECT_EQ(security, WIFI_SECURITY_WPA2_PSK);
    EXPECT_TRUE(contract::isAddress(contract::take(address)));
    EXPECT_TRUE(contract::isAddress(contract::take(gateway)));
    EXPECT_TRUE(contract::isAddress(contract::take(server)));
    EXPECT_EQ(length, 64);
    EXPECT_EQ(dnsType, CONNECTION_DNS_CONFIG_DYNAMIC);
}

TEST_P(WifiContract, KeepsTheHandlesOfAWalkAndGivesTheOthersAway) {
    const auto walked = foundAps();
    contract::Results scan;
    ASSERT_EQ(wifi_scan(contract::record, &scan), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return !scan.codes.empty(); }));
    EXPECT_EQ(foundAps(), walked);
    wifi_ap_handle own = nullptr;
    for (wifi_ap_handle ap : walked) {
        EXPECT_EQ(wifi_ap_destroy(ap), WIFI_ERROR_INVALID_OPERATION);
        if (bssidOf(ap) == bssidOf(connected)) own = ap;
    }
    EXPECT_NE(own, nullptr);
    EXPECT_NE(own, connected);

    wifi_ap_handle clone = nullptr;
    ASSERT_EQ(wifi_ap_clone(&clone, connected), 0);
    EXPECT_EQ(wifi_ap_destroy(connected), 0);
    EXPECT_EQ(wifi_ap_destroy(connected), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(bssidOf(clone), bssidOf(own));
    ASSERT_EQ(wifi_deinitialize(), 0);
    int rssi = 0;
    EXPECT_EQ(wifi_ap_get_rssi(clone, &rssi), WIFI_ERROR_INVALID_OPERATION);
    ASSERT_EQ(wifi_initialize(), 0);
    EXPECT_EQ(wifi_ap_get_rssi(own, &rssi), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(rssi, 0);
    EXPECT_EQ(wifi_ap_destroy(clone), 0);
}

TEST_P(WifiContract, AnswersRequestsInALaterIteration) {
    contract::Results gateway, online;
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &gateway), 0);
    ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &online), 0);
    EXPECT_TRUE(gateway.codes.empty());
    EXPECT_TRUE(online.codes.empty());
    ASSERT_TRUE(MainLoop::runUntil([&] { return !gateway.codes.empty() && !online.codes.empty(); }));
    MainLoop::settle();
    EXPECT_EQ(gateway.codes, std::vector<int>{WIFI_ERROR_NONE});
    EXPECT_EQ(online.codes, std::vector<int>{WIFI_ERROR_NONE});
}

TEST_P(WifiContract, AnswersNobodyAfterUnsetDestroyOrDeinitialise) {
    wifi_ap_handle clone = nullptr;
    ASSERT_EQ(wifi_ap_clone(&clone, connected), 0);
    contract::Results dropped, kept;
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &dropped), 0);
    ASSERT_EQ(wifi_ap_check_gateway6_async(clone, contract::record, &dropped), 0);
    ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &kept), 0);
    EXPECT_EQ(wifi_ap_unset_async_cb(connected), 0);
    EXPECT_EQ(wifi_ap_destroy(clone), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return !kept.codes.empty(); }));
    ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &dropped), 0);
    ASSERT_EQ(wifi_scan(contract::record, &dropped), 0);
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &dropped), 0);
    ASSERT_EQ(wifi_deinitialize(), 0);
    ASSERT_EQ(wifi_initialize(), 0);
    ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &kept), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return kept.codes.size() == 2; }));
    MainLoop::settle();
    EXPECT_TRUE(dropped.codes.empty());
}

TEST_P(WifiContract, LetsACallbackAskAgainDestroyAndDeinitialise) {
    contract::Results results;
    results.then = [&] {
        if (results.codes.size() == 1) {
            EXPECT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &results), 0);
            return;
        }
        EXPECT_EQ(wifi_ap_unset_async_cb(connected), 0);
        EXPECT_EQ(wifi_ap_destroy(connected), 0);
        EXPECT_EQ(wifi_deinitialize(), 0);
    };
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &results), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return results.codes.size() == 2; }));
    MainLoop::settle();
    EXPECT_EQ(results.codes, (std::vector<int>{0, 0}));
}

TEST_P(WifiContract, SurvivesReleaseFromACallback) {
    contract::Results results;
    results.then = [] { network::release(); };
    ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &results), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return !results.codes.empty(); }));
    bool activated = false;
    EXPECT_EQ(wifi_is_activated(&activated), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(wifi_initialize(), WIFI_ERROR_INVALID_OPERATION);
    EXPECT_EQ(wifi_ap_destroy(connected), WIFI_ERROR_INVALID_OPERATION) << "all handles end with the network";
}

TEST_P(WifiContract, TellsOfALostAssociation) {
    GetParam().lose();
    wifi_ap_handle none = nullptr;
    ASSERT_TRUE(MainLoop::runUntil([&] {
        wifi_ap_handle still = nullptr;
        return wifi_get_connected_ap(&still) == WIFI_ERROR_NO_CONNECTION;
    }));
    EXPECT_EQ(wifi_get_connected_ap(&none), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(none, nullptr);
    contract::Results results;
    EXPECT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &results), WIFI_ERROR_NO_CONNECTION);
    char* address = nullptr;
    EXPECT_EQ(wifi_ap_get_ip_address(connected, CONNECTION_ADDRESS_FAMILY_IPV6, &address), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(address, nullptr);
}
