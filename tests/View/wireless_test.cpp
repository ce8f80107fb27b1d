// What only a wireless check has: the reconnection, and the network's signal.
#include <gtest/gtest.h>

#include <string>

#include "status_screen.h"

namespace {

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
