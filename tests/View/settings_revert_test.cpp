// Leaving the settings screen without a confirmation: the network is put back to what the store holds, exactly.
#include <gtest/gtest.h>

#include <random>

#include "settings_screen.h"

namespace {

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
            script += selectRow(2) + "key 4\nkey 8\nkey Return\nwait 0.2\nkey Up\nkey Up\n";
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
