// What a scenario file may get wrong, and the line that says so.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "main_loop.h"
#include "temporary_scenario.h"

namespace {

using nlohmann::json;

std::string refusalOf(const std::string& text) {
    const TemporaryScenario scenario(text);
    const auto selection = network::select(scenario.choice(), {});
    EXPECT_FALSE(selection.selected);
    EXPECT_TRUE(selection.text.starts_with(scenario.file() + ": ")) << selection.text;
    EXPECT_EQ(selection.text.find('\n'), std::string::npos) << selection.text;
    return selection.selected ? "" : selection.text.substr(scenario.file().size() + 2);
}

TEST(ScenarioErrors, NameLineAndColumnOfBrokenJson) {
    const MainLoop loop;
    const std::pair<const char*, const char*> rows[] = {
        {"", "line 1, column 1: "},
        {"{", "line 1, column 2: "},
        {"{\n  \"profiles\": tru\n}", "line 2, column 18: "},
        {"{\n\n\"a\" 1}", "line 3, column 5: "},
        {"{\"description\": \"\xff\"}", "line 1, column 18: "},
        {"{\"description\": 1} x", "line 1, column 20: "},
    };
    for (const auto& [text, start] : rows) {
        const std::string refusal = refusalOf(text);
        EXPECT_TRUE(refusal.starts_with(start)) << refusal << "\nwanted " << start;
    }
    EXPECT_EQ(refusalOf("[]"), "whole file: must be an object, not array");
}

struct Row {
    const char* place;  // where the prompt network's value is replaced or added
    json value;
    const char* refusal;
};

TEST(ScenarioErrors, NamePlaceAndReasonOfAWrongValue) {
    const MainLoop loop;
    const json event = {{"at", 1}, {"do", "unplug"}};
    const json home = {{"essid", "Home"}, {"rssi", -50}, {"security", "none"}, {"connected", true}};
    const auto radioOf = [](json accessPoints) { return json{{"accessPoints", std::move(accessPoints)}}; };
    const auto homeWith = [&](const char* key, json value) {
        json changed = home;
        changed[key] = std::move(value);
        return radioOf({changed});
    };
    const json mac = {{"kind", "ethernet"}, {"mac", "02:00"}};
    const Row rows[] = {
        {"/speed", 1, "/speed: unknown key"},
        {"/a~1b", 1, "/a~1b: unknown key"},
        {"/interfaces", 1, "/interfaces: must be a list, not number"},
        {"/interfaces/0/kind", "token-ring", "/interfaces/0/kind: \"token-ring\" is none of ethernet"},
        {"/interfaces/0/mac", 5, "/interfaces/0/mac: must be a text, not number"},
        {"/interfaces/0", mac, "/interfaces/0/mac: \"02:00\" is not a MAC address (six pairs of hexadecimal digits)"},
        {"/interfaces/1", {{"kind", "ethernet"}}, "/interfaces/1: a second Ethernet interface; there can be one"},
        {"/interfaces/0/link", true, "/interfaces/0/link: must be a text, not boolean"},
        {"/profiles/0/id", "", "/profiles/0/id: must not be empty"},
        {"/profiles/0", json::object(), "/profiles/0: needs the key \"id\""},
        {"/profiles/0/live/address", "2001:db8::wrong",
         "/profiles/0/live/address: \"2001:db8::wrong\" is not an IPv6 address"},
        {"/profiles/0/live/dns/1", "", "/profiles/0/live/dns/1: \"\" is not an IPv6 address"},
        {"/profiles/0/live/gateway", std::string("::\0x", 4),
         "/profiles/0/live/gateway: a text cannot hold a NUL character"},
        {"/profiles/0/live/prefixLength", 300, "/profiles/0/live/prefixLength: 300 is not a prefix length (0 to 128)"},
        {"/profiles/0/live/prefixLength", 1.5, "/profiles/0/live/prefixLength: must be a whole number, not number"},
        {"/profiles/0/live/prefixLength", 18446744073709551615U,
         "/profiles/0/live/prefixLength: must be a whole number of at most 63 bits, not number"},
        {"/gateway", json::object(), "/gateway: needs the key \"result\""},
        {"/gateway/result", "NO_REPLAY",
         "/gateway/result: \"NO_REPLAY\" is not a result of the connection or Wi-Fi manager"},
        {"/gateway/delay", -1, "/gateway/delay: seconds must lie between 0 and 86400"},
        {"/faults", json::array({{{"call", "connection_fly"}, {"result", -1}}}),
         "/faults/0/call: \"connection_fly\" is not a function of the connection or Wi-Fi manager"},
        {"/faults", json::array({{{"call", "connection_create"}, {"result", "NONE"}}}),
         "/faults/0/result: a fault needs an error, not success"},
        {"/faults", json::array({{{"call", "connection_create"}, {"result", -1}, {"times", 0}}}),
         "/faults/0/times: times must be \"always\" or lie between 1 and 1000000"},
        {"/events", json::array({event, {{"at", 0.5}, {"do", "plug"}}}),
         "/events/1/at: events must stand in the order of their time"},
        {"/events", json::array({event, {{"at", 2}, {"do", "profile remove wired"}}, {{"at", 3}, {"do", "dns ::1 x"}}}),
         "/events/2/do: there is no Ethernet profile"},
        {"/events", json::array({{{"at", 1}, {"do", "wifi lose"}}}), "/events/0/do: there is no radio"},
        {"/wifi", json::object(), "/wifi: needs the key \"accessPoints\""},
        {"/wifi", {{"on", "yes"}, {"accessPoints", json::array()}}, "/wifi/on: must be true or false, not string"},
        {"/wifi", radioOf({home, home}), "/wifi/accessPoints/1/connected: a second connected access point"},
        {"/wifi",
         {{"on", false}, {"accessPoints", {home}}},
         "/wifi/accessPoints/0/connected: connected while the radio is off"},
        {"/wifi", radioOf({{{"rssi", -50}}}), "/wifi/accessPoints/0: needs the key \"essid\""},
        {"/wifi", homeWith("essidHex", "00"),
         "/wifi/accessPoints/0/essidHex: a name is given once, as essid or as essidHex"},
        {"/wifi", radioOf({{{"essidHex", "4g"}}}),
         "/wifi/accessPoints/0/essidHex: is not made of pairs of hexadecimal digits"},
        {"/wifi", radioOf({{{"essidHex", "414"}}}),
         "/wifi/accessPoints/0/essidHex: is not made of pairs of hexadecimal digits"},
        {"/wifi", radioOf({{{"essidHex", "4100"}}}),
         "/wifi/accessPoints/0/essidHex: a text cannot hold a NUL character"},
        {"/wifi", homeWith("rssi", -128), "/wifi/accessPoints/0/rssi: -128 is not a signal in dBm (-127 to 127)"},
        {"/wifi", homeWith("security", "wpa9"),
         "/wifi/accessPoints/0/security: \"wpa9\" is none of none, wep, wpa-psk, wpa2-psk, eap, sae"},
        {"/wifi", homeWith("passphrase", 12345678), "/wifi/accessPoints/0/passphrase: must be a text, not number"},
        {"/wifi", homeWith("connect", {{"result", "LOST"}}),
         "/wifi/accessPoints/0/connect/result: \"LOST\" is not a result of the connection or Wi-Fi manager"},
        {"/wifi", homeWith("repeat", 0), "/wifi/accessPoints/0/repeat: must lie between 1 and 100000 in all"},
        {"/wifi", homeWith("live", {{"prefixLength", 129}}),
         "/wifi/accessPoints/0/live/prefixLength: 129 is not a prefix length (0 to 128)"},
    };
    for (const Row& row : rows) {
        json document = json::parse(kPromptNetwork);
        document[json::json_pointer(row.place)] = row.value;
        EXPECT_EQ(refusalOf(document.dump()), row.refusal);
    }
}

TEST(ScenarioErrors, KeepTheNetworkThatWasSelectedBefore) {
    const MainLoop loop;
    ASSERT_TRUE(network::select(TemporaryScenario(kPromptNetwork).choice(), {}).selected);
    const auto* before = network::backend();
    for (const char* choice : {"simulated=/nowhere/network.json", "simulated=/tmp", "simulated=", "wired", ""}) {
        const auto selection = network::select(choice, {});
        EXPECT_FALSE(selection.selected) << choice;
        EXPECT_NE(selection.text, "") << choice;
    }
    EXPECT_EQ(network::backend(), before);
    EXPECT_NE(before, nullptr);
}

}  // namespace
