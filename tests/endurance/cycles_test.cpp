// Opening and closing over and over: nothing is left behind, and the heap grows no faster than the toolkit lets it.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "endurance_run.h"

namespace {

constexpr double kAllowedBytes = 64;   // for each cycle, above what the toolkit alone loses
constexpr int kCyclesThatCount = 500;  // with fewer of them, what is kept for reuse hides the slope

constexpr const char* kMenu = "key Menu\nexpect closed within 1\n";
constexpr const char* kToVerdict = "expect exactly \"Close\" within 20\n";
constexpr const char* kToSettings = "click exactly \"IPv6 settings\"\nwait 0.3\n";
constexpr const char* kToManual = "key Return\nwait 0.2\nkey Down\nkey Return\nwait 0.2\n";
constexpr const char* kToKeyboard = "click \"IP address\"\nwait 0.3\nexpect exactly \"Done\"\n";

// The control program deletes its popups without a thought for the focus.
constexpr const char* kControlsFocus = "_manager_in_chain_set() safety check failed";

// What is opened before it is all closed again. The control program has no modes.
struct Cycle {
    const char* name;
    std::vector<const char*> control;
    std::vector<const char*> gadget;
};
const Cycle kCycles[] = {
    {"opened", {"wait 0.3\n"}, {"wait 0.3\n"}},
    {"checked", {kToVerdict}, {kToVerdict}},
    {"all screens", {kToVerdict, kToSettings, kToKeyboard}, {kToVerdict, kToSettings, kToManual, kToKeyboard}},
};

std::string joined(const std::vector<const char*>& steps) {
    std::string script = "open\n";
    for (const char* step : steps)
        script += step;
    return script + kMenu;
}

// Reports after a tenth of the cycles, when all caches are filled, and at the end.
std::vector<nlohmann::json> play(const std::string& screens, int cycles, const char* module,
                                 const std::vector<std::string>& allowed = {}) {
    std::string script;
    for (int i = 1; i <= cycles; ++i) {
        script += screens;
        if (i == cycles / 10 || i == cycles) script += order("report", "cycles");
    }
    const EnduranceRun run(networks().front(), script, module, allowed);
    return run.reports();
}

double slope(const std::vector<nlohmann::json>& reports, int cycles) {
    const int counted = cycles - cycles / 10;
    return (reports.back()["heap"].get<double>() - reports.front()["heap"].get<double>()) / counted;
}

TEST(Cycles, LeaveNothingBehind) {
    const int cycles = std::max(10, 1000 / static_cast<int>(everyNth(100)));
    for (const Cycle& cycle : kCycles) {
        const std::vector<nlohmann::json> reports = play(joined(cycle.gadget), cycles, "");
        ASSERT_EQ(reports.size(), 2U);
        EXPECT_EQ(reports.back()["timers"], 0) << cycle.name;
        EXPECT_EQ(reports.back()["extensions"], 1) << cycle.name;
        for (const char* kind : {"threads", "descriptors"})
            EXPECT_EQ(reports.back()[kind], reports.front()[kind]) << cycle.name << ", " << kind;
        if (cycles < kCyclesThatCount) {
            std::cout << cycle.name << ": too few cycles to judge the slope\n";
            continue;
        }
        const std::vector<nlohmann::json> control =
            play(joined(cycle.control), cycles, ENDURANCE_CONTROL, {kControlsFocus});
        ASSERT_EQ(control.size(), 2U);
        const double bytes = slope(reports, cycles);
        const double toolkits = slope(control, cycles);
        std::cout << cycle.name << ": " << bytes << " bytes a cycle over " << cycles << " cycles, the toolkit alone "
                  << toolkits << '\n';
        EXPECT_LE(bytes, toolkits + kAllowedBytes) << cycle.name;
    }
}

}  // namespace
