// The simulated radio through the Wi-Fi manager: the contract, walks of any length, what comes of connecting, settings,
// and the "network wifi …" commands. Time jumps (virtual-clock), so limits of half a minute cost none.
#include <Ecore.h>
#include <nlohmann/json.hpp>

#include <span>

#include "temporary_scenario.h"
#include "wifi_contract.h"

namespace {

using nlohmann::json;
using Words = std::vector<std::string>;
constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;

void select(const std::string& scenario) {
    const auto selection = network::select(TemporaryScenario(scenario).choice(), {});
    ASSERT_TRUE(selection.selected) << selection.text;
}

void say(const Words& words) {
    EXPECT_EQ(network::command(words), "");
}

RadioUnderTest simulated() {
    return {"simulated",
            [] {
                select(std::string(kPromptRadio));
                return std::string();
            },
            [] {
                say({"wifi", "lose"});
            }};
}

std::string nameOf(wifi_ap_handle ap) {
    char* text = nullptr;
    EXPECT_EQ(wifi_ap_get_essid(ap, &text), 0);
    return contract::take(text);
}

class WifiRadio : public testing::Test {
  protected:
    void open(const json& scenario = json::parse(kPromptRadio)) {
        select(scenario.dump());
        ASSERT_EQ(wifi_initialize(), 0);
    }
    // One access point, not connected yet, with what the keys say.
    static json oneAp(const json& keys) {
        json scenario = json::parse(kPromptRadio);
        json ap = {{"essid", "Home"}, {"rssi", -50}, {"security", "none"}};
        ap.update(keys);
        scenario["wifi"]["accessPoints"] = json::array({ap});
        return scenario;
    }
    static bool isConnected() {
        wifi_ap_handle ap = nullptr;
        return wifi_get_connected_ap(&ap) == 0;
    }

