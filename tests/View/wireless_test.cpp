// The check of a wireless connection: its timeline, the reconnection, the verdicts, names and signal pictures.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

constexpr const char* kChecksWireless = "Checking the wireless network connection…";
constexpr const char* kWirelessReady = "Your wireless network and the internet are ready to use.";
constexpr const char* kWirelessFailed = "Wireless network connection failed.";
constexpr const char* kRouterAdvice =
    "The TV cannot reach the router. Check that the router is switched on and the IPv6 settings are right, then try "
    "again.";
constexpr const char* kNamePart = "PartMain:elm.text.SSID";
constexpr const char* kVerdictNamePart = "PartMain:elm.text.SSID_unset";
constexpr const char* kSignalPart = "PartMain:elm.swallow.signal_strength";
constexpr const char* kVerdictSignalPart = "PartMain:elm.swallow.signal_strength_unset";
constexpr const char* kOwnMac = "02:00:5E:20:00:AA";

HostSetup wireless(const std::string& network, const std::string& script) {
    return {.network = network.starts_with("{") ? network : scenario(network),
            .store = {{"db/menu/network/network_type", "Wireless"}},
            .script = script};
}

HostSetup reconnecting(const std::string& network, const std::string& name, const std::string& script) {
    HostSetup setup = wireless(network, script);
    setup.store.emplace_back("db/menu/network/is_stop", "TRUE");
    setup.store.emplace_back("db/menu/network/ap_name", name);
    setup.arguments = {"--log", "debug"};
    return setup;
}

struct Timeline {
    const char* what;
    const char* network;
    std::vector<int> frames;  // after each tick until the verdict's
    const char* message;
    const char* before = "";
};

