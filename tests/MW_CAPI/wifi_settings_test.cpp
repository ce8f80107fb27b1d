// The wireless adapter of the settings screen: which access points it takes, what it reads, writes, and does when a
// call fails.
#include "settings_adapter.h"

namespace {

const std::string kLongName(40, 'n');

class WifiSettingsAdapter : public SettingsAdapter {
  protected:
    // Four found ones: two whose names agree in their first 32 bytes, and two of one name; the connected one is last.
    void openWifi() {
        const std::string ap = R"({"rssi": -60, "security": "none", )";
        open(R"({"interfaces": [], "profiles": [], "wifi": {"mac": "02:00:5E:20:00:AA", "accessPoints": [)" + ap +
             R"("essid": ")" + kLongName + R"(1"}, )" + ap + R"("essid": ")" + kLongName + R"(2"}, )" + ap +
             R"("essid": "Home", "bssid": "02:00:5E:20:00:05"}, )" + ap +
             R"("essid": "Home", "connected": true, "bssid": "02:00:5E:20:00:06",
               "live": {"address": ")" +
             kFull + R"(", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:2::53"]}}]},
             "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}, "renewal": 0})");
        ASSERT_EQ(wifi_initialize(), 0);
        name("Home");
    }
    // The connected one of the name is reached as soon as the other has gone.
    void openOneHome() {
        openWifi();
        say({"wifi", "vanish", "Home"});
    }
    void name(const std::string& wanted) { copyText(settings_->apName, wanted); }
    std::string found() const {
        PlatformText text;
        return fetchText(text, wifi_ap_get_essid, settings_->apHandle) == 0 ? text.get() : "nobody";
    }
    // What is read of the named one now, and its second DNS server.
    Words live() {
        EXPECT_EQ(Get_AP_Connection_Info(settings_), 0);
        Words all = read();
        PlatformText second;
        fetchText(second, wifi_ap_get_dns_address, settings_->apHandle, 2, 1);
        all.emplace_back(second ? second.get() : "");
        return all;
    }

    const Words defaults_{"02:00:5E:20:00:AA", "::", "0", "::", "::"};
    const Words given_{"02:00:5E:20:00:06", kFull, "64", "fe80::1", "2001:db8:2::53", ""};
};

TEST_F(WifiSettingsAdapter, FindsAccessPointsByTheirNames) {
    openWifi();
    EXPECT_EQ(live()[0], "02:00:5E:20:00:05") << "the first of the name";
    for (const char* last : {"1", "2", "1"}) {
        name(kLongName + last);
        live();
        EXPECT_EQ(found(), kLongName + last) << "values: the whole name, the first match";
    }
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "changes: 32 bytes, the last match";
    name("Nobody");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "without a match the handle stays";
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(settings_->apHandle, nullptr);
    EXPECT_EQ(read(), defaults_);
    EXPECT_EQ(Set_Wireless_Dns_Address("Nobody", "::"), 1);
    EXPECT_STREQ(Get_Wireless_DNS_Config_Type("Nobody"), kAutomaticMode);
}

TEST_F(WifiSettingsAdapter, KeepsWhatItCannotReadAnew) {
    openOneHome();
    EXPECT_EQ(live(), given_);
    for (const char* call : {"wifi_ap_get_ip_address", "wifi_ap_get_prefix_length", "wifi_ap_get_gateway_address",
                             "wifi_ap_get_dns_address"}) {
        fail(call);
        EXPECT_EQ(live(), given_) << call;
        fail(call, "1");
    }
    char* dns = nullptr;
    EXPECT_FALSE(GetWifiDnsAddress(settings_, &dns)) << "false is failure";
    EXPECT_EQ(dns, nullptr);
    fail("wifi_ap_get_bssid");
    EXPECT_EQ(live()[0], "02:00:5E:20:00:AA");
    fail("wifi_get_mac_address");
    fail("wifi_is_activated");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(read(), defaults_);
    say({"no-faults"});
    say({"wifi", "off"});
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
}

TEST_F(WifiSettingsAdapter, WritesToEveryoneOfTheNameWhateverIsRefused) {
    const char *address = "2001:db8:9::9", *gateway = "2001:db8:9::1", *server = "2001:db8:9::53";
    const std::pair<const char*, Words> cases[] = {
        {"wifi_get_mac_address", {given_[0], address, "44", gateway, server, server}},
        {"wifi_ap_set_ip_address", {given_[0], kFull, "64", "fe80::1", server, server}},
        {"wifi_ap_set_prefix_length", {given_[0], address, "64", gateway, server, server}},
        {"wifi_ap_set_gateway_address", {given_[0], address, "44", "fe80::1", server, server}},
        {"wifi_ap_set_dns_address", {given_[0], address, "44", gateway, given_[4], ""}},
    };
    const sglobalIPValues wanted = values("300", "Home");  // of which eight bits count
    for (const auto& [call, expected] : cases) {
        openWifi();
        Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
        Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
        fail(call);
        EXPECT_EQ(Set_AP_Connection_Info(&wanted), 1);
        say({"no-faults"});
        say({"wifi", "vanish", "Home"});
        EXPECT_EQ(live(), expected) << call;
    }
}

TEST_F(WifiSettingsAdapter, WritesBothServersAndTellsThemAsItsCallersExpect) {
    openOneHome();
    Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
    EXPECT_STREQ(Get_Wireless_DNS_Config_Type("Home"), kManualMode);
    EXPECT_EQ(Set_Wireless_Dns_Address("Home", "2001:db8:9::54"), 1);
    copyText(settings_->dnsAddress, "2001:db8:9::55");
    fail("wifi_ap_set_dns_address", "1");
    EXPECT_EQ(_Set_AP_DNS_Connection_Info(settings_), 1);
    EXPECT_EQ(live()[4], "2001:db8:9::54");
    EXPECT_EQ(live()[5], "2001:db8:9::55");
    char* dns = nullptr;
    EXPECT_TRUE(GetWifiDnsAddress(settings_, &dns)) << "true is success";
    EXPECT_STREQ(PlatformText(dns).get(), "2001:db8:9::54");
    Set_Wireless_DNS_Config_Type(kSwitchToAutomatic, settings_);
    Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
    EXPECT_FALSE(GetWifiDnsAddress(settings_, &dns)) << "manual again, and neither server is left";
}

TEST_F(WifiSettingsAdapter, AnUnreadableNameEndsAChangeButNotTheReading) {
    openWifi();
    EXPECT_EQ(Set_AP_Connection_Info(nullptr), -1);
    fail("wifi_ap_get_essid", "1");
    EXPECT_EQ(live()[0], "02:00:5E:20:00:05") << "the search for values goes on";
    settings_->apHandle = nullptr;
    fail("wifi_ap_get_essid", "1");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(settings_->apHandle, nullptr);
    fail("wifi_foreach_found_aps");
    const sglobalIPValues wanted = values("56", "Home");
    EXPECT_EQ(Set_AP_Connection_Info(&wanted), -1);
}

TEST_F(WifiSettingsAdapter, CutsLongHardwareAddressesAndPassesHiddenNames) {
    open(R"({"unchecked": true, "interfaces": [], "profiles": [],
      "wifi": {"mac": "device-0123456789abcdef0123456789", "accessPoints": [
        {"essid": "", "rssi": -50, "security": "none", "bssid": "hidden"},
        {"essid": "Home", "rssi": -60, "security": "none", "bssid": "access-point-0123456789abcdef0123456789"}]},
      "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})");
    ASSERT_EQ(wifi_initialize(), 0);
    name("Home");
    EXPECT_EQ(live()[0], "access-point-0123456789abcdef01");
    fail("wifi_ap_get_bssid");
    EXPECT_EQ(live()[0], "device-0123456789abcdef01234567");
}

TEST_F(WifiSettingsAdapter, NamesTheConnectedAccessPointOrTheStoredOne) {
    openWifi();
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Home");
    EXPECT_EQ(Get_Connected_AP_Name(nullptr), nullptr);
    fail("wifi_ap_get_essid", "1");
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
    say({"wifi", "lose"});
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
}

}  // namespace