    MainLoop loop;
    contract::Results results;
};

INSTANTIATE_TEST_SUITE_P(Simulated, WifiContract, testing::Values(simulated()),
                         [](const auto& radio) { return radio.param.name; });

TEST_F(WifiRadio, IsWalkedInTheOrderOfFinding) {
    for (const std::size_t count : {0U, 1U, 300U, 10000U}) {
        json scenario = oneAp({{"repeat", count}});
        if (count == 0) scenario["wifi"]["accessPoints"] = json::array();
        open(scenario);
        const auto found = foundAps();
        ASSERT_EQ(found.size(), count);
        for (std::size_t index = 0; index < count; ++index) {
            ASSERT_EQ(nameOf(found[index]), index == 0 ? "Home" : "Home " + std::to_string(index + 1));
        }
    }
}

TEST_F(WifiRadio, EndsAWalkWithItsCallbackOrItsSession) {
    struct Case {
        const char* name;
        std::function<bool()> inside;
        int wanted;
    };
    const auto restart = [] {
        EXPECT_EQ(wifi_deinitialize(), 0);
        EXPECT_EQ(wifi_initialize(), 0);
        return true;
    };
    const Case cases[] = {
        {"goes on", [] { return true; }, 2},
        {"says no", [] { return false; }, 1},
        {"walks itself", [] { return foundAps().size() == 2; }, 2},
        {"lets one vanish",
         [] {
             say({"wifi", "vanish", "Cafe"});
             return true;
         },
         2},
        {"releases the manager", [] { return wifi_deinitialize() == 0; }, 1},
        {"starts the manager anew", restart, 1},
        {"releases the network",
         [] {
             network::release();
             return true;
         },
         1},
    };
    for (const Case& example : cases) {
        open();
        std::pair<const Case*, int> walk(&example, 0);
        const auto step = [](wifi_ap_handle, void* data) {
            auto* running = static_cast<std::pair<const Case*, int>*>(data);
            ++running->second;
            return running->first->inside();
        };
        EXPECT_EQ(wifi_foreach_found_aps(step, &walk), 0) << example.name;
        EXPECT_EQ(walk.second, example.wanted) << example.name;
    }
}

TEST_F(WifiRadio, CarriesNamesOfAnyBytes) {
    std::string raw;
    for (int value = 224; value < 256; ++value)
        raw += static_cast<char>(value);
    const char* hex = "E0E1E2E3E4E5E6E7E8E9EAEBECEDEEEFF0F1F2F3F4F5F6F7F8F9FAFBFCFDFEFF";
    json scenario = oneAp(json::object());
    json& list = scenario["wifi"]["accessPoints"];
    list.push_back({{"essidHex", hex}, {"rssi", -50}, {"security", "none"}});
    const std::string names[] = {"Home", raw, "", "<b>&amp;\"'%s\n</b>📺", std::string(300, 'x')};
    for (const std::string& name : std::span(names).subspan(2)) {
        list.push_back({{"essid", name}, {"rssi", -50}, {"security", "none"}});
    }
    open(scenario);
    const auto found = foundAps();
    ASSERT_EQ(found.size(), std::size(names));
    for (std::size_t index = 0; index < found.size(); ++index) {
        EXPECT_EQ(nameOf(found[index]), names[index]);
    }
}

TEST_F(WifiRadio, ConnectsOrSaysWhyNotAndKeepsThePassphraseToItself) {
    const char* passphrase = "correct horse battery";
    const json secured = {{"security", "sae"}, {"passphrase", passphrase}};
    const auto with = [](json keys, const char* result, double delay) {
        keys["connect"] = {{"result", result}, {"delay", delay}};
        return keys;
    };
    struct Case {
        json ap;
        const char* given;  // or null
        int wanted;
        double seconds;
        Words meanwhile;
    };
    const Case cases[] = {
        {with({}, "NONE", 2), nullptr, 0, 2, {}},
        {with(secured, "NONE", 2), passphrase, 0, 2, {}},
        {with(secured, "NONE", 2), "wrong horse", WIFI_ERROR_INVALID_KEY, 2, {}},
        {with(secured, "NONE", 2), nullptr, WIFI_ERROR_INVALID_KEY, 2, {}},
        {{{"security", "wpa2-psk"}, {"passphrase", "x"}, {"known", true}}, nullptr, 0, 0, {}},
        {with(secured, "DHCP_FAILED", 1), passphrase, WIFI_ERROR_DHCP_FAILED, 1, {}},
        {with(secured, "SECURITY_RESTRICTED", 1), passphrase, WIFI_ERROR_SECURITY_RESTRICTED, 1, {}},
        {with(secured, "silence", 1), passphrase, WIFI_ERROR_NO_REPLY, 30, {}},
        {with(secured, "NONE", 90), passphrase, WIFI_ERROR_NO_REPLY, 30, {}},
        {with({}, "NONE", 2), nullptr, WIFI_ERROR_NO_CONNECTION, 2, {"wifi", "vanish", "Home"}},
        {with({}, "NONE", 2), nullptr, WIFI_ERROR_NO_CONNECTION, 2, {"wifi", "off"}},
        {with({}, "NONE", 2), nullptr, WIFI_ERROR_INVALID_KEY, 2, {"wifi", "connect", "Home", "INVALID_KEY"}},
    };
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const Case& example : cases) {
        SCOPED_TRACE(example.ap.dump());
        open(oneAp(example.ap));
        wifi_ap_handle ap = foundAps().front();
        if (example.given != nullptr) {
            EXPECT_EQ(wifi_ap_set_passphrase(ap, example.given), 0);
        }
        contract::Results connecting;
        double ended = 0;
        connecting.then = [&] { ended = ecore_time_get(); };
        const double began = ecore_time_get();
        EXPECT_EQ(wifi_connect(ap, contract::record, &connecting), 0);
        if (!example.meanwhile.empty()) say(example.meanwhile);
        EXPECT_FALSE(isConnected());
        EXPECT_TRUE(MainLoop::runUntil([&] { return !connecting.codes.empty(); }));
        EXPECT_EQ(connecting.codes, std::vector<int>{example.wanted});
        EXPECT_NEAR(ended - began, example.seconds, 0.01);
        EXPECT_EQ(isConnected(), example.wanted == 0);
    }
    const std::string said = testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.find(passphrase), std::string::npos) << said;
}

TEST_F(WifiRadio, ConnectsToOneAtATimeAndCanBeStopped) {
    open();
    say({"wifi", "connect", "Cafe", "success", "5"});
    const auto found = foundAps();
    ASSERT_EQ(wifi_connect(found[1], contract::record, &results), 0);
    EXPECT_EQ(wifi_connect(found[0], contract::record, &results), WIFI_ERROR_NOW_IN_PROGRESS);
    contract::Results stopped;
    ASSERT_EQ(wifi_disconnect(found[1], contract::record, &stopped), 0);
    EXPECT_TRUE(results.codes.empty());
    ASSERT_TRUE(MainLoop::runUntil([&] { return !stopped.codes.empty(); }));
    EXPECT_EQ(results.codes, std::vector<int>{WIFI_ERROR_OPERATION_ABORTED});
    EXPECT_EQ(stopped.codes, std::vector<int>{0});

    EXPECT_EQ(wifi_disconnect(found[1], contract::record, &stopped), WIFI_ERROR_NO_CONNECTION);
    ASSERT_EQ(wifi_disconnect(found[0], contract::record, &stopped), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return stopped.codes.size() == 2; }));
    EXPECT_FALSE(isConnected());

    // Who hears of the stopped connection releases the network under the one who stopped it.
    results.then = [] { network::release(); };
    ASSERT_EQ(wifi_connect(found[1], contract::record, &results), 0);
    ASSERT_EQ(wifi_disconnect(found[1], contract::record, &stopped), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return network::backend() == nullptr; }));
    EXPECT_EQ(stopped.codes.size(), 2U);
}

