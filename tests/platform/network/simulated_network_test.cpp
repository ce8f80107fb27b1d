// The wired side of a simulated network through the connection manager: stored settings, the "network …" commands of
// scripts, and scenarios at work.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "connection_manager.h"
#include "gadget_paths.h"
#include "main_loop.h"
#include "results.h"
#include "temporary_scenario.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;
using Words = std::vector<std::string>;
using contract::number, contract::text;

std::string contentOf(const std::string& file) {
    std::stringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

class SimulatedNetwork : public testing::Test {
  protected:
    void SetUp() override { open(kPromptNetwork); }
    void open(std::string_view scenario) {
        selectScenario(scenario);
        ASSERT_EQ(connection_create(&client), 0);
        lookUp();
        heard.clear();
        ASSERT_EQ(connection_set_ip_address_changed_cb(client, contract::recordAddress, &heard), 0);
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
    // "address/length gateway server server mode" of a profile handle; what it lacks is empty, and a length of -1.
    static std::string valuesOf(connection_profile_handle of) {
        const int length = number<std::uint8_t>(connection_profile_get_prefix_length, of, kIpv6);
        const int mode = number<int>(connection_profile_get_dns_config_type, of, kIpv6);
        return text(connection_profile_get_ip_address, of, kIpv6) + "/" + std::to_string(length) + " " +
               text(connection_profile_get_gateway_address, of, kIpv6) + " " +
               text(connection_profile_get_dns_address, of, 1, kIpv6) + " " +
               text(connection_profile_get_dns_address, of, 2, kIpv6) +
               (mode == CONNECTION_DNS_CONFIG_STATIC ? " static" : " dynamic");
    }
    // What the two checks answer, the gateway's first; a silent one is missing.
    std::vector<int> answers() const {
        contract::Results results;
        EXPECT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &results), 0);
        MainLoop::settle();
        EXPECT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &results), 0);
        MainLoop::settle();
        EXPECT_EQ(connection_unset_async_cb(profile), 0);
        EXPECT_EQ(connection_unset_async_cb(client), 0);
        return results.codes;
    }

    const std::string given = "2001:db8:1::10/64 fe80::1 2001:db8:1::53 2001:db8:1::54 dynamic";
    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
    Words heard;  // addresses
};

TEST_F(SimulatedNetwork, RefusesImpossibleSettings) {
    for (const char* text : {"", "::", "2001:db8::wrong", "192.0.2.1", "2001:db8::1/64", "fe80::1%eth0"}) {
        EXPECT_EQ(connection_profile_set_ip_address(profile, kIpv6, text), kInvalidParameter) << text;
        const int result = std::string_view(text) == "::" ? 0 : kInvalidParameter;
        EXPECT_EQ(connection_profile_set_gateway_address(profile, kIpv6, text), result) << text;
        EXPECT_EQ(connection_profile_set_dns_address(profile, 3, kIpv6, text), result) << text;
    }
    for (const std::uint8_t length : {std::uint8_t{0}, std::uint8_t{129}})
        EXPECT_EQ(connection_profile_set_prefix_length(profile, kIpv6, length), kInvalidParameter);
    for (const int order : {0, 4})
        EXPECT_EQ(connection_profile_set_dns_address(profile, order, kIpv6, "::1"), kInvalidParameter) << order;
    EXPECT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, 2), kInvalidParameter);
    EXPECT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, 3), kInvalidParameter);
}

TEST_F(SimulatedNetwork, TakesSettingsWhenTheyAreStoredAndTellsOfThem) {
    setMode(CONNECTION_IP_CONFIG_STATIC);
    EXPECT_EQ(valuesOf(profile), given) << "no values are known yet";
    setAddress("2001:db8:7::7", 128, "::");
    ASSERT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, CONNECTION_DNS_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_dns_address(profile, 3, kIpv6, "2001:db8:7::53"), 0);
    ASSERT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, "::"), 0);
    ASSERT_EQ(connection_update_profile(client, profile), 0);
    EXPECT_TRUE(heard.empty()) << "from inside the call";
    MainLoop::settle();
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/128  2001:db8:7::53  static");
    EXPECT_EQ(connection_profile_check_gateway6_async(profile, contract::record, nullptr),
              CONNECTION_ERROR_INVALID_GATEWAY);

    ASSERT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, CONNECTION_DNS_CONFIG_DYNAMIC), 0);
    setMode(CONNECTION_IP_CONFIG_AUTOMATIC);
    EXPECT_EQ(valuesOf(profile), "/-1    dynamic") << "the network has not given its values again yet";
    MainLoop::settle();
    EXPECT_EQ(valuesOf(profile), given);
    setMode(CONNECTION_IP_CONFIG_STATIC);
    MainLoop::settle();
    const std::string ipv4 = "192.0.2.10 ";
    EXPECT_EQ(heard, (Words{ipv4 + "2001:db8:7::7", ipv4, ipv4 + "2001:db8:1::10", ipv4 + "2001:db8:7::7"}));
}

