// Leaving the settings screen without a confirmation: the network is put back to what the store holds, exactly.
#include <gtest/gtest.h>

#include <random>

#include "settings_screen.h"

namespace {

struct Reverted {
    Stored stored;
    const char* configured;
};

const Reverted kReverted[] = {
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
            script += selectRow(2) + "key 4\nkey 8\nkey Return\nwait 0.2\nkey Up\nkey Up\n";
        }
    }
    return script;
}

struct Way {
    const char* script;
    bool closesGadget;
};

const Way kWaysOut[] = {
    {"click \"Cancel\"\nwait 0.2\n", false}, {"key XF86Back\nwait 0.2\n", false},
    {"key XF86Close\nwait 0.2\n", false},    {"key Menu\n", true},
    {"expect closed within 61\n", true},
};

class SettingsRevertOf : public testing::TestWithParam<SettingsCase> {};

INSTANTIATE_TEST_SUITE_P(Networks, SettingsRevertOf, testing::ValuesIn(kBothCases),
                         [](const auto& network) { return std::string(network.param.type); });

TEST_P(SettingsRevertOf, IsExactAfterAnyChangesOnEveryWayOut) {
    const SettingsCase& network = GetParam();
    unsigned seed = 20;
    for (const Reverted& reverted : kReverted) {
        for (const Way& way : kWaysOut) {
            ++seed;
            const Stored& stored = reverted.stored;
            std::string script = wander(stored.ipMode == kAuto, stored.dnsMode == kAuto, seed) + way.script;
            script += way.closesGadget ? "expect closed within 1\n" : "dump left.json\n";
            const HostRun run(onSettings(network, stored, script + "network save net.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << "seed " << seed << run;
            EXPECT_EQ(configuredIn(run.dump("net.json")), reverted.configured) << "seed " << seed << run;
            EXPECT_EQ(storedAfter(run, network), asRow(stored)) << "seed " << seed;
        }
    }
}

TEST(SettingsRevert, LeavesTheNetworkAloneWhereTheStoreHoldsNoConfiguration) {
    for (const Stored& stored : {Stored{kManual, kAuto}, Stored{"SOMETHING", kAuto}}) {
        const HostRun run(onSettings(kWiredCase, stored, "key XF86Back\nwait 0.2\nnetwork save net.json\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(configuredIn(run.dump("net.json")), "- -/0 - - -");
    }
}

TEST(SettingsRevert, TheStatusScreenComesBackOnlyForItsOwnAnswers) {
    const struct {
        const char* script;
        Texts buttons;
    } cases[] = {{"click \"Cancel\"\n", {"Cancel"}}, {"key XF86Back\n", {"Cancel"}}, {"key XF86Close\n", {}}};
    for (const auto& [script, buttons] : cases) {
        const HostRun run(onSettings(
            kWirelessCase, {},
            std::string(kToManual) + script + "wait 0.3\ndump left.json\nkey XF86Back\nexpect closed within 1\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(buttonsIn(run.dump("left.json")), buttons) << script;
        EXPECT_NE(focusIn(run.dump("left.json")), "nobody") << script;
    }
}

TEST(SettingsRevert, TheScreenMayBeOpenedAndLeftAgainAndAgain) {
    std::string script;
    for (int i = 0; i < 5; ++i) {
        script +=
            std::string(i % 2 == 0 ? kToManual : kToAutomatic) + (i % 2 == 0 ? "click \"OK\"\n" : "key XF86Back\n");
        script +=
            "expect \"network and the internet are ready\" within 20\nwait 0.1\nkey Right\nkey Return\nwait 0.3\n";
    }
    const HostRun run(onSettings(kWiredCase, {}, script + "dump end.json\nkey Menu\nexpect closed within 1\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(valuesIn(run.dump("end.json"))[0], kManualText);
}

}  // namespace
