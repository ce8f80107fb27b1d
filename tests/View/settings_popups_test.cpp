// The two small popups over the settings screen: the choice of a mode and the prefix length.
#include <gtest/gtest.h>

#include "settings_screen.h"

namespace {

const Stored kManually{kManual, kManual, {"2001:db8:9::9", "64", "2001:db8:9::1", "2001:db8:9::53"}};
constexpr int kPrefixRow = 2;

std::string keysThenDumps(const std::vector<std::string>& keys) {
    std::string script;
    for (std::size_t i = 0; i < keys.size(); ++i)
        script += "key " + keys[i] + "\nwait 0.1\ndump " + std::to_string(i) + ".json\n";
    return script;
}

struct Typing {
    std::vector<std::string> keys;
    Texts shown;        // on the value button after each key; empty once the popup is closed
    const char* value;  // of the row in the end
};

const Typing kTypings[] = {
    {{"1", "2", "8", "Return"}, {"1", "12", "128", ""}, "128"},
    {{"1", "2", "9", "Return"}, {"1", "12", "64", ""}, "64"},
    {{"9", "9", "9", "7", "Return"}, {"9", "99", "64", "7", ""}, "7"},
    {{"0", "5", "Return"}, {"0", "5", ""}, "5"},
    {{"0", "Return"}, {"0", ""}, "64"},
    {{"0", "0", "0", "Return"}, {"0", "0", "0", ""}, "64"},
    {{"KP_End", "KP_Insert", "KP_Prior", "Return"}, {"1", "10", "109", ""}, "109"},
    {{"4", "Right", "8", "Return"}, {"4", "4", "8", ""}, "8"},
    {{"4", "Left", "Up", "Down", "a", "8", "Return"}, {"4", "4", "4", "4", "4", "48", ""}, "48"},
    {{"1", "2", "8", "9", "9", "9", "Return"}, {"1", "12", "128", "9", "99", "128", ""}, "128"},
    {{"3", "2", "XF86Back"}, {"3", "32", ""}, "32"},
    {{"3", "2", "XF86Close"}, {"3", "32", ""}, "64"},
};

TEST(PrefixPopup, TakesDigitsUpTo128) {
    for (const Typing& typing : kTypings) {
        const HostRun run(
            onSettings(kWiredCase, kManually, selectRow(kPrefixRow) + keysThenDumps(typing.keys) + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        std::string typed;
        for (std::size_t i = 0; i < typing.keys.size(); ++i) {
            const nlohmann::json dump = run.dump(std::to_string(i) + ".json");
            typed += typing.keys[i] + " ";
            const bool open = popupsIn(dump).size() == 2;
            EXPECT_EQ(open ? focusIn(dump) : "", typing.shown[i]) << typed;
            if (i + 1 < typing.keys.size()) continue;
            EXPECT_EQ(valuesIn(dump)[kPrefixRow], typing.value) << typed;
            EXPECT_EQ(focusedRowIn(dump), "Prefix length") << typed;
        }
    }
}

TEST(PrefixPopup, IsConfirmedByAClickAndLeftByOneOutside) {
    const HostRun run(onSettings(kWiredCase, kManually,
                                 selectRow(kPrefixRow) + "key 3\nkey 2\nwait 0.1\nclick \"32\"\nwait 0.2\n"
                                                         "dump confirmed.json\nkey Return\nwait 0.2\nkey 7\nwait 0.1\n"
                                                         "click \"IPv6 settings\"\nwait 0.2\ndump left.json\n"
                                                         "key Return\nwait 0.2\nkey 7\nwait 0.1\ndump again.json\n"
                                                         "quit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(valuesIn(run.dump("confirmed.json"))[kPrefixRow], "32");
    EXPECT_EQ(valuesIn(run.dump("left.json"))[kPrefixRow], "32");
    EXPECT_EQ(popupsIn(run.dump("left.json")), Texts{"c_popup_l_bottom"});
    EXPECT_EQ(focusedRowIn(run.dump("left.json")), "Prefix length");
    EXPECT_EQ(focusIn(run.dump("again.json")), "77") << "digits survive a close from outside";
}

TEST(PrefixPopup, MenuClosesTheGadgetAndPutsTheNetworkBack) {
    const HostRun run(onSettings(kWiredCase, {},
                                 std::string(kToManual) + selectRow(kPrefixRow) +
                                     "key 3\nkey Menu\nexpect closed within 1\nnetwork save net.json\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(configuredIn(run.dump("net.json")), "automatic -/0 - dynamic -");
}

TEST(PrefixPopup, StandsOnItsRow) {
    for (const auto& [mode, left, top] : {std::tuple{0, 1252, 468}, {1, 1316, 477}}) {
        HostSetup setup =
            onSettings(kWiredCase, kManually, selectRow(kPrefixRow) + "key 6\nkey 4\nwait 0.1\ndump open.json\nquit\n");
        setup.store.emplace_back("db/menu/system/accessibility/focuszoom", mode);
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json button = run.dump("open.json")["buttons"].back();
        EXPECT_EQ(button["label"], "64");
        EXPECT_EQ(button["geometry"], nlohmann::json({left, top, 280, 80}));
    }
}

struct Leaving {
    const char* script;
    Texts popups;
    const char* focus;
};

TEST(ModePopup, OpensOnTheCurrentModeAndClosesWithoutAChange) {
    const Leaving leavings[] = {
        {"key XF86Back\n", {"c_popup_l_bottom"}, "IP settings"},
        {"key XF86Close\n", {"c_popup_l_bottom"}, "IP settings"},
        {"click \"OK\"\n", {"c_popup_l_bottom"}, "IP settings"},
        {"key Menu\n", {"c_popup_l_bottom", "C_ListDropdown_White"}, nullptr},
    };
    for (const Stored& stored : {Stored{}, kManually}) {
        for (const Leaving& leaving : leavings) {
            const HostRun run(onSettings(kWiredCase, stored,
                                         std::string("key Return\nwait 0.2\ndump open.json\n") + leaving.script +
                                             "wait 0.2\ndump left.json\nnetwork save net.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            const char* const current = stored.ipMode == kAuto ? kAutoText : kManualText;
            EXPECT_EQ(focusedRowIn(run.dump("open.json")), current);
            EXPECT_EQ(popupsIn(run.dump("left.json")), leaving.popups) << leaving.script;
            EXPECT_EQ(focusedRowIn(run.dump("left.json")), leaving.focus ? leaving.focus : current) << leaving.script;
            EXPECT_EQ(valuesIn(run.dump("left.json"))[0], current) << leaving.script;
            EXPECT_EQ(configuredIn(run.dump("net.json")), "- -/0 - - -") << leaving.script;
        }
    }
}

TEST(ModePopup, AClickChoosesAndLeavesItOpen) {
    const HostRun run(onSettings(kWiredCase, {},
                                 "click \"DNS settings\"\nwait 0.3\nclick \"Enter manually\"\nwait 0.3\n"
                                 "dump chosen.json\nkey XF86Back\nwait 0.2\ndump closed.json\nquit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(popupsIn(run.dump("chosen.json")), (Texts{"c_popup_l_bottom", "C_ListDropdown_White"}));
    EXPECT_EQ(valuesIn(run.dump("chosen.json"))[4], kManualText);
    EXPECT_EQ(enabledIn(run.dump("closed.json")), "100011");
    EXPECT_EQ(focusedRowIn(run.dump("closed.json")), "DNS settings");
}

}  // namespace
