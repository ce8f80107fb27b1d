// The Wi-Fi adapter's results, and the operations that no screen asks for yet, over a simulated radio.
#include "Common/Run_State.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "log/log.h"
#include "settings_adapter.h"

namespace {

constexpr const char* kHome = R"({"description": "home", "interfaces": [], "profiles": [],
  "wifi": {"mac": "02:00:5E:20:00:AA", "scan": {"result": "NONE"}, "accessPoints": [
    {"essid": "Home_5G", "rssi": -40, "security": "none"},
    {"essid": "Home", "bssid": "02:00:5E:20:00:06", "rssi": -71, "security": "wpa2-psk", "passphrase": "right",
     "connected": true, "live": {"address": "2001:db8:2::20", "prefixLength": 64, "gateway": "fe80::1"}}]},
  "gateway": {"result": "NONE"}, "internet": {"result": "OFFLINE"}})";

class WirelessAdapter : public SettingsAdapter {
  protected:
    void SetUp() override {
        open(kHome);
        ASSERT_EQ(wifi_init(), 0);
    }
    void TearDown() override {
        wlan_manager_deregister_cbs();
        freeGlobalIPInfo();
        SettingsAdapter::TearDown();
    }
    // What the log says of an operation, and of what is due after it.
    template <typename Operation>
    static std::string logOf(Operation operation) {
        std::string message;
        EXPECT_TRUE(logging::setLevel("debug", message)) << message;
        testing::internal::CaptureStderr();
        operation();
        MainLoop::settle();
        EXPECT_TRUE(logging::setLevel("warning", message)) << message;
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(WirelessAdapter, IsInitialisedOnce) {
    EXPECT_EQ(wifi_init(), 3);
    wlan_manager_deregister_cbs();
    EXPECT_EQ(wifi_init(), 0);
    network::release();
    EXPECT_EQ(wifi_init(), 3) << "without a network there is nothing to initialise";
}

TEST_F(WirelessAdapter, ScansAndDisconnectsWhenAsked) {
    const std::string log = logOf([] {
        EXPECT_TRUE(Is_Connected_AP());
        Scan_Wifi();
        MW_DisconnectAP();
    });
    EXPECT_FALSE(Is_Connected_AP());
    const std::string refused = logOf([] {
        MW_DisconnectAP();
        proxy_changed_callback("192.0.2.1", nullptr, nullptr);
    });
    for (const auto& [text, part] :
         {std::pair{log, "Scan callback Success"}, std::pair{log, "Wi-Fi Disconnection Succeeded"},
          std::pair{refused, "Fail to get connected AP NO_CONNECTION"},
          std::pair{refused, "Proxy changed callback, IPv4 address : 192.0.2.1, IPv6 address : NULL"}}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << '\n' << text;
    }
}

TEST_F(WirelessAdapter, ReadsTheAccessPointOfExactlyThatName) {
    sGlobalIPInfo* info = createGlobalIPInfo();
    EXPECT_EQ(get_ap_info("Home"), 1);
    EXPECT_STREQ(info->global_IP_ADDRESS, "2001:db8:2::20");
    EXPECT_STREQ(info->global_DNS, "::");
    EXPECT_STREQ(info->global_MAC_ADDRESS, "02:00:5E:20:00:06");
    EXPECT_EQ(get_ap_info("Hom"), 1);
    EXPECT_EQ(strength_signal, -71) << "a part of a name is no match";
    EXPECT_EQ(wifi_security_type, kSecuredNetwork);
    EXPECT_EQ(get_ap_info(nullptr), 1);
    EXPECT_STREQ(info->global_IP_ADDRESS, "::") << "without a name the addresses are reset";
    EXPECT_EQ(Get_Mac_Address(), 1);
    EXPECT_STREQ(info->global_MAC_ADDRESS, "02:00:5E:20:00:AA");
}

TEST_F(WirelessAdapter, TellsTheRunWhatItWaitsFor) {
    sConnectivityStatus* results = createNetworkStatus()->connStatus;
    EXPECT_TRUE(internet_status_of_ap());
    EXPECT_EQ(results->internetCheckDone, 0) << "the answer comes later";
    MainLoop::settle();
    EXPECT_EQ(results->internetCheckDone, 1);
    EXPECT_EQ(results->internetOnline, 0);
}

}  // namespace
