// Opening and closing over and over: nothing is left behind, and the heap grows no faster than the toolkit lets it.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "endurance_run.h"

namespace {

constexpr double kAllowedBytes = 64;   // for each cycle, above what the toolkit alone loses
constexpr int kCyclesThatCount = 500;  // with fewer of them, what is kept for reuse hides the slope

struct Cycle {
    const char* name;
    std::string module;  // empty: the gadget
    const char* screens;
};
const Cycle kCycles[] = {
    {"control", ENDURANCE_CONTROL, "open\nwait 0.3\nkey Menu\nexpect closed within 1\n"},
    {"opened", "", "open\nwait 0.3\nkey Menu\nexpect closed within 1\n"},
    {"checked", "", "open\nexpect exactly \"Close\" within 20\nkey Menu\nexpect closed within 1\n"},
    {"all screens", "",
     "open\nexpect exactly \"Close\" within 20\nclick exactly \"IPv6 settings\"\nwait 0.3\nkey Return\n"
     "wait 0.2\nkey Down\nkey Return\nwait 0.2\nclick \"IP address\"\nwait 0.3\nexpect exactly \"Done\"\nkey 2\nwait "
     "0.1\n"
     "key Menu\nexpect closed within 1\n"},
};

// Reports after a tenth of the cycles, when all caches are filled, and at the end.
std::vector<nlohmann::json> play(const Cycle& cycle, int cycles) {
    std::string script;
    for (int i = 1; i <= cycles; ++i) {
        script += cycle.screens;
        if (i == cycles / 10 || i == cycles) script += order("report", cycle.name);
    }
    const EnduranceRun run(networks().front(), script, cycle.module);
    return run.reports();
}

double slope(const std::vector<nlohmann::json>& reports, int cycles) {
    return (reports.back()["heap"].get<double>() - reports.front()["heap"].get<double>()) / (cycles - cycles / 10);
}

TEST(Cycles, LeaveNothingBehind) {
    const int cycles = 1000 / static_cast<int>(everyNth(100));
    double control = 0;
    for (const Cycle& cycle : kCycles) {
        if (!cycle.module.empty() && cycles < kCyclesThatCount) continue;
        const std::vector<nlohmann::json> reports = play(cycle, cycles);
        ASSERT_EQ(reports.size(), 2U);
        const double bytes = slope(reports, cycles);
        std::cout << cycle.name << ": " << bytes << " bytes a cycle over " << cycles << " cycles\n";
        if (cycle.module.empty() && cycles >= kCyclesThatCount) {
            EXPECT_LE(bytes, control + kAllowedBytes) << cycle.name;
        } else if (!cycle.module.empty()) {
            control = bytes;
        }
        EXPECT_EQ(reports.back()["timers"], 0) << cycle.name;
        EXPECT_EQ(reports.back()["extensions"], 1) << cycle.name;
        for (const char* kind : {"threads", "descriptors"})
            EXPECT_EQ(reports.back()[kind], reports.front()[kind]) << cycle.name << ", " << kind;
    }
}

}  // namespace
