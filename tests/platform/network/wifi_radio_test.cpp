// The simulated radio through the Wi-Fi manager: handles, answers, walks of any length, what comes of connecting,
// settings, and the "network wifi …" commands. Time jumps (virtual-clock), so limits of half a minute cost none.
#include <Ecore.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "connection_manager.h"
#include "main_loop.h"
#include "results.h"
#include "temporary_scenario.h"
#include "wifi_manager.h"

namespace {

using contract::number, contract::record, contract::Results, contract::text;
using nlohmann::json;
using Codes = std::vector<int>;
using Words = std::vector<std::string>;
constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidOperation = WIFI_ERROR_INVALID_OPERATION;

std::vector<wifi_ap_handle> foundAps() {
    std::vector<wifi_ap_handle> found;
    const auto add = [](wifi_ap_handle ap, void* data) {
        static_cast<std::vector<wifi_ap_handle>*>(data)->push_back(ap);
        return true;
    };
    EXPECT_EQ(wifi_foreach_found_aps(add, &found), 0);
    return found;
}

wifi_ap_handle connectedAp() {
    wifi_ap_handle ap = nullptr;
    return wifi_get_connected_ap(&ap) == 0 ? ap : nullptr;
}

// "name address/length gateway server" of an access point; what it lacks is empty, and a length of -1.
std::string valuesOf(wifi_ap_handle ap) {
    return text(wifi_ap_get_essid, ap) + " " + text(wifi_ap_get_ip_address, ap, kIpv6) + "/" +
           std::to_string(number<std::uint8_t>(wifi_ap_get_prefix_length, ap)) + " " +
           text(wifi_ap_get_gateway_address, ap, kIpv6) + " " + text(wifi_ap_get_dns_address, ap, 1, kIpv6);
}

class WifiRadio : public testing::Test {
  protected:
    void open(const json& scenario = json::parse(kPromptRadio)) {
        selectScenario(scenario.dump());
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

    MainLoop loop;
    Results results;
};

TEST_F(WifiRadio, TellsTheLiveValuesOfTheConnectedAccessPoint) {
    open();
    EXPECT_EQ(wifi_initialize(), kInvalidOperation) << "once at a time";
    wifi_ap_handle connected = connectedAp();
    EXPECT_EQ(valuesOf(connected), "Maple Street 2001:db8:2::20/64 fe80::1 2001:db8:2::53");
    EXPECT_EQ(number<int>(wifi_ap_get_security_type, connected), WIFI_SECURITY_WPA2_PSK);
    EXPECT_EQ(number<bool>(wifi_ap_is_passphrase_required, connected), true);
    EXPECT_EQ(number<int>(wifi_ap_get_dns_config_type, connected, kIpv6), CONNECTION_DNS_CONFIG_DYNAMIC);
    say({"wifi", "lose"});
    EXPECT_EQ(connectedAp(), nullptr);
    EXPECT_EQ(wifi_ap_check_gateway6_async(connected, record, &results), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(valuesOf(connected), "Maple Street /-1  ");
}

TEST_F(WifiRadio, KeepsTheHandlesOfAWalkAndGivesTheOthersAway) {
    open();
    wifi_ap_handle connected = connectedAp();
    const auto walked = foundAps();
    ASSERT_EQ(wifi_scan(record, &results), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return !results.codes.empty(); }));
    EXPECT_EQ(foundAps(), walked);
    EXPECT_EQ(wifi_ap_destroy(walked[0]), kInvalidOperation);
    EXPECT_NE(walked[0], connected);