// The address is read and the gateway asked on the eleventh tick, the third pass of the checking frame.
const Timeline kTimelines[] = {
    {"everything answers", "wifi-success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, kWirelessReady},
    {"the gateway takes its time",
     "wifi-success",
     {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2},
     kWirelessReady,
     "network gateway answer 1.2\n"},
    {"the address comes late", "wifi-late-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, kWirelessReady},
    {"there is no address", "wifi-no-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, kWirelessFailed},
    {"the association is lost", "wifi-association-lost", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, kWirelessFailed},
    {"the radio is off", "wifi-off", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, kWirelessFailed},
};

TEST(WirelessTimeline, ShowsItsFramesAndEndsOnTheRightTick) {
    for (const Timeline& line : kTimelines) {
        const int ticks = static_cast<int>(line.frames.size()) + 1;
        const HostRun run(wireless(line.network, line.before + dumpTicks(ticks) + "wait 0.1\ndump end.json\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << line.what << '\n' << run;
        for (int tick = 1; tick < ticks; ++tick) {
            const nlohmann::json dump = run.dump("tick" + std::to_string(tick) + ".json");
            EXPECT_EQ(pictureIn(dump, kStatusPart), frame(line.frames[static_cast<std::size_t>(tick - 1)]))
                << line.what << ", tick " << tick;
            EXPECT_EQ(textIn(dump, kMessagePart), kChecksWireless) << line.what << ", tick " << tick;
        }
        const nlohmann::json end = run.dump("tick" + std::to_string(ticks) + ".json");
        EXPECT_EQ(textIn(end, kMessagePart), line.message) << line.what;
        EXPECT_EQ(focusIn(run.dump("end.json")), "Close") << line.what;
    }
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

TEST(WirelessTimeline, AsksTheGatewayOnEveryCheckingPass) {
    HostSetup setup =
        wireless("wifi-gateway-silent", "wait 50\nkey Return\nwait 0.1\nkey Return\nexpect closed within 1\n");
    setup.arguments = {"--log", "debug"};
    const HostRun run(setup);
    ASSERT_TRUE(run.succeeded()) << run;
    // At 5.5 s and every two seconds from then on; more than are ever kept waiting at once.
    EXPECT_EQ(count(run.errors(), "Async check gateway request success"), 23U);
}

struct Reconnection {
    const char* network;
    const char* name;
    const char* said;  // in the log
    const char* end;   // on the screen
    double earliest;   // seconds before which the verdict must not stand
};

TEST(WirelessReconnection, EndsWithItsOutcome) {
    const Reconnection cases[] = {
        // An early answer ends stage one before its first checking pass.
        {"wifi-reconnect", "Maple Street 12", "Wi-Fi Connection Succeeded", kWirelessReady, 1.9},
        {"wifi-reconnect", "Maple", "Success to connection request [Maple Street 12]", kWirelessReady, 1.9},
        {"wifi-wrong-passphrase", "Maple Street 12", "Wi-Fi Connection Failed! error : INVALID_KEY", kWirelessFailed,
         1.4},
        {"wifi-dhcp-failed", "Maple Street 12", "Wi-Fi Connection Failed! error : DHCP_FAILED", kWirelessFailed, 1.4},
        {"wifi-never-associates", "Maple Street 12", "No AP is Connected", kWirelessFailed, 5.0},
        {"wifi-not-found", "Maple Street 12", "Connection step finished", kWirelessFailed, 5.0},
        {"wifi-off", "Maple Street 12", "Fail to connect wifi is not activated", kWirelessFailed, 0.4},
        {"wifi-home-5g-first", "Home", "Success to connection request [Home_5G]", kWirelessReady, 1.9},
        {"wifi-home-first", "Home", "Success to connection request [Home]", kWirelessReady, 1.9},
        {"wifi-success", "Maple Street 12", "AP is Connected", kWirelessReady, 5.5},
    };
    for (const Reconnection& example : cases) {
        const HostRun run(reconnecting(example.network, example.name,
                                       "wait " + std::to_string(example.earliest) + "\nexpect \"" + kChecksWireless +
                                           "\"\nexpect \"" + example.end + "\" within 10\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << example.network << ' ' << example.name << '\n' << run.transcript();
        EXPECT_NE(run.errors().find(example.said), std::string::npos) << example.network << ' ' << example.name;
        EXPECT_EQ(run.errors().find("73019462"), std::string::npos) << "the passphrase stands in the log";
    }
}

TEST(WirelessReconnection, NeedsANameAndAPassphrase) {
    // The store has no such text any more when the next check starts: a number is none.
    for (const char* key : {"ap_name", "ap_pass"}) {
        HostSetup setup =
            reconnecting("wifi-reconnect", "Maple Street 12",
                         std::string("expect \"Close\" within 10\nset-store db/menu/network/") + key +
                             " 7\nnetwork wifi lose\nkey Left\nwait 0.1\nkey Return\nwait 20\n"
                             "expect \"Cancel\"\nkey Return\nexpect \"Connection check cancelled.\" within 1\n"
                             "key XF86Back\nexpect closed within 1\n");
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run.transcript();
        EXPECT_NE(run.errors().find(std::string(key) + " is NULL"), std::string::npos);
    }
}

struct Verdict {
    const char* network;
    const char* advice;
    const char* picture;
    const char* mark;
    Texts panel;
    Texts buttons = kFullRow;
};

const Texts kLive{kOwnMac, "2001:db8:2::20", "64", "fe80::1", "2001:db8:2::53"};

TEST(WirelessVerdict, TellsWhatWentWrong) {
    const Verdict verdicts[] = {
        {"wifi-gateway-down", kRouterAdvice, kNoGatewayPicture, kErrorMark, kLive},
        {"wifi-internet-down", kNoInternetAdvice, kNoInternetPicture, "", kLive},
        {"wifi-no-address", kRouterAdvice, kNoGatewayPicture, kErrorMark, {kOwnMac, "::", "0", "fe80::1", "::"}},
        {"wifi-mac-all-zero",
         kMacAdvice,
         kNoGatewayPicture,
         kErrorMark,
         {"00:00:00:00:00:00", "2001:db8:2::20", "64", "fe80::1", "2001:db8:2::53"},
         kRowWithoutSettings},
        {"wifi-mac-all-ones",
         kMacAdvice,
         kNoInternetPicture,
         "",
         {"FF:FF:FF:FF:FF:FF", "2001:db8:2::20", "64", "fe80::1", "2001:db8:2::53"},
         kRowWithoutSettings},
    };
    for (const Verdict& verdict : verdicts) {
        const HostRun run(wireless(verdict.network, std::string("expect \"") + kWirelessFailed +
                                                        "\" within 20\nwait 0.1\ndump end.json\nkey Left\nwait 0.1\n"
                                                        "expect focus \"Retry\"\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << verdict.network << '\n' << run;
        const nlohmann::json dump = run.dump("end.json");
        EXPECT_EQ(textIn(dump, kAdvicePart), verdict.advice) << verdict.network;
        EXPECT_EQ(pictureIn(dump, kVerdictPart), verdict.picture) << verdict.network;
        EXPECT_EQ(pictureIn(dump, kErrorMarkPart), verdict.mark) << verdict.network;
        EXPECT_EQ(panelIn(dump), verdict.panel) << verdict.network;
        EXPECT_EQ(buttonsIn(dump), verdict.buttons) << verdict.network;
        EXPECT_EQ(textIn(dump, kVerdictNamePart), "Maple Street 12") << verdict.network;
        EXPECT_EQ(textIn(dump, kNamePart), "") << verdict.network;
        EXPECT_EQ(pictureIn(dump, kVerdictSignalPart), "obe_icon_wifi_lock_5.png") << verdict.network;
        EXPECT_EQ(focusIn(dump), "Close") << verdict.network;
    }
}

TEST(WirelessVerdict, OfSuccessKeepsNameAndSignal) {
    const HostRun run(wireless("wifi-open", std::string("expect \"") + kWirelessReady +
                                                "\" within 20\nwait 0.1\n"
                                                "dump end.json\nquit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    const nlohmann::json dump = run.dump("end.json");
    EXPECT_EQ(textIn(dump, kNamePart), "Maple Street 12");
    EXPECT_EQ(pictureIn(dump, kSignalPart), "obe_icon_wifi_1.png");
    EXPECT_EQ(panelIn(dump), kBlankPanel);
}

TEST(WirelessVerdict, OfACancelledCheckShowsWhatIsKnownAndRetryStartsAnew) {
    const HostRun run(wireless("wifi-success", R"(
        wait 1.2
        key Return
        wait 0.1
        dump cancelled.json
        key Left
        wait 0.1
        key Return
        wait 0.1
        dump started.json
        expect "Your wireless network and the internet are ready to use." within 8
        quit
    )"));
    ASSERT_TRUE(run.succeeded()) << run;
    const nlohmann::json cancelled = run.dump("cancelled.json");
    EXPECT_EQ(textIn(cancelled, kAdvicePart),
              "The wireless network check was stopped before it finished. Select Retry to check again.");
    EXPECT_EQ(panelIn(cancelled)[1], "2001:db8:2::20");
    EXPECT_EQ(textIn(cancelled, kVerdictNamePart), "Maple Street 12");
    EXPECT_EQ(pictureIn(cancelled, kVerdictSignalPart), "obe_icon_wifi_lock_5.png");
    const nlohmann::json started = run.dump("started.json");
    EXPECT_EQ(textIn(started, kVerdictNamePart), "");
    EXPECT_EQ(pictureIn(started, kVerdictSignalPart), "");
    EXPECT_EQ(textIn(started, kNamePart), "Maple Street 12");
    EXPECT_EQ(pictureIn(started, kSignalPart), "obe_icon_wifi_lock_5.png");
}

TEST(WirelessName, IsShownAsItIs) {
    struct Case {
        const char* network;
        std::string name;
    };
    std::string raw = "\uFFFD\uFFFD";
    for (int control = 1; control <= 30; ++control)
        raw += "\uFFFD";
    const Case cases[] = {{"wifi-markup-name", "<b>&amp;\"'</b>📺"},
                          {"wifi-raw-name", raw},
                          {"wifi-apartment-block", "Maple Street 12"},
                          {"wifi-hidden", "Maple Street 12"}};
    for (const Case& example : cases) {
        const HostRun run(wireless(example.network, "wait 0.2\ndump name.json\nexpect \"Close\" within 10\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << example.network << '\n' << run;
        EXPECT_EQ(textIn(run.dump("name.json"), kNamePart), example.name) << example.network;
    }
}

std::string oneNetwork(const std::string& essid, int rssi, const std::string& security) {
    return R"({"description": "one network", "interfaces": [], "profiles": [],
      "wifi": {"mac": "02:00:5E:20:00:AA", "accessPoints": [{"essid": ")" +
           essid + R"(", "rssi": )" + std::to_string(rssi) + R"(, "security": ")" + security +
           R"(", "connected": true, "live": {"address": "2001:db8:2::20", "prefixLength": 64, "gateway": "fe80::1"}}]},
      "gateway": {"delay": 0.3, "result": "NONE"}, "internet": {"delay": 0.4, "result": "NONE"}})";
}

TEST(WirelessName, OfAnyLengthIsCutAt254Bytes) {
    for (const std::size_t length : {0U, 32U, 254U, 255U, 3000U}) {
        const std::string name(length, 'n');
        const HostRun run(
            wireless(oneNetwork(name, -50, "none"), "wait 0.2\ndump name.json\nexpect \"Close\" within 10\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << length << '\n' << run;
        EXPECT_EQ(textIn(run.dump("name.json"), kNamePart), name.substr(0, 254)) << length;
    }
}

TEST(WirelessSignal, HasFiveLevelsOpenAndSecured) {
    struct Case {
        int rssi;
        int level;
    };
    for (const Case& example : {Case{-127, 1},
                                {-89, 1},
                                {-88, 2},
                                {-83, 2},
                                {-82, 3},
                                {-75, 3},
                                {-74, 4},
                                {-64, 4},
                                {-63, 5},
                                {0, 5},
                                {5, 5}}) {
        for (const bool secured : {false, true}) {
            const HostRun run(wireless(oneNetwork("home", example.rssi, secured ? "wpa2-psk" : "none"),
                                       "wait 0.1\ndump signal.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            EXPECT_EQ(pictureIn(run.dump("signal.json"), kSignalPart),
                      (secured ? "obe_icon_wifi_lock_" : "obe_icon_wifi_") + std::to_string(example.level) + ".png")
                << example.rssi;
        }
    }
}

TEST(WirelessFailingCalls, LeaveADefaultAFlagOrAVerdict) {
    struct Case {
        const char* call;
        const char* message;
    };
    const Case cases[] = {
        {"wifi_initialize", kWirelessFailed},
        {"wifi_is_activated", kWirelessFailed},
        {"wifi_get_mac_address", kWirelessReady},
        {"wifi_foreach_found_aps", kWirelessFailed},
        {"wifi_get_connected_ap", kWirelessFailed},
        {"wifi_get_is_online_ipv6_async", kWirelessFailed},
        {"wifi_ap_get_essid", kWirelessFailed},
        {"wifi_ap_get_bssid", kWirelessReady},
        {"wifi_ap_get_rssi", kWirelessReady},
        {"wifi_ap_get_security_type", kWirelessReady},
        {"wifi_ap_get_ip_address", kWirelessFailed},
        {"wifi_ap_get_prefix_length", kWirelessReady},
        {"wifi_ap_get_gateway_address", kWirelessReady},
        {"wifi_ap_get_dns_address", kWirelessReady},
        {"wifi_ap_check_gateway6_async", kWirelessFailed},
        {"wifi_ap_unset_async_cb", kWirelessReady},
        {"wifi_ap_destroy", kWirelessReady},
        {"wifi_deinitialize", kWirelessReady},
        {"connection_create", kWirelessReady},
        {"connection_destroy", kWirelessReady},
    };
    for (const Case& example : cases) {
        std::string network = oneNetwork("home", -50, "none");
        network.insert(network.rfind('}'), std::string(R"(, "faults": [{"call": ")") + example.call +
                                               R"(", "result": "OPERATION_FAILED", "times": "always"}])");
        const HostRun run(wireless(network,
                                   "expect \"Close\" within 20\nwait 0.1\ndump end.json\nkey Return\n"
                                   "expect closed within 1\n"));
        ASSERT_TRUE(run.succeeded()) << example.call << '\n' << run;
        EXPECT_EQ(textIn(run.dump("end.json"), kMessagePart), example.message) << example.call;
    }
    // One refusal of the gateway check is met by asking once more.
    const HostRun retried(wireless("wifi-success",
                                   "network fault wifi_ap_check_gateway6_async OPERATION_FAILED 1\n"
                                   "expect \"" +
                                       std::string(kWirelessReady) + "\" within 10\nquit\n"));
    EXPECT_TRUE(retried.succeeded()) << retried;
}

}  // namespace
