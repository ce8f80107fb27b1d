// The settings adapters step by step: which calls they make, in which order and with what, as their log tells it, and
// what they do when the network is an odd one.
#include <cstring>
#include <sstream>

#include "log/log.h"
#include "settings_adapter.h"

namespace {

// What the two adapters say of an operation, without entries, exits and the search for profile or access point.
template <typename Operation>
Words said(Operation operation) {
    std::string message;
    EXPECT_TRUE(logging::setLevel("debug", message)) << message;
    testing::internal::CaptureStderr();
    operation();
    std::istringstream log(testing::internal::GetCapturedStderr());
    EXPECT_TRUE(logging::setLevel("warning", message)) << message;
    Words lines;
    for (std::string line; std::getline(log, line);) {
        const auto has = [&](const char* part) { return line.find(part) != std::string::npos; };
        if (!has("MWCapiW") || has("allback(") || has("Updated_Ethernet_Profile_Handle(")) continue;
        const std::string text = line.substr(line.find("] ") + 2);
        if (text != "START" && text != "END") lines.push_back(text);
    }
    return lines;
}

// For the next so many calls; an empty call fails nothing.
void failNext(const std::string& call, const char* times = "always") {
    if (call.empty()) return;
    ASSERT_EQ(network::command(Words{"fault", call, "OPERATION_FAILED", times}), "");
}

std::string wiredSecondaryDns() {
    connection_profile_handle profile = nullptr;
    Updated_Ethernet_Profile_Handle(&profile);
    PlatformText text;
    const int result = fetchText(text, connection_profile_get_dns_address, profile, 2, 1);
    return result == 0 ? text.get() : "none";
}

std::string wifiSecondaryDns() {
    PlatformText text;
    return fetchText(text, wifi_ap_get_dns_address, getObject()->apHandle, 2, 1) == 0 ? text.get() : "none";
}

TEST_F(WiredSettingsAdapter, SwitchesAndUpdatesWhateverTheSwitchGave) {
    const std::string updated = "Success  update_profile  [NONE]";
    const auto ipManual = [] { _Set_IP_Config_Type(kSwitchToManual); };
    const auto ipAutomatic = [] { _Set_IP_Config_Type(kSwitchToAutomatic); };
    const auto dnsManual = [] { _Set_DNS_Config_Type(kSwitchToManual); };
    const auto dnsAutomatic = [] { _Set_DNS_Config_Type(kSwitchToAutomatic); };
    const std::string dns1 = "Success  to Set DNS address 1  [NONE]";
    const std::string dns2 = "Success  to set DNS address 2 [NONE]";
    const struct {
        void (*change)();
        const char* failing;
        const char* times;
        Words said;
    } cases[] = {
        {ipManual, "", "", {"Static Type", "Success  to set ip method type Static [NONE]", updated}},
        {ipManual,
         "connection_profile_set_ip_config_type",
         "1",
         {"Static Type", "Fail to set ip method type[OPERATION_FAILED]", updated}},
        {ipAutomatic, "", "", {"Dynamic Type", updated}},
        {ipAutomatic,
         "connection_profile_set_ip_config_type",
         "1",
         {"Dynamic Type", "Fail to set ip method type CONNECTION_IP_CONFIG_TYPE_AUTO  [OPERATION_FAILED]", updated}},
        {ipAutomatic,
         "connection_update_profile",
         "1",
         {"Dynamic Type", "connection_update_profile failed [OPERATION_FAILED]"}},
        {dnsManual,
         "",
         "",
         {"Static Type", "Success  to set dns method type CONNECTION_DNS_CONFIG_TYPE_STATIC [NONE]", updated}},
        {dnsManual,
         "connection_profile_set_dns_config_type",
         "1",
         {"Static Type", "Fail to set dns method type[OPERATION_FAILED]", updated}},
        {dnsAutomatic,
         "connection_profile_set_dns_address",
         "1",
         {"Dynamic Type", "fail to set_dns_address1 [OPERATION_FAILED]", dns2, updated}},
        {dnsAutomatic,
         "connection_profile_set_dns_config_type",
         "1",
         {"Dynamic Type", dns1, dns2,
          "Fail to set dns method type CONNECTION_DNS_CONFIG_TYPE_DYNAMIC  [OPERATION_FAILED]", updated}},
    };
    openWired();
    for (const auto& [change, failing, times, expected] : cases) {
        failNext(failing, times);
        EXPECT_EQ(said(change), expected) << failing;
    }
}

TEST_F(WiredSettingsAdapter, WritesInOrderAndStoresNothingAfterARefusal) {
    const Words whole{"Valid Connection and Profile Handler",
                      "Set Value : IP  : = 2001:db8:9::9",
                      "Set Value : Prefix Length  : = 300",
                      "Set Value : Gateway  : = 2001:db8:9::1",
                      "Set Value : DNS  : = 2001:db8:9::53",
                      "Success to set IP Address [NONE]",
                      "Success to set Prefix Length [300][44][NONE]",
                      "Success to set Gateway Address [NONE]",
                      "Success to set DNS Address [NONE]",
                      "Success to set DNS2 Address [NONE]",
                      "connection_update_profile success"};
    const struct {
        const char* failing;
        std::size_t before;  // lines that come all the same
        const char* last;
    } cases[] = {
        {"connection_profile_set_ip_address", 5, "Fail to set IP Address [OPERATION_FAILED]"},
        {"connection_profile_set_prefix_length", 6, "Fail to set Prefix Length [OPERATION_FAILED][44]"},
        {"connection_profile_set_gateway_address", 7, "Fail to set Gateway Address [OPERATION_FAILED]"},
        {"connection_profile_set_dns_address", 8, "Fail to set DNS1 Address [OPERATION_FAILED]"},
        {"connection_update_profile", 10, "connection_update_profile failed"},
    };
    openWired();
    const sglobalIPValues wanted = values("300");
    const auto write = [&] { Set_Wired_Conn_Info(&wanted); };
    for (const auto& [failing, before, last] : cases) {
        Words expected(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(before));
        expected.emplace_back(last);
        failNext(failing, "1");
        EXPECT_EQ(said(write), expected) << failing;
        EXPECT_EQ(live(), (Words{kFull, "64", "fe80::1", "2001:db8:1::53"})) << failing;
    }
    _Set_IP_Config_Type(kSwitchToManual);
    _Set_DNS_Config_Type(kSwitchToManual);
    EXPECT_EQ(said(write), whole);
    EXPECT_EQ(live(), (Words{"2001:db8:9::9", "44", "2001:db8:9::1", "2001:db8:9::53"}));
    EXPECT_EQ(wiredSecondaryDns(), "2001:db8:9::53");
    const sglobalIPValues noNumber = values("abc");
    EXPECT_EQ(said([&] { Set_Wired_Conn_Info(&noNumber); }).back(), "Fail to set Prefix Length [INVALID_PARAMETER][0]");
    failNext("connection_profile_set_dns_address", "1");
    EXPECT_EQ(said([] { Set_Wired_Dns_Address("2001:db8:9::54"); }),
              (Words{"Valid Connection Handler", "Valid Profile Handler",
                     "Fail to Set Primary DNS Address : OPERATION_FAILED",
                     "Success to Set Secondary DNS Address : NONE", "connection_update_profile success"}));
    EXPECT_EQ(wiredSecondaryDns(), "2001:db8:9::54");
}

TEST_F(WiredSettingsAdapter, WorksOnAProfileThatIsNotConnectedYet) {
    openWired("configuration");
    settings_->connection = nullptr;
    createNetworkStatus()->connection = connection_;
    connection_profile_handle profile = nullptr;
    EXPECT_FALSE(Updated_Ethernet_Profile_Handle(&profile));
    EXPECT_NE(profile, nullptr) << "found over the status screen's connection";
    _Set_IP_Config_Type(kSwitchToManual);
    const sglobalIPValues wanted = values("56");
    Set_Wired_Conn_Info(&wanted);
    EXPECT_EQ(live()[0], "2001:db8:9::9");
}

TEST_F(WiredSettingsAdapter, AutomaticDnsForgetsTheManualServers) {
    openWired();
    _Set_DNS_Config_Type(kSwitchToManual);
    Set_Wired_Dns_Address("2001:db8:9::54");
    _Set_DNS_Config_Type(kSwitchToAutomatic);
    _Set_DNS_Config_Type(kSwitchToManual);
    EXPECT_EQ(live()[3], "::") << "manual again, and neither server is left";
    failNext("connection_profile_get_dns_config_type", "1");
    EXPECT_STREQ(Get_DNS_Config_Type(), kAutomaticMode) << "what cannot be read counts as automatic";
    failNext("connection_profile_get_dns_address", "2");
    PlatformText text(strdup("before"));
    char* dns = text.get();
    EXPECT_TRUE(GetDnsAddress(&dns)) << "true is failure";
    EXPECT_STREQ(text.get(), ":");
    char* none = nullptr;
    EXPECT_TRUE(GetDnsAddress(&none));
    EXPECT_EQ(none, nullptr);
}

TEST_F(WifiSettingsAdapter, WritesToEveryoneOfTheNameWhateverIsRefused) {
    const Words one{"success to set ip address[NONE]", "success to set prefix length[NONE]",
                    "success to set gateway address[NONE]", "success to set dns1 address[NONE]",
                    "success to set dns2 address[NONE]"};
    const struct {
        const char* failing;
        std::size_t line;
        const char* said;
    } cases[] = {
        {"wifi_ap_set_ip_address", 0, "Fail to set ip address[OPERATION_FAILED]"},
        {"wifi_ap_set_prefix_length", 1, "Fail to set prefix length[OPERATION_FAILED]"},
        {"wifi_ap_set_gateway_address", 2, "Fail to set gateway address[OPERATION_FAILED]"},
        {"wifi_ap_set_dns_address", 3, "Fail to set dns1 address[OPERATION_FAILED]"},
    };
    openWifi();
    sglobalIPValues wanted = values("300");
    copyText(wanted.apName, "Home");
    for (const auto& [failing, line, text] : cases) {
        Words expected = one;
        expected[line] = text;
        expected.insert(expected.end(), one.begin(), one.end());
        failNext(failing, "1");
        EXPECT_EQ(said([&] { EXPECT_EQ(Set_AP_Connection_Info(&wanted), 1); }), expected) << failing;
    }
    sglobalIPValues forOne = wanted;
    copyText(forOne.apName, kLongName + "2");
    EXPECT_EQ(said([&] { Set_AP_Connection_Info(&forOne); }), one) << "the whole name counts";
    name("Home");
    ASSERT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[0], "02:00:5E:20:00:05") << "the first of the name";
    ASSERT_EQ(network::command(Words{"wifi", "vanish", "Home"}), "");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
    ASSERT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[2], "44") << "eight bits of 300";
    EXPECT_EQ(wifiSecondaryDns(), "2001:db8:9::53");
}