    wifi_ap_handle clone = nullptr;
    ASSERT_EQ(wifi_ap_clone(&clone, connected), 0);
    EXPECT_EQ(wifi_ap_destroy(connected), 0);
    EXPECT_EQ(wifi_ap_destroy(connected), kInvalidOperation);
    EXPECT_EQ(valuesOf(clone), valuesOf(walked[0]));
    ASSERT_EQ(wifi_deinitialize(), 0);
    ASSERT_EQ(wifi_initialize(), 0);
    int rssi = 0;
    EXPECT_EQ(wifi_ap_get_rssi(walked[0], &rssi), kInvalidOperation);
    EXPECT_EQ(wifi_ap_get_rssi(clone, &rssi), 0) << "the caller's own lives on";
    EXPECT_EQ(wifi_ap_destroy(clone), 0);
}

TEST_F(WifiRadio, AnswersNobodyAfterUnsetDestroyOrDeinitialise) {
    open();
    wifi_ap_handle connected = connectedAp(), other = connectedAp();
    for (wifi_ap_handle ap : {connected, other})
        ASSERT_EQ(wifi_ap_check_gateway6_async(ap, record, &results), 0);
    EXPECT_EQ(wifi_ap_unset_async_cb(connected), 0);
    EXPECT_EQ(wifi_ap_destroy(other), 0);
    MainLoop::settle();
    EXPECT_TRUE(results.codes.empty());
    ASSERT_EQ(wifi_get_is_online_ipv6_async(record, &results), 0);
    ASSERT_EQ(wifi_scan(record, &results), 0);
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, record, &results), 0);
    ASSERT_EQ(wifi_deinitialize(), 0);
    ASSERT_EQ(wifi_initialize(), 0);
    MainLoop::settle();
    EXPECT_TRUE(results.codes.empty());
}

TEST_F(WifiRadio, AnswersLaterAndLetsACallbackAskAgainAndEndEverything) {
    open();
    wifi_ap_handle connected = connectedAp();
    results.then = [&] {
        if (results.codes.size() == 1) {
            EXPECT_EQ(wifi_get_is_online_ipv6_async(record, &results), 0);
            return;
        }
        EXPECT_EQ(wifi_ap_unset_async_cb(connected), 0);
        EXPECT_EQ(wifi_deinitialize(), 0);
        network::release();
    };
    ASSERT_EQ(wifi_ap_check_gateway6_async(connected, record, &results), 0);
    EXPECT_TRUE(results.codes.empty());
    MainLoop::settle();
    EXPECT_EQ(results.codes, (Codes{0, 0}));
    EXPECT_EQ(wifi_initialize(), kInvalidOperation);
    EXPECT_EQ(wifi_ap_destroy(connected), kInvalidOperation) << "all handles end with the network";
}

TEST_F(WifiRadio, IsWalkedInTheOrderOfFinding) {
    json scenario = oneAp({{"repeat", 10000}});
    scenario["wifi"]["accessPoints"].push_back({{"essidHex", "4ae0FF"}, {"rssi", -50}, {"security", "none"}});
    open(scenario);
    const auto found = foundAps();
    ASSERT_EQ(found.size(), 10001U);
    EXPECT_EQ(text(wifi_ap_get_essid, found[0]), "Home");
    for (std::size_t index = 1; index < 10000; ++index)
        ASSERT_EQ(text(wifi_ap_get_essid, found[index]), "Home " + std::to_string(index + 1));
    EXPECT_EQ(text(wifi_ap_get_essid, found[10000]), "J\xE0\xFF");
}

TEST_F(WifiRadio, EndsAWalkWithItsCallbackOrItsSession) {
    using Case = std::pair<std::function<bool()>, int>;  // inside each step, and how many there are
    const Case cases[] = {
        {[] { return foundAps().size() == 2; }, 2},
        {[] { return false; }, 1},
        {[] {
             return network::command(Words{"wifi", "vanish", "Cafe"}).empty();
         },
         2},
        {[] { return wifi_deinitialize() == 0 && wifi_initialize() == 0; }, 1},
        {[] { return network::release(), true; }, 1},
    };
    for (const Case& example : cases) {
        open();
        std::pair<const Case*, int> walked(&example, 0);
        const auto step = [](wifi_ap_handle, void* data) {
            auto* running = static_cast<std::pair<const Case*, int>*>(data);
            ++running->second;
            return running->first->first();
        };
        EXPECT_EQ(wifi_foreach_found_aps(step, &walked), 0) << &example - cases;
        EXPECT_EQ(walked.second, example.second) << &example - cases;
    }
}

