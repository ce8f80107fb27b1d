// The "network …" commands of scripts, seen through the connection manager.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "connection_manager.h"
#include "main_loop.h"
#include "results.h"
#include "temporary_scenario.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
using Words = std::vector<std::string>;

class ScriptCommands : public testing::Test {
  protected:
    void open(const std::string& scenario) {
        const auto selection = network::select(TemporaryScenario(scenario).choice(), {});
        ASSERT_TRUE(selection.selected) << selection.text;
        ASSERT_EQ(connection_create(&client), 0);
        void* iterator = nullptr;
        ASSERT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_REGISTERED, &iterator), 0);
        ASSERT_EQ(connection_profile_iterator_next(iterator, &profile), 0);
    }
    std::string address() const {
        char* text = nullptr;
        connection_profile_get_ip_address(profile, kIpv6, &text);
        return contract::take(text);
    }
    std::vector<int> answers() const {
        contract::Results gateway, online;
        EXPECT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &gateway), 0);
        EXPECT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &online), 0);
        MainLoop::settle();
        EXPECT_EQ(connection_unset_async_cb(profile), 0);
        EXPECT_EQ(connection_unset_async_cb(client), 0);
        gateway.codes.insert(gateway.codes.end(), online.codes.begin(), online.codes.end());
        return gateway.codes;
    }

    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
};

TEST_F(ScriptCommands, ChangeWhatTheChecksAnswer) {
    open(std::string(kPromptNetwork));
    struct Row {
        Words words;
        std::vector<int> answers;  // gateway, online; a silent one is missing
    };
    const Row rows[] = {
        {{"gateway", "NO_REPLY"}, {CONNECTION_ERROR_NO_REPLY, 0}},
        {{"internet", "offline"}, {CONNECTION_ERROR_NO_REPLY, CONNECTION_ERROR_OFFLINE}},
        {{"gateway", "silent"}, {CONNECTION_ERROR_OFFLINE}},
        {{"internet", "-31733"}, {CONNECTION_ERROR_TCP_SYN_TIMEOUT}},
        {{"internet", "silent"}, {}},
        {{"gateway", "answer", "0"}, {0}},
        {{"internet", "online"}, {0, 0}},
    };
    for (const Row& row : rows) {
        ASSERT_EQ(network::command(row.words), "");
        EXPECT_EQ(answers(), row.answers) << row.words[0] << " " << row.words[1];
    }
}

TEST_F(ScriptCommands, DecideAQuestionThatIsUnderWay) {
    open(std::string(kPromptNetwork));
    contract::Results gateway, online;
    ASSERT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &gateway), 0);
    ASSERT_EQ(connection_get_is_online_ipv6_async(client, contract::record, &online), 0);
    ASSERT_EQ(network::command(Words{"unplug"}), "");
    MainLoop::settle();
    EXPECT_EQ(gateway.codes, std::vector<int>{CONNECTION_ERROR_NO_CONNECTION});
    EXPECT_EQ(online.codes, std::vector<int>{CONNECTION_ERROR_OFFLINE});

    ASSERT_EQ(network::command(Words{"plug"}), "");
    ASSERT_EQ(connection_profile_check_gateway6_async(profile, contract::record, &gateway), 0);
    ASSERT_EQ(network::command(Words{"gateway", "silent"}), "");
    MainLoop::settle();
    EXPECT_EQ(gateway.codes.size(), 1U);
}

TEST_F(ScriptCommands, ChangeTheLiveValuesAndTellOfANewAddress) {
    open(std::string(kPromptNetwork));
    std::vector<std::string> heard;
    const auto onAddress = [](const char* ipv4, const char* ipv6, void* data) {
        static_cast<std::vector<std::string>*>(data)->push_back(std::string(ipv4) + " " + ipv6);
    };
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, onAddress, &heard), 0);
    for (const auto& words : {Words{"address", "2001:db8:7::7/48"},
                              {"router", "fe80::7"},
                              {"dns", "::1", "::2", "::3"},
                              {"address", "2001:db8:7::7/56"},
                              {"address", "none"}}) {
        EXPECT_EQ(network::command(words), "");
        if (words.back() == "::3") {
            char* server = nullptr;
            EXPECT_EQ(connection_profile_get_dns_address(profile, 3, kIpv6, &server), 0);
            EXPECT_EQ(contract::take(server), "::3");
            EXPECT_EQ(address(), "2001:db8:7::7");
        }
    }
    MainLoop::settle();
    EXPECT_EQ(heard, (std::vector<std::string>{"192.0.2.10 2001:db8:7::7", "192.0.2.10 "}));
    EXPECT_EQ(address(), "");
}

TEST_F(ScriptCommands, SaveTheNetworkAsItIsNow) {
    open(std::string(kPromptNetwork));
    ASSERT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_ip_address(profile, kIpv6, "2001:db8:7::7"), 0);
    ASSERT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 48), 0);
    ASSERT_EQ(connection_update_profile(client, profile), 0);
    ASSERT_EQ(network::command(Words{"gateway", "silent"}), "");

    const TemporaryScenario saved("");
    EXPECT_EQ(network::command(Words{"save", saved.file() + "/x"}), "cannot write " + saved.file() + "/x");
    ASSERT_EQ(network::command(Words{"save", saved.file()}), "");
    std::stringstream text;
    text << std::ifstream(saved.file()).rdbuf();
    network::release();
    open(text.str());
    EXPECT_EQ(address(), "2001:db8:7::7");
    EXPECT_EQ(answers(), std::vector<int>{0}) << "the silent gateway is saved too";
}

TEST_F(ScriptCommands, SayWhatIsWrongWithThemAndChangeNothing) {
    open(std::string(kPromptNetwork));
    const std::pair<Words, const char*> rows[] = {
        {{}, "no network command; known: unplug, plug, "},
        {{"explode"}, "unknown network command \"explode\"; known: unplug, plug, "},
        {{"unplug", "now"}, "usage: unplug"},
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
    EXPECT_EQ(address(), "2001:db8:1::10");
    EXPECT_EQ(answers(), (std::vector<int>{0, 0}));
    network::release();
    EXPECT_EQ(network::command(Words{"plug"}), "no network is selected");
}

TEST_F(ScriptCommands, AndScenarioCarryAnyTextWhenUnchecked) {
    const std::string longText(5000, 'x');
    open(R"({"unchecked": true, "interfaces": [{"kind": "ethernet", "mac": ""}], "gateway": {"result": "silence"},
             "internet": {"result": "silence"}, "profiles": [{"id": "p", "type": "ethernet", "state": "connected",
             "live": {"address": "<b>%s%n\n)" +
         longText + R"(", "prefixLength": 255}}]})");
    EXPECT_EQ(address(), "<b>%s%n\n" + longText);
    uint8_t length = 0;
    EXPECT_EQ(connection_profile_get_prefix_length(profile, kIpv6, &length), 0);
    EXPECT_EQ(length, 255);
    EXPECT_EQ(network::command(Words{"address", "\xff\xfe/a/129"}), "");
    EXPECT_EQ(address(), "\xff\xfe/a");
    EXPECT_EQ(network::command(Words{"address", "x/256"}), "256 is not a prefix length (0 to 255)");
}

}  // namespace
