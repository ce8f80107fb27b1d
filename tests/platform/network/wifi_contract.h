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
    return contract::text(wifi_ap_get_bssid, ap);
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
    using contract::isAddress, contract::number, contract::text;
    EXPECT_EQ(number<bool>(wifi_is_activated), true);
    EXPECT_EQ(text(wifi_get_mac_address).size(), 17U);
    EXPECT_NE(text(wifi_ap_get_essid, connected), "");
    EXPECT_LT(number<int>(wifi_ap_get_rssi, connected), -1);
    EXPECT_EQ(number<int>(wifi_ap_get_security_type, connected), WIFI_SECURITY_WPA2_PSK);
    EXPECT_TRUE(isAddress(text(wifi_ap_get_ip_address, connected, kIpv6)));
    EXPECT_TRUE(isAddress(text(wifi_ap_get_gateway_address, connected, kIpv6)));
    EXPECT_TRUE(isAddress(text(wifi_ap_get_dns_address, connected, 1, kIpv6)));
    EXPECT_EQ(number<std::uint8_t>(wifi_ap_get_prefix_length, connected), 64);
    EXPECT_EQ(number<int>(wifi_ap_get_dns_config_type, connected, kIpv6), CONNECTION_DNS_CONFIG_DYNAMIC);
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

TEST_P(WifiContract, AnswersLaterAndLetsACallbackAskAgainDestroyAndDeinitialise) {
    contract::Results results;
    results.then = [&] {
        if (results.codes.size() == 1) {
            EXPECT_EQ(wifi_get_is_online_ipv6_async(contract::record, &results), 0);
            return;
        }
        EXPECT_EQ(wifi_ap_unset_async_cb(connected), 0);
        EXPECT_EQ(wifi_ap_destroy(connected), 0);
        EXPECT_EQ(wifi_deinitialize(), 0);
    };
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &results), 0);
    EXPECT_TRUE(results.codes.empty());
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
    ASSERT_TRUE(MainLoop::runUntil([&] { return wifi_get_connected_ap(&none) == WIFI_ERROR_NO_CONNECTION; }));
    contract::Results results;
    EXPECT_EQ(wifi_ap_check_gateway6_async(connected, contract::record, &results), WIFI_ERROR_NO_CONNECTION);
    char* address = nullptr;
    EXPECT_EQ(wifi_ap_get_ip_address(connected, CONNECTION_ADDRESS_FAMILY_IPV6, &address), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(address, nullptr);
}