TEST_F(WifiRadio, GoesOnConnectingWhenNobodyWaits) {
    open(oneAp({{"connect", {{"result", "NONE"}, {"delay", 3}}}}));
    ASSERT_EQ(wifi_connect(foundAps().front(), contract::record, &results), 0);
    ASSERT_EQ(wifi_ap_unset_async_cb(foundAps().front()), 0);
    EXPECT_TRUE(MainLoop::runUntil(isConnected));
    MainLoop::settle();
    EXPECT_TRUE(results.codes.empty());
}

TEST_F(WifiRadio, TellsNobodyOfAConnectionOnceTheManagerOrTheNetworkHasEnded) {
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"manager", [] { EXPECT_EQ(wifi_deinitialize(), 0); }},
        {"network", [] { network::release(); }},
        {"another network", [] { select(std::string(kPromptRadio)); }},
    };
    for (const auto& [name, end] : ends) {
        open(oneAp({{"connect", {{"result", "NONE"}, {"delay", 3}}}}));
        ASSERT_EQ(wifi_connect(foundAps().front(), contract::record, &results), 0);
        end();
        const double later = ecore_time_get() + 10;
        ASSERT_TRUE(MainLoop::runUntil([&] { return ecore_time_get() > later; }));
        EXPECT_TRUE(results.codes.empty()) << name;
    }
}

