// The Wi-Fi adapter's results, and the operations that no screen asks for yet, over a simulated radio.
#include <Ecore.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "Common/Common_Function.h"
#include "Common/Run_State.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "log/log.h"
#include "main_loop.h"
#include "network/network.h"
#include "temporary_scenario.h"

namespace {

constexpr const char* kHome = R"({"description": "home", "interfaces": [], "profiles": [],
  "wifi": {"mac": "02:00:5E:20:00:AA", "scan": {"result": "NONE"}, "accessPoints": [
    {"essid": "Home_5G", "rssi": -40, "security": "none"},
    {"essid": "Home", "bssid": "02:00:5E:20:00:06", "rssi": -71, "security": "wpa2-psk", "passphrase": "right",
     "connected": true, "live": {"address": "2001:db8:2::20", "prefixLength": 64, "gateway": "fe80::1"}}]},
  "gateway": {"result": "NONE"}, "internet": {"result": "OFFLINE"}})";

class WirelessAdapter : public testing::Test {
  protected:
    void SetUp() override {
        const network::Selection selection = network::select(home_.choice(), {});
        ASSERT_TRUE(selection.selected) << selection.text;
        std::string message;
        ASSERT_TRUE(logging::setLevel("debug", message));
        testing::internal::CaptureStderr();
        ASSERT_EQ(wifi_init(), 0);
    }

    void TearDown() override {
        wlan_manager_deregister_cbs();
        freeGlobalIPInfo();
        freeSNetworkStatus();
    }

    // What was said so far, once everything that is due has happened.
    static std::string said() {
        MainLoop::settle();
        return testing::internal::GetCapturedStderr();
    }

    MainLoop loop_;
    TemporaryScenario home_{kHome};
};

bool contains(const std::string& log, const char* part) {
    return log.find(part) != std::string::npos;
}

TEST_F(WirelessAdapter, IsInitialisedOnce) {
    EXPECT_EQ(wifi_init(), 3);
    wlan_manager_deregister_cbs();
    EXPECT_EQ(wifi_init(), 0);
    network::release();
    EXPECT_EQ(wifi_init(), 3) << "without a network there is nothing to initialise";
    testing::internal::GetCapturedStderr();
}

TEST_F(WirelessAdapter, ScansAndDisconnectsWhenAsked) {
    EXPECT_TRUE(Is_Connected_AP());
    Scan_Wifi();
    MW_DisconnectAP();
    const std::string log = said();
    EXPECT_TRUE(contains(log, "Scan callback Success")) << log;
    EXPECT_TRUE(contains(log, "Success to disconnection request")) << log;
    EXPECT_TRUE(contains(log, "Wi-Fi Disconnection Succeeded")) << log;
    EXPECT_FALSE(Is_Connected_AP());
    testing::internal::CaptureStderr();
    MW_DisconnectAP();
    proxy_changed_callback("192.0.2.1", nullptr, nullptr);
    const std::string refused = said();
    EXPECT_TRUE(contains(refused, "Fail to get connected AP NO_CONNECTION")) << refused;
    EXPECT_TRUE(contains(refused, "Proxy changed callback, IPv4 address : 192.0.2.1, IPv6 address : NULL")) << refused;
}

TEST_F(WirelessAdapter, ReadsTheAccessPointOfExactlyThatName) {
    sGlobalIPInfo* info = createGlobalIPInfo();
    EXPECT_EQ(get_ap_info("Home"), 1);
    EXPECT_STREQ(info->global_IP_ADDRESS, "2001:db8:2::20");
    EXPECT_STREQ(info->global_PREFIX_LENGTH, "64");
    EXPECT_STREQ(info->global_DNS, "::");
    EXPECT_STREQ(info->global_MAC_ADDRESS, "02:00:5E:20:00:06");
    EXPECT_EQ(strength_signal, -71);
    EXPECT_EQ(wifi_security_type, kSecuredNetwork);
    EXPECT_EQ(get_ap_info("Hom"), 1);
    EXPECT_EQ(strength_signal, -71) << "a part of a name is no match";
    EXPECT_EQ(get_ap_info(nullptr), 1);
    EXPECT_STREQ(info->global_IP_ADDRESS, "::") << "without a name the addresses are reset";
    EXPECT_EQ(Get_Mac_Address(), 1);
    EXPECT_STREQ(info->global_MAC_ADDRESS, "02:00:5E:20:00:AA");
    testing::internal::GetCapturedStderr();
}

TEST_F(WirelessAdapter, TellsTheRunWhatItWaitsFor) {
    sConnectivityStatus* results = createNetworkStatus()->connStatus;
    EXPECT_TRUE(internet_status_of_ap());
    EXPECT_EQ(results->internetCheckDone, 0) << "the answer comes later";
    said();
    EXPECT_EQ(results->internetCheckDone, 1);
    EXPECT_EQ(results->internetOnline, 0);
    testing::internal::CaptureStderr();
    thread_flag = 1;
    results->gatewayReachable = 1;
    const std::string off = network::command(std::vector<std::string>{"wifi", "off"});
    EXPECT_EQ(off, "");
    sAPConnectData request{"Home", "right"};
    EXPECT_EQ(Connect_With_AP(&request), -1);
    EXPECT_EQ(thread_flag, 0);
    EXPECT_EQ(results->gatewayReachable, 0);
    said();
}

}  // namespace
