// The wireless adapters: which access points they take, what they read and write, and what they do when a call fails.
#include "Common/Run_State.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "adapters.h"

namespace {

const std::string kLongName = "a name of more than thirty-two bytes: ";

class Wifi : public Adapters {
  protected:
    void SetUp() override { openWith("Home"); }
    void openWith(const std::string& wanted) {
        open();
        name(wanted);
    }
    // The connected one of the name is reached as soon as the other has gone.
    static void removeTheOther() { say({"wifi", "vanish", "Home"}); }
    void name(const std::string& wanted) { copyText(settings_->apName, wanted); }
    std::string found() const {
        PlatformText text;
        return fetchText(text, wifi_ap_get_essid, settings_->apHandle) == 0 ? text.get() : "nobody";
    }
    // What is read of the named one now, and its second DNS server.
    Words live() {
        EXPECT_EQ(Get_AP_Connection_Info(settings_), 0);
        PlatformText second;
        fetchText(second, wifi_ap_get_dns_address, settings_->apHandle, 2, 1);
        return readWith(second);
    }

    const Words defaults_{"02:00:5E:20:00:AA", "::", "0", "::", "::"};
    const Words given_{"02:00:5E:20:00:06", full_, "64", "fe80::1", "2001:db8:1::53", ""};
};

TEST_F(Wifi, IsFoundByItsName) {
    EXPECT_EQ(live()[0], "02:00:5E:20:00:05") << "the first of the name";
    for (const char* last : {"1", "2", "1"}) {
        name(kLongName + last);
        live();
        EXPECT_EQ(found(), kLongName + last) << "values: the whole name, the first match";
    }
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "changes: 32 bytes, the last match";
    EXPECT_EQ(read()[0], "access-point-0123456789abcdef01") << "a hardware address is cut";
    name("Nobody");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(found(), kLongName + "2") << "without a match the handle stays";
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(settings_->apHandle, nullptr);
    EXPECT_EQ(read(), defaults_);
    EXPECT_EQ(Set_Wireless_Dns_Address("Nobody", "::"), 1);
    EXPECT_STREQ(Get_Wireless_DNS_Config_Type("Nobody"), kAutomaticMode);
}

TEST_F(Wifi, KeepsWhatItCannotReadAnew) {
    removeTheOther();
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

TEST_F(Wifi, WritesToEveryoneOfTheNameWhateverIsRefused) {
    const std::pair<const char*, Words> cases[] = {
        {"wifi_get_mac_address", {given_[0], address_, "44", gateway_, server_, server_}},
        {"wifi_ap_set_ip_address", {given_[0], full_, "64", "fe80::1", server_, server_}},
        {"wifi_ap_set_prefix_length", {given_[0], address_, "64", gateway_, server_, server_}},
        {"wifi_ap_set_gateway_address", {given_[0], address_, "44", "fe80::1", server_, server_}},
        {"wifi_ap_set_dns_address", {given_[0], address_, "44", gateway_, given_[4], ""}},
    };
    const sglobalIPValues wanted = values("300");  // of which eight bits count
    for (const auto& [call, expected] : cases) {
        openWith("Home");
        Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
        Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
        fail(call);
        EXPECT_EQ(Set_AP_Connection_Info(&wanted), 1);
        say({"no-faults"});
        removeTheOther();
        EXPECT_EQ(live(), expected) << call;
    }
}

TEST_F(Wifi, WritesBothServersAndTellsThemAsItsCallersExpect) {
    removeTheOther();
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

TEST_F(Wifi, AnUnreadableNameEndsAChangeButNotTheReading) {
    EXPECT_EQ(Set_AP_Connection_Info(nullptr), -1);
    fail("wifi_ap_get_essid", "1");
    EXPECT_EQ(live()[0], "02:00:5E:20:00:05") << "the search for values goes on";
    settings_->apHandle = nullptr;
    fail("wifi_ap_get_essid", "1");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(settings_->apHandle, nullptr);
    fail("wifi_foreach_found_aps");
    const sglobalIPValues wanted = values("56");
    EXPECT_EQ(Set_AP_Connection_Info(&wanted), -1);
}

TEST_F(Wifi, NamesTheConnectedAccessPointOrTheStoredOne) {
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Home");
    EXPECT_EQ(Get_Connected_AP_Name(nullptr), nullptr);
    fail("wifi_ap_get_essid", "1");
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
    say({"wifi", "lose"});
    EXPECT_STREQ(Get_Connected_AP_Name("Stored").get(), "Stored");
}

TEST_F(Wifi, IsInitialisedOnceScansAndDisconnectsWhenAsked) {
    EXPECT_EQ(wifi_init(), 3);
    wlan_manager_deregister_cbs();
    EXPECT_EQ(wifi_init(), 0);
    EXPECT_TRUE(Is_Connected_AP());
    fail("wifi_scan", "1");
    Scan_Wifi();
    EXPECT_EQ(wifi_scan([](int, void*) {}, nullptr), 0) << "it took the failure";
    for (int repeated = 0; repeated < 2; ++repeated) {
        MW_DisconnectAP();
        MainLoop::settle();
        EXPECT_FALSE(Is_Connected_AP());
    }
    proxy_changed_callback("192.0.2.1", nullptr, nullptr);
}

TEST_F(Wifi, TellsOfTheAccessPointOfExactlyThatName) {
    const sGlobalIPInfo* info = createGlobalIPInfo();
    removeTheOther();
    EXPECT_EQ(get_ap_info("Home"), 1);
    EXPECT_EQ(get_ap_info("Hom"), 1);
    EXPECT_EQ(info->global_IP_ADDRESS, full_) << "a part of a name is no match";
    EXPECT_EQ(strength_signal, -71);
    EXPECT_EQ(wifi_security_type, kSecuredNetwork);
    EXPECT_EQ(get_ap_info(nullptr), 1);
    EXPECT_STREQ(info->global_IP_ADDRESS, "::") << "without a name the addresses are reset";
    EXPECT_EQ(Get_Mac_Address(), 1);
    EXPECT_STREQ(info->global_MAC_ADDRESS, "02:00:5E:20:00:AA");
}

}  // namespace
