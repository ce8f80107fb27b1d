// The settings screen's two adapters over a simulated network: what they read, write, and do when a call fails.
#include "settings_adapter.h"

#include <span>

namespace {

TEST_F(WiredSettingsAdapter, ReadsTheLiveValues) {
    openWired();
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 0);
    EXPECT_EQ(read(), (Words{"02:00:5E:10:00:01", kFull, "64", "fe80::1", "2001:db8:1::53"}));
    EXPECT_EQ(_Get_Wired_Connection_Info(nullptr), 16);
    connection_profile_handle profile = nullptr;
    EXPECT_TRUE(Updated_Ethernet_Profile_Handle(&profile));
    EXPECT_STREQ(Get_DNS_Config_Type(), kAutomaticMode);
    char* dns = nullptr;
    EXPECT_FALSE(GetDnsAddress(&dns)) << "false is success";
    EXPECT_STREQ(PlatformText(dns).get(), "2001:db8:1::53");
}

TEST_F(WiredSettingsAdapter, GivesDefaultsForWhatItCannotRead) {
    const Words all{"02:00:5E:10:00:01", kFull, "64", "fe80::1", "2001:db8:1::53"};
    const Words defaults{"02:00:5E:10:00:01", "::", "0", "::", "::"};
    const struct {
        const char* call;
        int result;
        Words read;
    } cases[] = {
        {"connection_get_profile_iterator", 14, defaults},
        {"connection_profile_iterator_next", 14, defaults},
        {"connection_profile_get_type", 14, defaults},
        {"connection_get_mac_address", 15, {"before", "before", "bef", "before", "before"}},
        {"connection_profile_get_state", 0, all},
        {"connection_profile_get_ip_address", 0, {all[0], "::", all[2], all[3], all[4]}},
        {"connection_profile_get_prefix_length", 0, {all[0], all[1], "0", all[3], all[4]}},
        {"connection_profile_get_gateway_address", 0, {all[0], all[1], all[2], "::", all[4]}},
        {"connection_profile_get_dns_address", 0, {all[0], all[1], all[2], all[3], "::"}},
    };
    openWired();
    for (const auto& [call, result, expected] : cases) {
        sAPConnectionInfo& info = *settings_->connectionInfo;
        for (const std::span<char> field :
             {std::span<char>(info.macAddress), std::span<char>(info.ipAddress), std::span<char>(info.prefixLength),
              std::span<char>(info.gateway), std::span<char>(info.dnsAddress)}) {
            copyText(field, "before");
        }
        fail(call);
        EXPECT_EQ(_Get_Wired_Connection_Info(settings_), result) << call;
        EXPECT_EQ(read(), expected) << call;
        ASSERT_EQ(network::command(Words{"no-faults"}), "");
    }
}

TEST_F(WiredSettingsAdapter, SwitchesBackToWhatTheNetworkGives) {
    openWired();
    _Set_IP_Config_Type(kSwitchToManual);
    _Set_DNS_Config_Type(kSwitchToManual);
    EXPECT_STREQ(Get_DNS_Config_Type(), kManualMode);
    const sglobalIPValues wanted = values("56");
    Set_Wired_Conn_Info(&wanted);
    Set_Wired_Dns_Address("2001:db8:9::54");
    EXPECT_EQ(live(), (Words{"2001:db8:9::9", "56", "2001:db8:9::1", "2001:db8:9::54"}));
    _Set_IP_Config_Type(kSwitchToAutomatic);
    _Set_DNS_Config_Type(kSwitchToAutomatic);
    MainLoop::settle();
    EXPECT_EQ(live(), (Words{kFull, "64", "fe80::1", "2001:db8:1::53"}));
}

TEST_F(WiredSettingsAdapter, LivesWithoutAProfileOrAConnection) {
    open(R"({"interfaces": [], "profiles": [], "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})");
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 14) << "no connection, no profile";
    connect();
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 14);
    EXPECT_EQ(read(), (Words{"00:00:00:00:00:00", "::", "0", "::", "::"}));
    char* dns = nullptr;
    EXPECT_FALSE(GetDnsAddress(&dns));
    EXPECT_EQ(dns, nullptr);
    EXPECT_EQ(_Set_IP_Config_Type(kSwitchToManual), 0);
    EXPECT_EQ(_Set_DNS_Config_Type(kSwitchToAutomatic), 0);
    const sglobalIPValues wanted = values("56");
    Set_Wired_Conn_Info(&wanted);
    Set_Wired_Conn_Info(nullptr);
    Set_Wired_Dns_Address(nullptr);
    connection_profile_handle profile = nullptr;
    EXPECT_FALSE(Updated_Ethernet_Profile_Handle(&profile));
    EXPECT_EQ(profile, nullptr);
}