TEST_F(WifiRadio, TakesSettingsAtOnceAndTellsOfThem) {
    open();
    connection_handle client = nullptr;
    ASSERT_EQ(connection_create(&client), 0);
    Words heard;
    const auto onAddress = [](const char*, const char* ipv6, void* data) {
        static_cast<Words*>(data)->emplace_back(ipv6);
    };
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, onAddress, &heard), 0);
    const auto found = foundAps();
    const auto valuesOf = [](wifi_ap_handle ap) {
        char *address = nullptr, *gateway = nullptr, *server = nullptr;
        std::uint8_t length = 0;
        wifi_ap_get_ip_address(ap, kIpv6, &address);
        wifi_ap_get_prefix_length(ap, &length);
        wifi_ap_get_gateway_address(ap, kIpv6, &gateway);
        wifi_ap_get_dns_address(ap, 1, kIpv6, &server);
        return contract::take(address) + "/" + std::to_string(length) + " " + contract::take(gateway) + " " +
               contract::take(server);
    };
    for (wifi_ap_handle ap : found) {
        ASSERT_EQ(wifi_ap_set_ip_config_type(ap, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
        ASSERT_EQ(wifi_ap_set_prefix_length(ap, 48), 0);
        ASSERT_EQ(wifi_ap_set_gateway_address(ap, kIpv6, "2001:db8:7::1"), 0);
    }
    EXPECT_EQ(valuesOf(found[0]), "2001:db8:2::20/64 fe80::1 2001:db8:2::53") << "no address is set yet";
    for (wifi_ap_handle ap : found) {
        ASSERT_EQ(wifi_ap_set_ip_address(ap, kIpv6, "2001:db8:7::7"), 0);
        ASSERT_EQ(wifi_ap_set_dns_config_type(ap, kIpv6, CONNECTION_DNS_CONFIG_STATIC), 0);
        ASSERT_EQ(wifi_ap_set_dns_address(ap, 1, kIpv6, "2001:db8:7::53"), 0);
    }
    EXPECT_EQ(valuesOf(found[0]), "2001:db8:7::7/48 2001:db8:7::1 2001:db8:7::53");
    EXPECT_EQ(valuesOf(found[1]), "/0  ") << "it is not connected";
    say({"wifi", "associate", "Cafe"});
    EXPECT_EQ(valuesOf(found[1]), "2001:db8:7::7/48 2001:db8:7::1 2001:db8:7::53");
    say({"wifi", "vanish", "Cafe"});
    EXPECT_EQ(wifi_ap_set_prefix_length(found[1], 64), WIFI_ERROR_NO_CONNECTION);
    MainLoop::settle();
    EXPECT_EQ(heard, (Words{"2001:db8:7::7", ""}));
}

TEST_F(WifiRadio, ObeysItsCommands) {
    open();
    const auto found = foundAps();
    const auto answers = [&] {
        contract::Results gateway, online;
        wifi_ap_check_gateway6_async(found[0], contract::record, &gateway);
        wifi_get_is_online_ipv6_async(contract::record, &online);
        MainLoop::settle();
        EXPECT_EQ(wifi_ap_unset_async_cb(found[0]), 0);
        gateway.codes.insert(gateway.codes.end(), online.codes.begin(), online.codes.end());
        return gateway.codes;
    };
    EXPECT_EQ(answers(), (std::vector<int>{0, 0}));
    say({"gateway", "NO_REPLY"});
    say({"internet", "offline"});
    EXPECT_EQ(answers(), (std::vector<int>{WIFI_ERROR_NO_REPLY, WIFI_ERROR_OFFLINE}));
    say({"wifi", "router", "Maple Street", "none"});
    EXPECT_EQ(wifi_ap_check_gateway6_async(found[0], contract::record, &results), WIFI_ERROR_INVALID_GATEWAY);
    say({"wifi", "rssi", "Maple Street", "-70"});
    say({"wifi", "dns", "Maple Street", "::1", "::2"});
    say({"wifi", "mac", "none"});
    int rssi = 0;
    char *server = nullptr, *mac = nullptr;
    EXPECT_EQ(wifi_ap_get_rssi(found[0], &rssi), 0);
    EXPECT_EQ(rssi, -70);
    EXPECT_EQ(wifi_ap_get_dns_address(found[0], 2, kIpv6, &server), 0);
    EXPECT_EQ(contract::take(server), "::2");
    EXPECT_EQ(wifi_get_mac_address(&mac), WIFI_ERROR_NO_CONNECTION);
    ASSERT_EQ(wifi_scan(contract::record, &results), 0);
    say({"wifi", "off"});
    bool activated = true;
    EXPECT_EQ(wifi_is_activated(&activated), 0);
    EXPECT_FALSE(activated);
    EXPECT_EQ(wifi_foreach_found_aps([](void*, void*) { return true; }, nullptr), WIFI_ERROR_INVALID_OPERATION);
    MainLoop::settle();
    EXPECT_EQ(results.codes, std::vector<int>{WIFI_ERROR_INVALID_OPERATION});
    say({"wifi", "on"});
    EXPECT_FALSE(isConnected());

    const std::pair<Words, const char*> refused[] = {
        {{"wifi"}, "no wifi command; known: on, off, lose, "},
        {{"wifi", "jam"}, "unknown wifi command \"jam\"; known: on, off, "},
        {{"wifi", "rssi", "Cafe"}, "usage: wifi rssi NAME DBM"},
        {{"wifi", "rssi", "Cafe", "loud"}, "\"loud\" is not a signal in dBm"},
        {{"wifi", "rssi", "Cafe", "-128"}, "-128 is not a signal in dBm (-127 to 127)"},
        {{"wifi", "associate", "caf"}, "there is no access point \"caf\""},
        {{"wifi", "address", "Cafe", "::1"}, "an address is written ADDRESS/LENGTH"},
        {{"wifi", "connect", "Cafe", "maybe"}, "\"maybe\" is not a result of the connection or Wi-Fi manager"},
        {{"wifi", "mac", "x"}, "\"x\" is not a MAC address"},
    };
    for (const auto& [words, start] : refused) {
        const std::string fault = network::command(words);
        EXPECT_TRUE(fault.starts_with(start)) << fault << "\nwanted " << start;
    }
}

TEST_F(WifiRadio, PlaysEventsOnQuotedNames) {
    json scenario = json::parse(kPromptRadio);
    scenario["events"] = json::array(
        {{{"at", 1}, {"do", "wifi vanish \"Maple Street\""}}, {{"at", 20}, {"do", "wifi appear \"Maple Street\""}}});
    open(scenario);
    EXPECT_TRUE(MainLoop::runUntil([] { return foundAps().size() == 1; }));
    EXPECT_FALSE(isConnected());
    EXPECT_TRUE(MainLoop::runUntil([] { return foundAps().size() == 2; }));
}

}  // namespace
