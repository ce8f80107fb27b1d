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
        {"{\"description\": \"\xff\"}", "line 1, column 18: "},
        {"[]", "whole file: must be an object, not array"},
    };
    for (const auto& [text, start] : rows) {
        const std::string refusal = refusalOf(text);
        EXPECT_TRUE(refusal.starts_with(start)) << refusal << "\nwanted " << start;
    }
}

struct Row {
    const char* place;  // where a good network's value is replaced or added
    json value;
    const char* reason;
    const char* found = place;  // the place that is said
};

TEST(ScenarioErrors, NamePlaceAndReasonOfAWrongValue) {
    const MainLoop loop;
    json good = json::parse(kPromptNetwork);
    good["wifi"] = json::parse(kPromptRadio)["wifi"];
    good["wifi"]["accessPoints"].push_back({{"essidHex", "41"}, {"rssi", -50}, {"security", "none"}});
    good["faults"] = json::array({{{"call", "connection_create"}, {"result", -1}}});
    good["events"] = json::array({{{"at", 1}, {"do", "unplug"}}, {{"at", 2}, {"do", "dns ::1"}}});
    ASSERT_TRUE(network::select(TemporaryScenario(good.dump()).choice(), {}).selected);
    const Row rows[] = {
        {"/speed", 1, "unknown key"},
        {"/interfaces", 1, "must be a list, not number"},
        {"/interfaces/0/kind", "token-ring", "\"token-ring\" is none of ethernet"},
        {"/interfaces/0/mac", "02:00", "\"02:00\" is not a MAC address (six pairs of hexadecimal digits)"},
        {"/interfaces/1", {{"kind", "ethernet"}}, "a second Ethernet interface; there can be one"},
        {"/profiles/0/id", "", "must not be empty"},
        {"/profiles/0", json::object(), "needs the key \"id\""},
        {"/profiles/0/live/address", "2001:db8::x", "\"2001:db8::x\" is not an IPv6 address"},
        {"/profiles/0/live/dns/1", "", "\"\" is not an IPv6 address"},
        {"/profiles/0/live/gateway", std::string("::\0x", 4), "a text cannot hold a NUL character"},
        {"/profiles/0/live/prefixLength", 300, "300 is not a prefix length (0 to 128)"},
        {"/profiles/0/live/prefixLength", 1.5, "must be a whole number, not number"},
        {"/profiles/0/live/prefixLength", ~0ULL, "must be a whole number of at most 63 bits, not number"},
        {"/gateway/result", "REPLAY", "\"REPLAY\" is not a result of the connection or Wi-Fi manager"},
        {"/gateway/delay", -1, "seconds must lie between 0 and 86400"},
        {"/faults/0/call", "malloc", "\"malloc\" is not a function of the connection or Wi-Fi manager"},
        {"/faults/0/result", "NONE", "a fault needs an error, not success"},
        {"/faults/0/times", 0, "times must be \"always\" or lie between 1 and 1000000"},
        {"/events/1/at", 0.5, "events must stand in the order of their time"},
        {"/events/0/do", "profile remove wired", "there is no Ethernet profile", "/events/1/do"},
        {"/wifi/on", "yes", "must be true or false, not string"},
        {"/wifi/on", false, "connected while the radio is off", "/wifi/accessPoints/0/connected"},
        {"/wifi/accessPoints/1/connected", true, "a second connected access point"},
        {"/wifi/accessPoints/1/essidHex", "00", "a name is given once, as essid or as essidHex"},
        {"/wifi/accessPoints/2/essidHex", "414", "is not made of pairs of hexadecimal digits"},
        {"/wifi/accessPoints/2/essidHex", "4g", "is not made of pairs of hexadecimal digits"},
        {"/wifi/accessPoints/2/essidHex", "4100", "a text cannot hold a NUL character"},
        {"/wifi/accessPoints/1/rssi", -128, "-128 is not a signal in dBm (-127 to 127)"},
        {"/wifi/accessPoints/1/security", "x", "\"x\" is none of none, wep, wpa-psk, wpa2-psk, eap, sae"},
        {"/wifi/accessPoints/1/repeat", 0, "must lie between 1 and 100000 in all"},
    };
    for (const Row& row : rows) {
        json document = good;
        document[json::json_pointer(row.place)] = row.value;
        EXPECT_EQ(refusalOf(document.dump()), std::string(row.found) + ": " + row.reason);
    }
}

TEST(ScenarioErrors, KeepTheNetworkThatWasSelectedBefore) {
    const MainLoop loop;
    selectScenario(kPromptNetwork);
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
