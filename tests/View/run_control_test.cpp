// What the user does to a check: cancel, retry, leave by every way out; and where the focus may go.
#include <gtest/gtest.h>

#include <string>

#include "status_screen.h"

namespace {

TEST(RunControl, CancelShowsWhatIsKnown) {
    for (const auto& [network, when, picture] : {std::tuple{"internet-silent", "1.2", kNoGatewayPicture},
                                                 {"internet-silent", "4.6", kNoInternetPicture},
                                                 {"wifi-success", "1.2", kNoGatewayPicture}}) {
        SCOPED_TRACE(std::string(network) + " after " + when);
        const bool wireless = isWireless(network);
        const HostRun run(onNetwork(network, std::string("wait ") + when +
                                                 "\nkey Return\nwait 0.1\ndump cancelled.json\nwait 30\n"
                                                 "dump later.json\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json dump = run.dump("cancelled.json");
        EXPECT_EQ(textIn(dump, kMessagePart), kCancelled);
        EXPECT_EQ(textIn(dump, kAdvicePart), std::string("The ") + (wireless ? "wireless" : "wired") +
                                                 " network check was stopped before it finished. Select Retry to "
                                                 "check again.");
        EXPECT_EQ(pictureIn(dump, kVerdictPart), picture);
        EXPECT_EQ(pictureIn(dump, kErrorMarkPart), "");
        EXPECT_EQ(panelIn(dump)[1], wireless ? "2001:db8:2::20" : "2001:db8:1::10");
        EXPECT_EQ(textIn(dump, kVerdictNamePart), wireless ? kName : "");
        EXPECT_EQ(pictureIn(dump, kVerdictSignalPart), wireless ? kSignalPicture : "");
        EXPECT_EQ(buttonsIn(dump), kFullRow);
        EXPECT_EQ(focusIn(dump), "Close");
        EXPECT_FALSE(dump["parts"].contains("PartMain:elm.loader.swallow"));
        EXPECT_EQ(run.dump("later.json")["parts"], dump["parts"]) << "late answers change nothing on the screen";
    }
}

TEST(RunControl, RetryStartsAFreshRun) {
    const std::pair<const char*, std::string> cases[] = {
        {"gateway-down", std::string(kToVerdict) + "network gateway answer 0.3\n"},
        {"wifi-success", "wait 1.2\nkey Return\nwait 0.1\n"}};
    for (const auto& [network, before] : cases) {
        SCOPED_TRACE(network);
        const HostRun run(
            onNetwork(network, before + walk("Left Retry|Return Cancel") + "dump started.json\n" +
                                   walk("Left Cancel|Right Cancel") +
                                   "expect picture \"network_popup_connect_1.png\" in PartMain:elm.swallow.status "
                                   "within 0.5\nexpect picture \"network_popup_connect_2.png\" in "
                                   "PartMain:elm.swallow.status within 0.6\nexpect \"" +
                                   ready(network) + "\" within 10\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json started = run.dump("started.json");
        EXPECT_EQ(textIn(started, kMessagePart), checking(network));
        EXPECT_EQ(panelIn(started), kBlankPanel);
        for (const char* part : {kAdvicePart, "PartMain:MAC_Address", "PartMain:MACcolon", kVerdictNamePart})
            EXPECT_EQ(textIn(started, part), "") << part;
        for (const char* part : {kVerdictPart, kErrorMarkPart, kVerdictSignalPart})
            EXPECT_EQ(pictureIn(started, part), "") << part;
        EXPECT_EQ(textIn(started, kNamePart), isWireless(network) ? kName : "");
        EXPECT_EQ(pictureIn(started, kSignalPart), isWireless(network) ? kSignalPicture : "");
        EXPECT_EQ(buttonsIn(started), Texts{"Cancel"});
        EXPECT_TRUE(started["parts"].contains("PartMain:elm.loader.swallow"));
    }
}

void play(const std::string& network, const std::string& script) {
    const HostRun run(onNetwork(network, script));
    EXPECT_TRUE(run.succeeded()) << network << '\n' << run;
}

TEST(RunControl, AnswersToACancelledRunDoNotEndTheNextOne) {
    // The first run is cancelled while its gateway check is under way; the second one is told its own answer.
    play("success",
         "network gateway NO_REPLY 0.4\nwait 3.6\nkey Return\nwait 0.1\nnetwork gateway answer 0.3\nwait 1\n"
         "key Left\nwait 0.05\nkey Return\nwait 3\nexpect \"Cancel\"\nexpect \"" +
             ready("success") + "\" within 3\nquit\n");
}

TEST(RunControl, FocusMovesInRingsAndNeverLeaves) {
    const std::string locked =
        "wait 0.2\n" + walk("Left Cancel|Right Cancel|Up Cancel|Down Cancel") + "expect focus \"Close\" within 20\n";
    const std::string ring = walk(
        "Right IPv6 settings|Right Retry|Right Close|Left Retry|Left IPv6 settings|Left Close|"
        "Down IPv6 settings|Down Retry|Down Close|Up Retry|Up IPv6 settings");
    const std::string two =
        walk("Right Retry|Right Close|Left Retry|Left Close|Down Retry|Down Close|Up Retry|Up Close");
    const std::string pointed = "point \"Retry\"\nexpect focus \"Retry\"\n";
    for (const char* network : {"gateway-down", "success", "wifi-gateway-down"})
        play(network, locked + ring + walk("Up Close") + pointed);
    // Without a cable the settings button keeps the focus on the way up.
    play("pulled-in-stage-one", locked + ring + walk("Up IPv6 settings|Down Retry"));
    for (const char* network : {"mac-all-zero", "wifi-mac-all-zero"})
        play(network, locked + two);
}

TEST(RunControl, AnUnknownNetworkStartsNoCheck) {
    play("success",
         "key Menu\nexpect closed within 1\nset-store db/menu/network/network_type \"Coax\"\nopen\nwait 10\n"
         "expect exactly \"Cancel\"\nexpect-gone \"Retry\"\nkey Menu\nexpect closed within 1\n");
}

TEST(RunControl, AStoreThatChangesWhileOpenLeavesNoClientBehind) {
    for (const auto& [network, stored, released] : {std::tuple{"success", "Wireless", "Client deregistration"},
                                                    {"success", "Coax", "Client deregistration"},
                                                    {"wifi-success", "Wired", "wlan_manager_deregister_cbs"}}) {
        HostSetup setup = onNetwork(network, std::string("wait 1\nset-store db/menu/network/network_type \"") + stored +
                                                 "\"\nkey Menu\nexpect closed within 1\nwait 10\n");
        setup.arguments = {"--log", "debug"};
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_NE(run.errors().find(released), std::string::npos) << network << " to " << stored;
    }
}

TEST(Closing, CloseKeysAndButtonsWorkInEveryState) {
    const std::string verdict = kToVerdict;
    const std::string states[] = {"",
                                  "wait 1.2\n",
                                  "wait 4.6\n",
                                  verdict,
                                  verdict + "key Left\nwait 0.1\n",
                                  verdict + "key Right\nwait 0.1\n",
                                  "wait 1\nkey Return\nwait 0.1\n"};
    std::string script;
    for (const char* way : {"key XF86Back\n", "key Menu\n", "key XF86Close\n"}) {
        for (const std::string& state : states)
            script += "open\n" + state + "key a\nkey 7\n" + way + "expect closed within 1\n";
    }
    play("internet-down",
         script + "open\nwait 1\nclick \"Cancel\"\nwait 0.2\nclick \"Close\"\nexpect closed within 1\n");
}

TEST(Closing, AMinuteWithoutInputClosesTheVerdict) {
    // The verdict of a pulled cable comes at 0.5 s; that tick is the last activity. A running check is one, too.
    play("cable-down", "wait 58\nexpect \"Close\"\nexpect closed within 4\n");
    for (const char* input : {"key a", "click \"IPv6 status\""}) {
        play("cable-down", std::string("wait 58\n") + input + "\nwait 57\nexpect \"Close\"\nexpect closed within 5\n");
    }
    play("gateway-silent", "wait 300\nexpect \"Cancel\"\nkey Return\nexpect closed within 65\n");
}

}  // namespace
