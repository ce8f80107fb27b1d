// Changing a profile and having it stored and applied, on the simulated network.
#include <gtest/gtest.h>

#include "connection_manager.h"
#include "main_loop.h"
#include "results.h"
#include "temporary_scenario.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;

class ConnectionSettings : public testing::Test {
  protected:
    void SetUp() override {
        const auto selection = network::select(TemporaryScenario(kPromptNetwork).choice(), {});
        ASSERT_TRUE(selection.selected) << selection.text;
        ASSERT_EQ(connection_create(&client), 0);
        lookUp();
    }
    // As every user does before a change: the first registered profile.
    void lookUp() {
        void* iterator = nullptr;
        ASSERT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_REGISTERED, &iterator), 0);
        ASSERT_EQ(connection_profile_iterator_next(iterator, &profile), 0);
    }
    void setMode(int type) {
        ASSERT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, type), 0);
        ASSERT_EQ(connection_update_profile(client, profile), 0);
    }
    void setAddress(const char* address, std::uint8_t length, const char* gateway) {
        ASSERT_EQ(connection_profile_set_ip_address(profile, kIpv6, address), 0);
        ASSERT_EQ(connection_profile_set_prefix_length(profile, kIpv6, length), 0);
        ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, gateway), 0);
    }
    // "address/length gateway dns, dns… mode" of a profile handle; what it lacks is "-".
    static std::string valuesOf(connection_profile_handle of) {
        char *address = nullptr, *gateway = nullptr, *server = nullptr;
        std::uint8_t length = 0;
        int mode = 0;
        connection_profile_get_ip_address(of, kIpv6, &address);
        connection_profile_get_prefix_length(of, kIpv6, &length);
        connection_profile_get_gateway_address(of, kIpv6, &gateway);
        connection_profile_get_dns_config_type(of, kIpv6, &mode);
        std::string text = orDash(address) + "/" + std::to_string(length) + " " + orDash(gateway);
        for (int order = 1; connection_profile_get_dns_address(of, order, kIpv6, &server) == 0; ++order) {
            text += " " + contract::take(server);
        }
        return text + (mode == CONNECTION_DNS_CONFIG_STATIC ? " static" : " dynamic");
    }
    static std::string orDash(char* text) {
        const std::string copy = contract::take(text);
        return copy.empty() ? "-" : copy;
    }

    const std::string given = "2001:db8:1::10/64 fe80::1 2001:db8:1::53 2001:db8:1::54 dynamic";
    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
};

TEST_F(ConnectionSettings, RefuseImpossibleValues) {
    for (const char* text : {"", "::", "ff02::1", "2001:db8::wrong", "192.0.2.1", "2001:db8::1/64", "fe80::1%eth0"}) {
        EXPECT_EQ(connection_profile_set_ip_address(profile, kIpv6, text), kInvalidParameter) << text;
        if (std::string_view(text) == "::") continue;
        EXPECT_EQ(connection_profile_set_gateway_address(profile, kIpv6, text), kInvalidParameter) << text;
        EXPECT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, text), kInvalidParameter) << text;
    }
    for (const std::uint8_t length : std::initializer_list<std::uint8_t>{0, 129, 255}) {
        EXPECT_EQ(connection_profile_set_prefix_length(profile, kIpv6, length), kInvalidParameter) << int{length};
    }
    for (const int order : {-1, 0, 4}) {
        EXPECT_EQ(connection_profile_set_dns_address(profile, order, kIpv6, "::1"), kInvalidParameter) << order;
    }
    EXPECT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, 2), kInvalidParameter);
    EXPECT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, 3), kInvalidParameter);
    EXPECT_EQ(connection_profile_set_prefix_length(profile, 2, 64), kInvalidParameter);
    EXPECT_EQ(connection_profile_set_ip_address(profile, CONNECTION_ADDRESS_FAMILY_IPV4, "192.0.2.1"),
              CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED);
    EXPECT_EQ(valuesOf(profile), given);
}