TEST_F(WifiSettingsAdapter, SwitchesInOrderWhateverIsRefused) {
    openWifi();
    name("Home");
    ASSERT_EQ(network::command(Words{"wifi", "vanish", "Home"}), "");
    failNext("wifi_ap_set_ip_config_type", "1");
    EXPECT_EQ(said([&] { Set_Wireless_IP_Config_Type(kSwitchToManual, settings_); }),
              (Words{"Static Case", "Fail to set ip method type  : [OPERATION_FAILED]"}));
    EXPECT_EQ(said([&] { Set_Wireless_IP_Config_Type(kSwitchToAutomatic, settings_); }),
              (Words{"success to set ip method type : [NONE]"}));
    EXPECT_EQ(said([&] { Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_); }),
              (Words{"Static Case", "success to set dns method type : [NONE]"}));
    copyText(settings_->dnsAddress, "2001:db8:9::54");
    EXPECT_EQ(said([&] { EXPECT_EQ(_Set_AP_DNS_Connection_Info(settings_), 1); }),
              (Words{"success to set primary dns address[NONE]", "success to set secondary dns address[NONE]"}));
    Get_AP_Connection_Info(settings_);
    EXPECT_EQ(read()[4], "2001:db8:9::54");
    EXPECT_EQ(wifiSecondaryDns(), "2001:db8:9::54");
    Set_Wireless_DNS_Config_Type(kSwitchToAutomatic, settings_);
    Set_Wireless_DNS_Config_Type(kSwitchToManual, settings_);
    char* dns = nullptr;
    EXPECT_FALSE(GetWifiDnsAddress(settings_, &dns)) << "manual again, and neither server is left";
    failNext("wifi_ap_set_dns_address", "1");
    failNext("wifi_ap_set_dns_config_type", "1");
    EXPECT_EQ(said([&] { Set_Wireless_DNS_Config_Type(kSwitchToAutomatic, settings_); }),
              (Words{"Dynamic Case", "Fail to set primary dns  : [OPERATION_FAILED]",
                     "success to set  sacondary dns  : [NONE]", "Fail to set dns method type  : [OPERATION_FAILED]"}));
}