TEST_F(WifiRadio, ConnectsOrSaysWhyNot) {
    const json secured = {{"security", "sae"}, {"passphrase", "73019462"}};
    const auto with = [](json keys, const char* result, double delay) {
        keys["connect"] = {{"result", result}, {"delay", delay}};
        return keys;
    };
    // An access point, the passphrase given, the result after so many seconds, and what happens meanwhile.
    const std::tuple<json, const char*, int, double, Words> cases[] = {
        {with({}, "NONE", 2), "", 0, 2, {}},
        {with(secured, "NONE", 2), "73019462", 0, 2, {}},
        {with(secured, "NONE", 2), "", WIFI_ERROR_INVALID_KEY, 2, {}},
        {{{"security", "wpa2-psk"}, {"passphrase", "x"}, {"known", true}}, "", 0, 0, {}},
        {with({}, "silence", 1), "", WIFI_ERROR_NO_REPLY, 30, {}},
        {with({}, "NONE", 30), "", WIFI_ERROR_NO_REPLY, 30, {}},
        {with({}, "NONE", 29.9), "", 0, 29.9, {}},
        {with({}, "NONE", 2), "", WIFI_ERROR_NO_CONNECTION, 2, {"wifi", "vanish", "Home"}},
        {with({}, "NONE", 2), "", WIFI_ERROR_NO_CONNECTION, 2, {"wifi", "off"}},
        {with({}, "NONE", 2), "", WIFI_ERROR_DHCP_FAILED, 2, {"wifi", "connect", "Home", "DHCP_FAILED"}},
    };
    for (const auto& [network, passphrase, result, seconds, meanwhile] : cases) {
        SCOPED_TRACE(network.dump());
        open(oneAp(network));
        wifi_ap_handle ap = foundAps().front();
        EXPECT_EQ(wifi_ap_set_passphrase(ap, passphrase), 0);
        Results connecting;
        double ended = 0;
        connecting.then = [&] { ended = ecore_time_get(); };
        const double began = ecore_time_get();
        EXPECT_EQ(wifi_connect(ap, record, &connecting), 0);
        if (!meanwhile.empty()) say(meanwhile);
        EXPECT_EQ(connectedAp(), nullptr);
        EXPECT_TRUE(MainLoop::runUntil([&] { return !connecting.codes.empty(); }));
        EXPECT_EQ(connecting.codes, Codes{result});
        EXPECT_NEAR(ended - began, seconds, 0.01);
        EXPECT_EQ(connectedAp() != nullptr, result == 0);
    }
}

TEST_F(WifiRadio, ConnectsToOneAtATimeAndCanBeStopped) {
    open();
    say({"wifi", "connect", "Cafe", "success", "5"});
    const auto found = foundAps();
    ASSERT_EQ(wifi_connect(found[1], record, &results), 0);
    EXPECT_EQ(wifi_connect(found[0], record, &results), WIFI_ERROR_NOW_IN_PROGRESS);
    Results stopped;
    ASSERT_EQ(wifi_disconnect(found[1], record, &stopped), 0);
    EXPECT_TRUE(results.codes.empty());
    ASSERT_TRUE(MainLoop::runUntil([&] { return !stopped.codes.empty(); }));
    EXPECT_EQ(results.codes, Codes{WIFI_ERROR_OPERATION_ABORTED});
    EXPECT_EQ(wifi_disconnect(found[1], record, &stopped), WIFI_ERROR_NO_CONNECTION);
    ASSERT_EQ(wifi_disconnect(found[0], record, &stopped), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return stopped.codes.size() == 2; }));
    EXPECT_EQ(stopped.codes, (Codes{0, 0}));
    EXPECT_EQ(connectedAp(), nullptr);

    // Who hears of the stopped connection releases the network under the one who stopped it.
    results.then = [] { network::release(); };
    ASSERT_EQ(wifi_connect(found[1], record, &results), 0);
    ASSERT_EQ(wifi_disconnect(found[1], record, &stopped), 0);
    ASSERT_TRUE(MainLoop::runUntil([&] { return network::backend() == nullptr; }));
    EXPECT_EQ(stopped.codes.size(), 2U);
}

