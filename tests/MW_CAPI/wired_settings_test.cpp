// The wired adapter of the settings screen: what it reads, writes, and does when a call fails.
#include <cstring>

#include "MW_CAPI/MW_CAPI_Wired.h"
#include "adapters.h"

namespace {

class WiredSettings : public Adapters {
  protected:
    void SetUp() override {
        open();
        connect();
    }
    void TearDown() override {
        Adapters::TearDown();
        connection_destroy(connection_);
    }
    void connect() {
        ASSERT_EQ(connection_create(&connection_), 0);
        settings_->connection = connection_;
    }
    // What the profile has now: it is looked up anew, so what was not stored does not count.
    Words live() {
        forgetConnHandler();
        connection_destroy(connection_);
        connect();
        EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 0);
        connection_profile_handle profile = nullptr;
        Updated_Ethernet_Profile_Handle(&profile);
        PlatformText second;
        fetchText(second, connection_profile_get_dns_address, profile, 2, 1);
        return readWith(second);
    }

    const Words given_{"02:00:5E:10:00:01", full_, "64", "fe80::1", "2001:db8:1::53", ""};
    connection_handle connection_ = nullptr;
};

TEST_F(WiredSettings, ReadsTheLiveValuesOrDefaults) {
    const Words all(given_.begin(), given_.end() - 1);
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 0);
    EXPECT_EQ(read(), all);
    connection_profile_handle profile = nullptr;
    EXPECT_TRUE(Updated_Ethernet_Profile_Handle(&profile));
    EXPECT_EQ(_Get_Wired_Connection_Info(nullptr), 16);
    EXPECT_STREQ(Get_DNS_Config_Type(), kAutomaticMode);
    char* dns = nullptr;
    EXPECT_FALSE(GetDnsAddress(&dns)) << "false is success";
    EXPECT_STREQ(PlatformText(dns).get(), "2001:db8:1::53");

    const Words defaults{all[0], "::", "0", "::", "::"};
    const std::tuple<const char*, int, Words> cases[] = {
        {"connection_get_profile_iterator", 14, defaults},
        {"connection_profile_iterator_next", 14, defaults},
        {"connection_profile_get_type", 14, defaults},
        {"connection_get_mac_address", 15, Words(5)},
        {"connection_profile_get_state", 0, all},
        {"connection_profile_get_ip_address", 0, {all[0], "::", all[2], all[3], all[4]}},
        {"connection_profile_get_prefix_length", 0, {all[0], all[1], "0", all[3], all[4]}},
        {"connection_profile_get_gateway_address", 0, {all[0], all[1], all[2], "::", all[4]}},
        {"connection_profile_get_dns_address", 0, {all[0], all[1], all[2], all[3], "::"}},
    };
    for (const auto& [call, result, expected] : cases) {
        *settings_->connectionInfo = {};
        fail(call);
        EXPECT_EQ(_Get_Wired_Connection_Info(settings_), result) << call;
        EXPECT_EQ(read(), expected) << call;
        say({"no-faults"});
    }
}

TEST_F(WiredSettings, WritesAllValuesOrNoneAndBothServers) {
    _Set_IP_Config_Type(kSwitchToManual);
    _Set_DNS_Config_Type(kSwitchToManual);
    sglobalIPValues wanted = values("abc");
    Set_Wired_Conn_Info(&wanted);
    EXPECT_EQ(live(), given_) << "no prefix length";
    wanted = values("300");
    for (const char* call : {"connection_profile_set_ip_address", "connection_profile_set_prefix_length",
                             "connection_profile_set_gateway_address", "connection_profile_set_dns_address",
                             "connection_update_profile"}) {
        fail(call, "1");
        Set_Wired_Conn_Info(&wanted);
        EXPECT_EQ(live(), given_) << call;
    }
    Set_Wired_Conn_Info(&wanted);
    EXPECT_EQ(live(), (Words{given_[0], address_, "44", gateway_, server_, server_})) << "eight bits of 300";
    fail("connection_profile_set_dns_address", "1");
    Set_Wired_Dns_Address("2001:db8:9::54");
    EXPECT_EQ(live(), (Words{given_[0], address_, "44", gateway_, server_, "2001:db8:9::54"}));
}

TEST_F(WiredSettings, TellsTheDnsModeAndServerAsItsCallersExpect) {
    _Set_DNS_Config_Type(kSwitchToManual);
    Set_Wired_Dns_Address("2001:db8:9::54");
    EXPECT_STREQ(Get_DNS_Config_Type(), kManualMode);
    fail("connection_profile_get_dns_config_type", "1");
    EXPECT_STREQ(Get_DNS_Config_Type(), kAutomaticMode) << "what cannot be read counts as automatic";
    fail("connection_profile_set_dns_address", "1");
    _Set_DNS_Config_Type(kSwitchToAutomatic);
    EXPECT_STREQ(Get_DNS_Config_Type(), kAutomaticMode) << "a server that stays does not stop the switch";
    fail("connection_profile_get_dns_address", "2");
    PlatformText text(strdup("before"));
    char* dns = text.get();
    EXPECT_TRUE(GetDnsAddress(&dns)) << "true is failure";
    EXPECT_STREQ(text.get(), ":");
    char* none = nullptr;
    EXPECT_TRUE(GetDnsAddress(&none));
    EXPECT_EQ(none, nullptr);
}

TEST_F(WiredSettings, WorkOnAProfileThatIsNotConnectedAndWithoutOne) {
    say({"profile", "disconnect", "wired"});
    settings_->connection = nullptr;
    createNetworkStatus()->connection = connection_;
    connection_profile_handle profile = nullptr;
    EXPECT_FALSE(Updated_Ethernet_Profile_Handle(&profile));
    EXPECT_NE(profile, nullptr) << "found over the status screen's connection";
    EXPECT_TRUE(get_updated_ethernet_profile_handle(&profile));
    fail("connection_get_profile_iterator", "1");
    EXPECT_FALSE(get_updated_ethernet_profile_handle(&profile));
    say({"profile", "remove", "wired"});
    say({"mac", "none"});
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 14);
    EXPECT_EQ(read(), (Words{"00:00:00:00:00:00", "::", "0", "::", "::"}));
    char* dns = nullptr;
    EXPECT_FALSE(GetDnsAddress(&dns));
    EXPECT_EQ(dns, nullptr);
    EXPECT_EQ(_Set_IP_Config_Type(kSwitchToManual), 0);
    EXPECT_EQ(_Set_DNS_Config_Type(kSwitchToAutomatic), 0);
    Set_Wired_Conn_Info(nullptr);
    Set_Wired_Dns_Address(nullptr);
    createNetworkStatus()->connection = nullptr;
    forgetConnHandler();
    EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 14) << "no connection";
    EXPECT_TRUE(deregister_client());
}

}  // namespace