TEST_F(WifiSettingsAdapter, AnUnreadableNameEndsAChangeButNotTheReading) {
    openWifi();
    name("Home");
    failNext("wifi_ap_get_essid", "1");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), 0) << "the search for values goes on";
    settings_->apHandle = nullptr;
    failNext("wifi_ap_get_essid", "1");
    Set_Wireless_IP_Config_Type(kSwitchToManual, settings_);
    EXPECT_EQ(settings_->apHandle, nullptr);
    EXPECT_EQ(Set_Wireless_Dns_Address("Nobody", "::"), 1);
    EXPECT_STREQ(Get_Wireless_DNS_Config_Type("Nobody"), kAutomaticMode);
    sglobalIPValues wanted = values("56");
    copyText(wanted.apName, "Home");
    failNext("wifi_ap_get_essid", "1");
    EXPECT_EQ(said([&] { EXPECT_EQ(Set_AP_Connection_Info(&wanted), 1); }), Words{}) << "nobody is written to";
    char* dns = nullptr;
    failNext("wifi_ap_get_dns_address");
    EXPECT_FALSE(GetWifiDnsAddress(settings_, &dns)) << "false is failure";
    EXPECT_EQ(dns, nullptr);
    ASSERT_EQ(network::command(Words{"no-faults"}), "");
    ASSERT_EQ(network::command(Words{"wifi", "off"}), "");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), -1);
    EXPECT_EQ(read(), (Words{"02:00:5E:20:00:AA", "::", "0", "::", "::"}));
}

TEST_F(WifiSettingsAdapter, CutsLongHardwareAddressesAndPassesHiddenNames) {
    open(R"({"unchecked": true, "interfaces": [], "profiles": [],
      "wifi": {"mac": "device-0123456789abcdef0123456789", "accessPoints": [
        {"essid": "", "rssi": -50, "security": "none", "bssid": "hidden"},
        {"essid": "Home", "rssi": -60, "security": "none", "bssid": "access-point-0123456789abcdef0123456789"}]},
      "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})");
    ASSERT_EQ(wifi_initialize(), 0);
    name("Home");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[0], "access-point-0123456789abcdef01");
    failNext("wifi_ap_get_bssid");
    EXPECT_EQ(Get_AP_Connection_Info(settings_), 0);
    EXPECT_EQ(read()[0], "device-0123456789abcdef01234567");
}

}  // namespace