TEST_F(WifiSettingsAdapter, FindsAccessPointsByTheirNames) {
    openWifi();
    for (const char* last : {"1", "2", "1"}) {
        name(kLongName + last);
        Get_AP_Connection_Info(settings_);
        EXPECT_EQ(found(), kLongName + last) << "values: the whole name, the first match";
    }
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "changes: 32 bytes, the last match";
    Set_Wireless_DNS_Config_Type(kSwitchToAutomatic, settings_);
    name("Nobody");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "without a match the handle stays";
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(settings_->apHandle, nullptr);
    EXPECT_EQ(read(), (Words{"02:00:5E:20:00:AA", "::", "0", "::", "::"}));
}

TEST_F(WifiSettingsAdapter, KeepsWhatItCannotReadAnew) {
    openWifi();
    // The name stands twice: the connected one is reached as soon as the other has gone.
    name("Home");
    ASSERT_EQ(network::command(Words{"wifi", "vanish", "Home"}), "");
    ASSERT_EQ(Get_AP_Connection_Info(settings_), 0);
    const Words all{"02:00:5E:20:00:06", kFull, "64", "fe80::1", "2001:db8:2::53"};
    EXPECT_EQ(read(), all);
    for (const char* call : {"wifi_ap_get_ip_address", "wifi_ap_get_prefix_length", "wifi_ap_get_gateway_address",
                             "wifi_ap_get_dns_address"}) {
        fail(call);
        EXPECT_EQ(Get_AP_Connection_Info(settings_), 0) << call;
        EXPECT_EQ(read(), all) << call;
    }
    fail("wifi_ap_get_bssid");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[0], "02:00:5E:20:00:AA");
    fail("wifi_get_mac_address");
    fail("wifi_is_activated");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(read(), (Words{"02:00:5E:20:00:AA", "::", "0", "::", "::"}));
}

TEST_F(WifiSettingsAdapter, WritesEveryValueThatIsTaken) {
    openWifi();
    name("Home");
    ASSERT_EQ(network::command(Words{"wifi", "vanish", "Home"}), "");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
    sglobalIPValues wanted = values("abc");
    copyText(wanted.apName, "Home");
    EXPECT_EQ(Set_AP_Connection_Info(&wanted), 1);
    ASSERT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[1], "2001:db8:9::9") << "a prefix length that is refused stops nothing";
    EXPECT_EQ(read()[3], "2001:db8:9::1");
    char* dns = nullptr;
    EXPECT_TRUE(GetWifiDnsAddress(settings_, &dns)) << "true is success";
    EXPECT_STREQ(PlatformText(dns).get(), "2001:db8:9::53");
    EXPECT_STREQ(Get_Wireless_DNS_Config_Type("Home"), kManualMode);
    EXPECT_EQ(Set_Wireless_Dns_Address("Home", "2001:db8:9::54"), 1);
    Get_AP_Connection_Info(settings_);
    EXPECT_EQ(read()[4], "2001:db8:9::54");
    Set_Wireless_IP_Config_Type(kSwitchToAutomatic, settings_);
    Set_Wireless_DNS_Config_Type(kSwitchToAutomatic, settings_);
    MainLoop::settle();
    Get_AP_Connection_Info(settings_);
    EXPECT_EQ(read(), (Words{"02:00:5E:20:00:06", kFull, "64", "fe80::1", "2001:db8:2::53"}));
    EXPECT_EQ(Set_AP_Connection_Info(nullptr), -1);
    fail("wifi_foreach_found_aps");
    EXPECT_EQ(Set_AP_Connection_Info(&wanted), -1);
}

TEST_F(WifiSettingsAdapter, NamesTheConnectedAccessPointOrTheStoredOne) {
    openWifi();
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Home");
    EXPECT_EQ(Get_Connected_AP_Name(nullptr), nullptr);
    fail("wifi_ap_get_essid");
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
    ASSERT_EQ(network::command(Words{"no-faults"}), "");
    ASSERT_EQ(network::command(Words{"wifi", "lose"}), "");
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
}

}  // namespace
