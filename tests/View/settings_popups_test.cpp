// The small popups over the settings screen, for a mode and the prefix length; and leaving it without a confirmation:
// the network is put back to what the store holds, exactly.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "settings_screen.h"

namespace {

const Stored kManually{kManual, kManual, {"2001:db8:9::9", "64", "2001:db8:9::1", "2001:db8:9::53"}};

// Keys, each with what the value button shows then; after the last one the popup has closed.
constexpr const char* kTypings[] = {
    "1 1|2 12|8 128|Return Prefix length 128",
    "1 1|2 12|9 64|Return Prefix length 64",
    "9 9|9 99|9 64|7 7|Return Prefix length 7",
    "0 0|5 5|Return Prefix length 5",
    "0 0|0 0|0 0|Return Prefix length 64",
    "KP_End 1|KP_Insert 10|KP_Prior 109|Return Prefix length 109",
    "4 4|Right 4|8 8|Return Prefix length 8",
    "4 4|Left 4|Up 4|Down 4|a 4|8 48|Return Prefix length 48",
    "1 1|2 12|8 128|9 9|9 99|9 128|Return Prefix length 128",
    "3 3|2 32|XF86Back Prefix length 32",
    "3 3|2 32|XF86Close Prefix length 64",
};

TEST(PrefixPopup, TakesDigitsUpTo128) {
    for (const char* typing : kTypings) {
        const HostRun run(onSettings(kWiredCase, kManually, kOpenPrefix + walk(typing) + "quit\n"));
        EXPECT_TRUE(run.succeeded()) << run;
    }
}

TEST(PrefixPopup, IsConfirmedByAClickAndLeftByOneOutside) {
    const HostRun run(onSettings(
        kWiredCase, kManually,
        kOpenPrefix + walk("3 3|2 32") + "click \"32\"\nwait 0.2\nexpect focus exactly \"Prefix length 32\"\n" +
            walk("Return 32|7 7") + "click \"IPv6 settings\"\nwait 0.2\nexpect focus exactly \"Prefix length 32\"\n" +
            // Digits survive a close from outside.
            walk("Return 32|7 77") + "quit\n"));
    EXPECT_TRUE(run.succeeded()) << run;
}

TEST(PrefixPopup, MenuClosesTheGadgetAndPutsTheNetworkBack) {
    const HostRun run(onSettings(
        kWiredCase, {}, kToManual + kOpenPrefix + "key 3\nkey Menu\nexpect closed within 1\nnetwork save net.json\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(configuredIn(run.dump("net.json")), "automatic -/0 - dynamic -");
}

TEST(PrefixPopup, StandsOnItsRow) {
    for (const auto& [mode, left, top] : {std::tuple{0, 1252, 468}, {1, 1316, 477}}) {
        HostSetup setup = onSettings(kWiredCase, kManually, kOpenPrefix + walk("6 6|4 64"));
        setup.store.emplace_back("db/menu/system/accessibility/focuszoom", mode);
        setup.size = "1920x1080";  // the design's own pixels
        EXPECT_EQ(endOf(setup)["buttons"].back()["geometry"], nlohmann::json({left, top, 280, 80}));
    }
}

TEST(ModePopup, OpensOnTheCurrentModeAndClosesWithoutAChange) {
    for (const Stored& stored : {Stored{}, kManually}) {
        const std::string current = stored.ipMode == kAuto ? kAutoText : kManualText;
        std::string script;
        for (const char* leave : {"key XF86Back\n", "key XF86Close\n", "click \"OK\"\n"}) {
            script +=
                walk("Return " + current) + leave + "wait 0.2\nexpect focus exactly \"IP settings " + current + "\"\n";
        }
        // Menu does nothing here.
        script += walk("Return " + current + "|Menu " + current) + "network save net.json\nquit\n";
        const HostRun run(onSettings(kWiredCase, stored, script));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(configuredIn(run.dump("net.json")), kUntouched);
    }
}

TEST(ModePopup, AClickChoosesAndLeavesItOpen) {
    const HostRun run(onSettings(kWiredCase, {},
                                 "click \"DNS settings\"\nwait 0.3\nclick \"Enter manually\"\nwait 0.3\n"
                                 "dump chosen.json\n" +
                                     walk("XF86Back DNS settings Enter manually") + "dump closed.json\nquit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(popupsIn(run.dump("chosen.json")), (Texts{"c_popup_l_bottom", "C_ListDropdown_White"}));
    EXPECT_EQ(valuesIn(run.dump("chosen.json"))[4], kManualText);
    EXPECT_EQ(enabledIn(run.dump("closed.json")), "100011");
}

const std::pair<Stored, const char*> kReverted[] = {
    {{}, "automatic -/0 - dynamic -"},
    {{kAuto, kManual}, "automatic -/0 - static 2001:db8:9::53,2001:db8:9::53"},
    {{kManual, kManual}, "static 2001:db8:9::9/56 2001:db8:9::1 static 2001:db8:9::53,2001:db8:9::53"},
};

// Any sequence of mode changes and edits, each beginning and ending on the first row.
std::string wander(bool automatic, bool automaticDns, unsigned seed) {
    std::mt19937 random(seed);
    std::string script;
    for (int step = 0; step < 6; ++step) {
        if (random() % 2 == 0) {
            script += automatic ? kToManual : kToAutomatic;
            automatic = automaticDns = !automatic;
        } else if (automatic) {
            script += std::string("key Down\n") + (automaticDns ? kToManual : kToAutomatic) + "key Up\n";
            automaticDns = !automaticDns;
        } else {
            script += kOpenPrefix + "key 4\nkey 8\nkey Return\nwait 0.2\nkey Up\nkey Up\n";
        }
    }
    return script;
}

// After the first two the status screen checks anew; the third leaves it empty, but not without the focus.
constexpr const char* kWaysOut[] = {"click \"Cancel\"\nwait 0.3\nexpect focus exactly \"Cancel\"\n",
                                    "key XF86Back\nwait 0.3\nexpect focus exactly \"Cancel\"\n",
                                    "key XF86Close\nwait 0.3\nexpect-gone \"Cancel\"\nexpect sane\n",
                                    "key Menu\nexpect closed within 1\n", "expect closed within 61\n"};

TEST(SettingsRevert, IsExactAfterAnyChangesOnEveryWayOut) {
    unsigned seed = 20;
    for (const auto& [stored, configured] : kReverted) {
        for (const char* way : kWaysOut) {
            ++seed;
            SCOPED_TRACE("seed " + std::to_string(seed));
            const SettingsCase& network = kBothCases[seed % 2];
            const std::string changes = wander(stored.ipMode == kAuto, stored.dnsMode == kAuto, seed);
            const HostRun run(onSettings(network, stored, changes + way + "network save net.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            EXPECT_EQ(configuredIn(run.dump("net.json")), configured) << run;
            EXPECT_EQ(storedAfter(run, network), asRow(stored));
        }
    }
}

TEST(SettingsRevert, LeavesTheNetworkAloneWhereTheStoreHoldsNoConfiguration) {
    for (const char* mode : {kManual, "SOMETHING"}) {
        const HostRun run(
            onSettings(kWiredCase, {mode, kAuto}, "key XF86Back\nwait 0.2\nnetwork save net.json\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(configuredIn(run.dump("net.json")), kUntouched);
    }
}

}  // namespace
