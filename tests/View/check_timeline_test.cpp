// The check tick by tick, by a clock that jumps from one timer to the next; and what only a wireless one has, the
// reconnection and the network's signal.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

struct Timeline {
    const char* network;
    std::vector<int> frames;  // after each tick until the verdict's
    bool ready;
    const char* before = "";  // script lines that run at once
};

// Wired, the address is read and the gateway asked on the seventh tick; wireless, on the eleventh. An answer counts
// from the next tick on.
const Timeline kTimelines[] = {
    {"success", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0}, true, "network gateway answer 0\nnetwork internet online 0\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4, 5, 6}, true, "network internet online 2.2\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4, 5, 6, 3, 4}, false, "network internet offline 3.2\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, true, "network gateway answer 3.1\n"},
    {"no-address", {1, 2, 3, 0, 1, 2}, false},
    {"late-address", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"gateway-refused", {1, 2, 3, 0, 1, 2}, false},
    {"gateway-retry", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"internet-refused", {1, 2, 3, 0, 1, 2, 3, 0}, false},
    {"cable-down", {}, false},
    {"pulled-in-stage-one", {1, 2, 3, 0}, false},
    {"pulled-in-stage-two", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4}, false},
    {"wifi-success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"wifi-success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, true, "network gateway answer 1.2\n"},
    {"wifi-success",
     {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0},
     true,
     "network fault wifi_ap_check_gateway6_async OPERATION_FAILED 1\n"},
    {"wifi-late-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"wifi-no-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
    {"wifi-association-lost", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
    {"wifi-off", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
};

TEST(CheckTimeline, ShowsItsFramesAndEndsOnTheRightTick) {
    for (const Timeline& line : kTimelines) {
        SCOPED_TRACE(std::string(line.network) + ", " + line.before);
        const std::size_t last = line.frames.size() + 1;
        std::string script = line.before + std::string("wait 0.01\n");
        for (std::size_t tick = 1; tick <= last; ++tick)
            script += "wait 0.5\ndump tick" + std::to_string(tick) + ".json\n";
        const HostRun run(onNetwork(line.network, script + "wait 0.1\nexpect focus \"Close\"\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        for (std::size_t tick = 1; tick < last; ++tick) {
            const nlohmann::json dump = run.dump("tick" + std::to_string(tick) + ".json");
            const std::string frame = "network_popup_connect_" + std::to_string(line.frames[tick - 1]) + ".png";
            EXPECT_EQ(pictureIn(dump, kStatusPart), frame) << "tick " << tick;
            EXPECT_EQ(textIn(dump, kMessagePart), checking(line.network)) << "tick " << tick;
            EXPECT_EQ(focusIn(dump), "Cancel") << "tick " << tick;
        }
        const nlohmann::json end = run.dump("tick" + std::to_string(last) + ".json");
        EXPECT_EQ(textIn(end, kMessagePart), line.ready ? ready(line.network) : failed(line.network));
    }
}

TEST(CheckTimeline, AsksTheGatewayOnceOrOnEveryWirelessPass) {
    // Wireless, at 5.5 s and every two seconds from then on; more than are ever kept waiting at once.
    for (const auto& [network, request, times] :
         {std::tuple{"gateway-silent", "connection_profile_check_gateway_async success", 1},
          {"wifi-gateway-silent", "Async check gateway request success", 23}}) {
        HostSetup setup = onNetwork(network, "wait 50\nquit\n");
        setup.arguments = {"--log", "debug"};
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        int asked = 0;
        for (std::size_t at = 0; (at = run.errors().find(request, at)) != std::string::npos; ++at)
            ++asked;
        EXPECT_EQ(asked, times) << network;
    }
}

HostSetup reconnecting(const std::string& network, const std::string& name, const std::string& script) {
    HostSetup setup = onNetwork(network, script);
    setup.store.emplace_back("db/menu/network/is_stop", "TRUE");
    setup.store.emplace_back("db/menu/network/ap_name", name);
    setup.arguments = {"--log", "debug"};
    return setup;
}

struct Reconnection {
    const char* network;
    const char* name;
    const char* said;  // in the log
    bool ready;
    double earliest;  // seconds before which the verdict must not stand
};

TEST(WirelessReconnection, EndsWithItsOutcome) {
    const Reconnection cases[] = {
        // An early answer ends stage one before its first checking pass.
        {"wifi-reconnect", kName, "Wi-Fi Connection Succeeded", true, 1.9},
        {"wifi-reconnect", "Maple", "Success to connection request [Maple Street 12]", true, 1.9},
        {"wifi-wrong-passphrase", kName, "Wi-Fi Connection Failed! error : INVALID_KEY", false, 1.4},
        {"wifi-dhcp-failed", kName, "Wi-Fi Connection Failed! error : DHCP_FAILED", false, 1.4},
        {"wifi-never-associates", kName, "No AP is Connected", false, 5.0},
        {"wifi-not-found", kName, "Connection step finished", false, 5.0},
        {"wifi-off", kName, "Fail to connect wifi is not activated", false, 0.4},
        {"wifi-home-5g-first", "Home", "Success to connection request [Home_5G]", true, 1.9},
        {"wifi-home-first", "Home", "Success to connection request [Home]", true, 1.9},
        {"wifi-home-first", "Home_5G", "Success to connection request [Home_5G]", true, 1.9},
        {"wifi-success", kName, "AP is Connected", true, 5.5},
    };
    for (const Reconnection& example : cases) {
        const std::string end = example.ready ? ready(example.network) : failed(example.network);
        const HostRun run(reconnecting(example.network, example.name,
                                       "wait " + std::to_string(example.earliest) + "\nexpect \"" +
                                           checking(example.network) + "\"\nexpect \"" + end + "\" within 10\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << example.network << ' ' << example.name << '\n' << run.transcript();
        EXPECT_NE(run.errors().find(example.said), std::string::npos) << example.network << ' ' << example.name;
        EXPECT_EQ(run.errors().find("73019462"), std::string::npos) << "the passphrase stands in the log";
    }
}

TEST(WirelessReconnection, NeedsANameAndAPassphrase) {
    // The store has no such text any more when the next check starts: a number is none.
    for (const char* key : {"ap_name", "ap_pass"}) {
        const HostRun run(reconnecting("wifi-reconnect", kName,
                                       std::string(kToVerdict) + "set-store db/menu/network/" + key +
                                           " 7\nnetwork wifi lose\nkey Left\nwait 0.1\nkey Return\nwait 20\n"
                                           "expect \"Cancel\"\nkey Return\nexpect \"" +
                                           kCancelled + "\" within 1\nkey XF86Back\nexpect closed within 1\n"));
        ASSERT_TRUE(run.succeeded()) << run.transcript();
        EXPECT_NE(run.errors().find(std::string(key) + " is NULL"), std::string::npos);
    }
}

TEST(WirelessSignal, HasFiveLevelsOpenAndSecured) {
    const std::pair<int, int> levels[] = {{-127, 1}, {-89, 1}, {-88, 2}, {-83, 2}, {-82, 3}, {-75, 3},
                                          {-74, 4},  {-64, 4}, {-63, 5}, {0, 5},   {5, 5}};
    for (const auto& [network, picture] :
         {std::pair{"wifi-open", "obe_icon_wifi_"}, {"wifi-success", "obe_icon_wifi_lock_"}}) {
        std::string script;
        for (const auto& [strength, level] : levels) {
            script += "key Menu\nexpect closed within 1\nnetwork wifi rssi \"Maple Street 12\" " +
                      std::to_string(strength) + "\nopen\nwait 0.1\nexpect picture \"" + picture +
                      std::to_string(level) + ".png\" in " + kSignalPart + "\n";
        }
        const HostRun run(onNetwork(network, script + "quit\n"));
        EXPECT_TRUE(run.succeeded()) << run;
    }
}

}  // namespace