TEST_F(SimulatedNetwork, KeepsSettingsOnTheirObjectUntilTheyAreStoredThroughItsOwnClient) {
    connection_profile_handle clone = nullptr;
    ASSERT_EQ(connection_profile_clone(&clone, profile), 0);
    setAddress("2001:db8:7::7", 48, "2001:db8:7::1");
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/48 2001:db8:7::1 2001:db8:1::53 2001:db8:1::54 dynamic");
    EXPECT_EQ(valuesOf(clone), given);
    lookUp();
    EXPECT_EQ(valuesOf(profile), given) << "handed out without the changes that were never stored";

    ASSERT_EQ(connection_profile_set_ip_config_type(clone, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_ip_address(clone, kIpv6, "2001:db8:8::8"), 0);
    say({"fault", "connection_update_profile", "NO_REPLY"});
    EXPECT_EQ(connection_update_profile(client, clone), CONNECTION_ERROR_NO_REPLY);
    EXPECT_EQ(valuesOf(profile), given);
    EXPECT_EQ(connection_update_profile(client, clone), 0) << "the failed update kept the changes";
    EXPECT_TRUE(valuesOf(profile).starts_with("2001:db8:8::8/64 "));

    connection_handle other = nullptr;
    ASSERT_EQ(connection_create(&other), 0);
    EXPECT_EQ(connection_update_profile(other, profile), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(connection_update_profile(client, client), CONNECTION_ERROR_INVALID_OPERATION);
    EXPECT_EQ(connection_update_profile(client, nullptr), kInvalidParameter);
    EXPECT_EQ(connection_update_profile(nullptr, profile), kInvalidParameter);
    say({"profile", "remove", "wired"});
    EXPECT_EQ(connection_update_profile(client, profile), CONNECTION_ERROR_NO_CONNECTION);
    EXPECT_EQ(number<int>(connection_profile_get_type, profile), -1);
}

TEST_F(SimulatedNetwork, AnswersAsItIsTold) {
    const std::pair<Words, std::vector<int>> rows[] = {
        {{"gateway", "NO_REPLY"}, {CONNECTION_ERROR_NO_REPLY, 0}},
        {{"internet", "offline"}, {CONNECTION_ERROR_NO_REPLY, CONNECTION_ERROR_OFFLINE}},
        {{"gateway", "silent"}, {CONNECTION_ERROR_OFFLINE}},
        {{"internet", "-31733"}, {CONNECTION_ERROR_TCP_SYN_TIMEOUT}},
        {{"gateway", "answer", "0"}, {0, CONNECTION_ERROR_TCP_SYN_TIMEOUT}},
        {{"internet", "online"}, {0, 0}},
    };
    for (const auto& [words, wanted] : rows) {
        say(words);
        EXPECT_EQ(answers(), wanted) << words[0] << " " << words[1];
    }
    // Also questions that are under way.
    contract::Results results;
    ASSERT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &results), 0);
    say({"unplug"});
    MainLoop::settle();
    ASSERT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &results), 0);
    MainLoop::settle();
    say({"plug"});
    ASSERT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &results), 0);
    say({"gateway", "silent"});
    MainLoop::settle();
    EXPECT_EQ(results.codes, (std::vector<int>{CONNECTION_ERROR_NO_CONNECTION, CONNECTION_ERROR_OFFLINE}));
}