TEST_F(ConnectionSettings, TakeEffectWhenTheyAreStoredAndAreTold) {
    std::vector<std::string> heard;
    const auto onAddress = [](const char*, const char* ipv6, void* data) {
        static_cast<std::vector<std::string>*>(data)->emplace_back(ipv6);
    };
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, onAddress, &heard), 0);
    setMode(CONNECTION_IP_CONFIG_STATIC);
    EXPECT_EQ(valuesOf(profile), given) << "no values are known yet";

    setAddress("2001:db8:7::7", 48, "2001:db8:7::1");
    ASSERT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, CONNECTION_DNS_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_dns_address(profile, 2, kIpv6, "2001:db8:7::53"), 0);
    ASSERT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, "::"), 0);
    ASSERT_EQ(connection_update_profile(client, profile), 0);
    EXPECT_TRUE(heard.empty()) << "from inside the call";
    MainLoop::settle();
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/48 2001:db8:7::1 2001:db8:7::53 static");

    ASSERT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, CONNECTION_DNS_CONFIG_DYNAMIC), 0);
    setMode(CONNECTION_IP_CONFIG_AUTOMATIC);
    EXPECT_EQ(valuesOf(profile), "-/0 - dynamic") << "the network has not given its values again yet";
    MainLoop::settle();
    EXPECT_EQ(valuesOf(profile), given);
    setMode(CONNECTION_IP_CONFIG_STATIC);
    MainLoop::settle();
    EXPECT_EQ(heard, (std::vector<std::string>{"2001:db8:7::7", "", "2001:db8:1::10", "2001:db8:7::7"}));
}

TEST_F(ConnectionSettings, LetAGatewayBeNone) {
    setMode(CONNECTION_IP_CONFIG_STATIC);
    setAddress("2001:db8:7::7", 128, "::");
    ASSERT_EQ(connection_update_profile(client, profile), 0);
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/128 - 2001:db8:1::53 2001:db8:1::54 dynamic");
    contract::Results results;
    EXPECT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &results),
              CONNECTION_ERROR_INVALID_GATEWAY);
}

TEST_F(ConnectionSettings, StayOnTheirObjectUntilTheyAreStored) {
    connection_profile_handle clone = nullptr;
    ASSERT_EQ(connection_profile_clone(&clone, profile), 0);
    setAddress("2001:db8:7::7", 48, "2001:db8:7::1");
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/48 2001:db8:7::1 2001:db8:1::53 2001:db8:1::54 dynamic");
    EXPECT_EQ(valuesOf(clone), given);
    lookUp();
    EXPECT_EQ(valuesOf(profile), given) << "handed out without the changes that were never stored";

    ASSERT_EQ(connection_profile_set_ip_config_type(clone, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_ip_address(clone, kIpv6, "2001:db8:8::8"), 0);
    ASSERT_EQ(network::command(std::vector<std::string>{"fault", "connection_update_profile", "NO_REPLY"}), "");
    EXPECT_EQ(connection_update_profile(client, clone), CONNECTION_ERROR_NO_REPLY);
    EXPECT_EQ(valuesOf(profile), given);
    EXPECT_EQ(connection_update_profile(client, clone), 0) << "the failed update kept the changes";
    EXPECT_TRUE(valuesOf(profile).starts_with("2001:db8:8::8/64 "));
}

TEST_F(ConnectionSettings, AreStoredThroughTheProfilesOwnClientOnly) {
    connection_handle other = nullptr;
    ASSERT_EQ(connection_create(&other), 0);
    EXPECT_EQ(connection_update_profile(other, profile), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(connection_update_profile(client, nullptr), kInvalidParameter);
    EXPECT_EQ(connection_update_profile(nullptr, profile), kInvalidParameter);
    EXPECT_EQ(connection_update_profile(client, client), CONNECTION_ERROR_INVALID_OPERATION);
    ASSERT_EQ(network::command(std::vector<std::string>{"profile", "remove", "wired"}), "");
    EXPECT_EQ(connection_update_profile(client, profile), CONNECTION_ERROR_NO_CONNECTION);
}

}  // namespace