TEST_F(WifiRadio, TellsNobodyOfAConnectionOnceItIsUnsetOrTheManagerOrTheNetworkHasEnded) {
    const std::pair<std::function<void()>, bool> ends[] = {
        {[] { EXPECT_EQ(wifi_ap_unset_async_cb(foundAps().front()), 0); }, true},
        {[] { EXPECT_EQ(wifi_deinitialize(), 0); }, false},
        {[] { network::release(); }, false},
        {[] { selectScenario(kPromptRadio); }, false},
    };
    for (const auto& [end, goesOn] : ends) {
        open(oneAp({{"connect", {{"result", "NONE"}, {"delay", 3}}}}));
        ASSERT_EQ(wifi_connect(foundAps().front(), record, &results), 0);
        end();
        const double later = ecore_time_get() + 10;
        ASSERT_TRUE(MainLoop::runUntil([&] { return ecore_time_get() > later; }));
        EXPECT_TRUE(results.codes.empty());
        EXPECT_EQ(connectedAp() != nullptr, goesOn);
    }
}

TEST_F(WifiRadio, TakesSettingsAtOnceAndTellsOfThemWhileConnected) {
    open();
    connection_handle client = nullptr;
    ASSERT_EQ(connection_create(&client), 0);
    Words heard;
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, contract::recordAddress, &heard), 0);
    const auto found = foundAps();
    for (wifi_ap_handle ap : found) {
        ASSERT_EQ(wifi_ap_set_ip_config_type(ap, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
        ASSERT_EQ(wifi_ap_set_ip_address(ap, kIpv6, "2001:db8:7::7"), 0);
    }
    EXPECT_EQ(valuesOf(found[0]), "Maple Street 2001:db8:7::7/64 fe80::1 2001:db8:2::53");
    EXPECT_EQ(valuesOf(found[1]), "Cafe /-1  ") << "it is not connected";
    say({"wifi", "associate", "Cafe"});
    EXPECT_EQ(valuesOf(found[1]), "Cafe 2001:db8:7::7/64 fe80::3 ");
    say({"wifi", "vanish", "Cafe"});
    EXPECT_EQ(wifi_ap_set_prefix_length(found[1], 64), WIFI_ERROR_NO_CONNECTION);
    MainLoop::settle();
    EXPECT_EQ(heard, (Words{" 2001:db8:7::7", " "}));
}

TEST_F(WifiRadio, ObeysItsCommands) {
    open();
    const auto found = foundAps();
    say({"gateway", "NO_REPLY"});
    say({"internet", "offline"});
    ASSERT_EQ(wifi_ap_check_gateway6_async(found[0], record, &results), 0);
    MainLoop::settle();
    ASSERT_EQ(wifi_get_is_online_ipv6_async(record, &results), 0);
    MainLoop::settle();
    EXPECT_EQ(results.codes, (Codes{WIFI_ERROR_NO_REPLY, WIFI_ERROR_OFFLINE}));
    say({"wifi", "rssi", "Maple Street", "-70"});
    say({"wifi", "address", "Maple Street", "2001:db8:7::7/56"});
    say({"wifi", "router", "Maple Street", "none"});
    say({"wifi", "dns", "Maple Street", "::1", "::2"});
    say({"wifi", "mac", "none"});
    EXPECT_EQ(number<int>(wifi_ap_get_rssi, found[0]), -70);
    EXPECT_EQ(valuesOf(found[0]), "Maple Street 2001:db8:7::7/56  ::1");
    EXPECT_EQ(text(wifi_get_mac_address), "");
    EXPECT_EQ(wifi_ap_check_gateway6_async(found[0], record, &results), WIFI_ERROR_INVALID_GATEWAY);
    ASSERT_EQ(wifi_scan(record, &results), 0);
    say({"wifi", "off"});
    EXPECT_EQ(number<bool>(wifi_is_activated), false);
    EXPECT_EQ(wifi_foreach_found_aps([](void*, void*) { return true; }, nullptr), kInvalidOperation);
    MainLoop::settle();
    EXPECT_EQ(results.codes.back(), kInvalidOperation);
    say({"wifi", "on"});
    EXPECT_EQ(connectedAp(), nullptr);

    EXPECT_EQ(network::command(Words{"wifi", "rssi", "Cafe", "loud"}), "\"loud\" is not a signal in dBm");
    EXPECT_EQ(network::command(Words{"wifi", "rssi", "Cafe", "-128"}), "-128 is not a signal in dBm (-127 to 127)");
    EXPECT_EQ(network::command(Words{"wifi", "associate", "caf"}), "there is no access point \"caf\"");
    EXPECT_TRUE(network::command(Words{"wifi", "jam"}).starts_with("unknown wifi command \"jam\"; known: on, off"));
}

}  // namespace