TEST_F(SimulatedNetwork, ChangesItsLiveValuesTellsOfANewAddressAndIsSaved) {
    say({"address", "2001:db8:7::7/48"});
    say({"router", "fe80::7"});
    say({"dns", "::1", "::2", "::3"});
    say({"gateway", "silent"});
    EXPECT_EQ(text(connection_profile_get_dns_address, profile, 3, kIpv6), "::3");
    const TemporaryScenario saved("");
    EXPECT_EQ(network::command(Words{"save", saved.file() + "/x"}), "cannot write " + saved.file() + "/x");
    say({"save", saved.file()});
    say({"address", "2001:db8:7::7/56"});
    for (const char* value : {"address", "router", "dns"})
        say({value, "none"});
    MainLoop::settle();
    EXPECT_EQ(heard, (Words{"192.0.2.10 2001:db8:7::7", "192.0.2.10 "})) << "the length is no news";
    EXPECT_EQ(valuesOf(profile), "/-1    dynamic");
    open(contentOf(saved.file()));
    EXPECT_EQ(valuesOf(profile), "2001:db8:7::7/48 fe80::7 ::1 ::2 dynamic");
    EXPECT_EQ(answers(), std::vector<int>{0}) << "the silent gateway is saved too";
    setAddress("2001:db8:8::8", 56, "2001:db8:8::1");
    setMode(CONNECTION_IP_CONFIG_STATIC);
    say({"save", saved.file()});
    open(contentOf(saved.file()));
    EXPECT_EQ(valuesOf(profile), "2001:db8:8::8/56 2001:db8:8::1 ::1 ::2 dynamic");
}

TEST_F(SimulatedNetwork, SaysWhatIsWrongWithACommandAndChangesNothing) {
    const std::pair<Words, const char*> rows[] = {
        {{}, "no network command; known: unplug, plug, "},
        {{"explode"}, "unknown network command \"explode\"; known: unplug, plug, "},
        {{"gateway"}, "usage: gateway answer|silent|RESULT [SECONDS]"},
        {{"gateway", "perhaps"}, "\"perhaps\" is not a result of the connection or Wi-Fi manager"},
        {{"gateway", "silent", "-1"}, "seconds must lie between 0 and "},
        {{"gateway", "silent", "nan"}, "seconds must lie between 0 and "},
        {{"internet", "online", "soon"}, "\"soon\" is not a number of seconds"},
        {{"address", "2001:db8::1"}, "an address is written ADDRESS/LENGTH"},
        {{"address", "2001:db8::1/129"}, "129 is not a prefix length (0 to 128)"},
        {{"address", "2001:db8::1/"}, "\"\" is not a prefix length"},
        {{"address", "home/64"}, "\"home\" is not an IPv6 address"},
        {{"dns", "::1", "none"}, "\"none\" is not an IPv6 address"},
        {{"mac", "unknown"}, "\"unknown\" is not a MAC address"},
        {{"fault", "connection_create", "0"}, "a fault needs an error"},
        {{"fault", "connection_create", "NO_REPLY", "-3"}, "times must be"},
        {{"profile", "remove", "wireless"}, "there is no profile \"wireless\""},
        {{"profile", "paint", "wired"}, "\"paint\" is none of connect, disconnect, remove"},
        {{"wifi", "on"}, "there is no radio"},
        {{"ethernet", "on"}, "\"on\" is none of connected, disconnected, deactivated"},
    };
    for (const auto& [words, start] : rows) {
        const std::string fault = network::command(words);
        EXPECT_TRUE(fault.starts_with(start)) << fault << "\nwanted " << start;
    }
    EXPECT_EQ(valuesOf(profile), given);
    EXPECT_EQ(answers(), (std::vector<int>{0, 0}));
    network::release();
    EXPECT_EQ(network::command(Words{"plug"}), "no network is selected");
}

TEST_F(SimulatedNetwork, CarriesAnyTextWhenUnchecked) {
    open(R"({"unchecked": true, "interfaces": [{"kind": "ethernet", "mac": ""}], "gateway": {"result": "silence"},
             "internet": {"result": "silence"}, "profiles": [{"id": "p", "type": "ethernet", "state": "connected",
             "live": {"address": "<b>%s%n\n", "prefixLength": 255}}]})");
    EXPECT_EQ(valuesOf(profile), "<b>%s%n\n/255    dynamic");
    say({"address", "\xff\xfe/a/129"});
    EXPECT_EQ(valuesOf(profile), "\xff\xfe/a/129    dynamic");
    EXPECT_EQ(network::command(Words{"address", "x/256"}), "256 is not a prefix length (0 to 255)");
}

TEST_F(SimulatedNetwork, IsDescribedByEveryShippedScenario) {
    for (const auto& entry : std::filesystem::directory_iterator(GADGET_HOST_FOLDER "/networks")) {
        const auto selection = network::select("simulated=" + entry.path().string(), {});
        EXPECT_TRUE(selection.selected) << selection.text;
        EXPECT_TRUE(selection.text.ends_with(")")) << selection.text;
    }
}

}  // namespace
