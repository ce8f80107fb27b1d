// What the user does to a check: cancel, retry, the way to the settings screen; and where the focus may go.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

struct Cancel {
    const char* when;
    const char* picture;
};

TEST(RunControl, CancelShowsWhatIsKnown) {
    for (const Cancel& cancel :
         {Cancel{"1.2", "network_popup_connect_0.png"}, Cancel{"4.6", "network_connect_3.png"}}) {
        const HostRun run({.network = scenario("internet-silent"), .script = std::string("wait ") + cancel.when + R"(
                               key Return
                               wait 0.1
                               dump cancelled.json
                               wait 30
                               dump later.json
                               quit
                           )"});
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json dump = run.dump("cancelled.json");
        EXPECT_EQ(textIn(dump, kMessagePart), kCancelled);
        EXPECT_EQ(textIn(dump, kAdvicePart),
                  "The wired network check was stopped before it finished. Select Retry to check again.");
        EXPECT_EQ(pictureIn(dump, kVerdictPart), cancel.picture) << cancel.when;
        EXPECT_EQ(pictureIn(dump, kErrorMarkPart), "");
        EXPECT_EQ(panelIn(dump)[1], "2001:db8:1::10");
        EXPECT_EQ(buttonsIn(dump), kFullRow);
        EXPECT_EQ(focusIn(dump), "Close");
        EXPECT_FALSE(dump["parts"].contains("PartMain:elm.loader.swallow"));
        EXPECT_EQ(run.dump("later.json")["parts"], dump["parts"]) << "late answers change nothing on the screen";
    }
}

TEST(RunControl, ClickOnCancelMakesTheCloseButtonThatCloses) {
    const HostRun run({.network = scenario("success"),
                       .script = "wait 1\nclick \"Cancel\"\nwait 0.2\nclick \"Close\"\nexpect closed within 1\n"});
    EXPECT_TRUE(run.succeeded()) << run;
}

TEST(RunControl, RetryStartsAFreshRun) {
    const HostRun run(
        {.network = scenario("gateway-down"), .script = std::string("expect \"") + kFailed + R"(" within 10
                           wait 0.1
                           network gateway answer 0.3
                           key Left
                           wait 0.1
                           expect focus "Retry"
                           key Return
                           wait 0.1
                           dump started.json
                           key Left
                           key Right
                           wait 0.1
                           expect focus "Cancel"
                           expect picture "network_popup_connect_1.png" in PartMain:elm.swallow.status within 0.5
                           expect picture "network_popup_connect_2.png" in PartMain:elm.swallow.status within 0.6
                           expect "Your wired network and the internet are ready to use." within 10
                           wait 0.1
                           dump end.json
                           quit
                       )"});
    ASSERT_TRUE(run.succeeded()) << run;
    const nlohmann::json started = run.dump("started.json");
    EXPECT_EQ(textIn(started, kMessagePart), kChecking);
    EXPECT_EQ(textIn(started, kAdvicePart), "");
    EXPECT_EQ(panelIn(started), kBlankPanel);
    EXPECT_EQ(textIn(started, "PartMain:MAC_Address"), "");
    EXPECT_EQ(textIn(started, "PartMain:MACcolon"), "");
    EXPECT_EQ(pictureIn(started, kVerdictPart), "");
    EXPECT_EQ(pictureIn(started, kErrorMarkPart), "");
    EXPECT_EQ(buttonsIn(started), std::vector<std::string>{"Cancel"});
    EXPECT_TRUE(started["parts"].contains("PartMain:elm.loader.swallow"));
    EXPECT_EQ(pictureIn(run.dump("end.json"), kVerdictPart), "");
}

TEST(RunControl, AnswersToACancelledRunDoNotEndTheNextOne) {
    // The first run is cancelled while its gateway check is under way; the second one is told its own answer.
    const HostRun run({.network = scenario("success"), .script = R"(
                           network gateway NO_REPLY 0.4
                           wait 3.6
                           key Return
                           wait 0.1
                           network gateway answer 0.3
                           wait 1
                           key Left
                           wait 0.05
                           key Return
                           wait 3
                           expect "Cancel"
                           expect "Your wired network and the internet are ready to use." within 3
                           quit
                       )"});
    EXPECT_TRUE(run.succeeded()) << run;
}

struct Move {
    const char* key;
    const char* focus;
};

std::string moves(std::initializer_list<Move> path) {
    std::string script;
    for (const Move& move : path) {
        script += std::string("key ") + move.key + "\nwait 0.05\nexpect focus \"" + move.focus + "\"\n";
    }
    return script;
}

TEST(RunControl, FocusMovesInRingsAndNeverLeaves) {
    const std::string locked = moves({{"Left", "Cancel"}, {"Right", "Cancel"}, {"Up", "Cancel"}, {"Down", "Cancel"}});
    const std::string ring = moves({{"Right", "IPv6 settings"},
                                    {"Right", "Retry"},
                                    {"Right", "Close"},
                                    {"Left", "Retry"},
                                    {"Left", "IPv6 settings"},
                                    {"Left", "Close"},
                                    {"Down", "IPv6 settings"},
                                    {"Down", "Retry"},
                                    {"Down", "Close"},
                                    {"Up", "Retry"},
                                    {"Up", "IPv6 settings"}});
    struct Case {
        const char* network;
        std::string path;
    };
    const Case cases[] = {
        {"gateway-down", ring + moves({{"Up", "Close"}})},
        {"success", ring + moves({{"Up", "Close"}})},
        // Without a cable the settings button keeps the focus on the way up.
        {"pulled-in-stage-one", ring + moves({{"Up", "IPv6 settings"}, {"Down", "Retry"}})},
        {"mac-all-zero", moves({{"Right", "Retry"},
                                {"Right", "Close"},
                                {"Left", "Retry"},
                                {"Left", "Close"},
                                {"Down", "Retry"},
                                {"Down", "Close"},
                                {"Up", "Retry"},
                                {"Up", "Close"}})},
    };
    for (const Case& example : cases) {
        const HostRun run(
            {.network = scenario(example.network),
             .script = "wait 0.2\n" + locked + "expect focus \"Close\" within 20\n" + example.path + "quit\n"});
        EXPECT_TRUE(run.succeeded()) << example.network << '\n' << run;
    }
}

TEST(RunControl, AnUnknownNetworkStartsNoCheck) {
    const HostRun run({.network = scenario("success"),
                       .store = {{"db/menu/network/network_type", "Coax"}},
                       .script = "wait 10\ndump still.json\nkey Menu\nexpect closed within 1\n",
                       .arguments = {"--log", "warning"}});
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(buttonsIn(run.dump("still.json")), std::vector<std::string>{"Cancel"});
    EXPECT_NE(run.errors().find("Unknown network type [Coax]"), std::string::npos) << run.errors();
}

TEST(RunControl, AStoreThatChangesWhileOpenLeavesNoClientBehind) {
    for (const auto& [opened, stored] : {std::pair{"Wired", "Wireless"}, {"Wired", "Coax"}, {"Wireless", "Wired"}}) {
        const HostRun run({.network = scenario("wifi-success"),
                           .store = {{"db/menu/network/network_type", opened}},
                           .script = std::string("wait 1\nset-store db/menu/network/network_type \"") + stored +
                                     "\"\nkey Menu\nexpect closed within 1\nwait 10\n",
                           .arguments = {"--log", "debug"}});
        ASSERT_TRUE(run.succeeded()) << run;
        const bool wired = std::string(opened) == "Wired";
        EXPECT_NE(run.errors().find(wired ? "Client deregistration" : "wlan_manager_deregister_cbs"),
                  std::string::npos);
    }
}

}  // namespace
