// Which row of the settings screen looks focused: the toolkit can have the focus right and the light wrong.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "picture.h"
#include "settings_screen.h"

namespace {

constexpr const char* kRowLabels[] = {"IP settings", "IP address",   "Prefix length",
                                      "Gateway",     "DNS settings", "DNS server"};

// The lit rows from above, by the light ground between label and value in a picture of half the design's size.
Texts litIn(const Picture& picture) {
    constexpr unsigned kBetween = 480, kFirst = 166, kStep = 44;
    Texts lit;
    for (unsigned row = 0; row < std::size(kRowLabels); ++row) {
        if (picture.at(kBetween, kFirst + kStep * row)[0] > 200) lit.emplace_back(kRowLabels[row]);
    }
    return lit;
}

// Ways, each with the row that alone is lit at its end; they follow each other on the manual settings screen.
constexpr std::pair<const char*, const char*> kWays[] = {
    {"", "IP settings"},
    {"key Return\nwait 0.3\nkey XF86Back\nwait 0.3\n", "IP settings"},
    {"key Return\nwait 0.3\nkey Return\nwait 0.3\n", "IP settings"},
    {"key Return\nwait 0.3\nclick \"OK\"\nwait 0.3\n", "IP settings"},
    {"click \"IP address\"\nwait 0.3\nkey XF86Back\nwait 0.3\nclick \"OK\"\nwait 0.3\n", "IP address"},
    {"key Return\nwait 0.3\nkey Return\nwait 0.3\n", "IP address"},
    {"key Down\nwait 0.3\n", "Prefix length"},
    {"key Return\nwait 0.3\nkey 4\nkey Return\nwait 0.3\n", "Prefix length"},
    {"key Return\nwait 0.3\nkey 5\nkey XF86Back\nwait 0.3\n", "Prefix length"},
    {"click \"DNS server\"\nwait 0.3\nclick \"Done\"\nwait 0.3\n", "DNS server"},
    {"key Down\nwait 0.3\n", ""},  // a button has the focus
    {"key Up\nwait 0.3\n", "DNS server"},
};

TEST(LitRow, IsTheFocusedOneAfterEveryWayBack) {
    std::string script;
    for (std::size_t i = 0; i < std::size(kWays); ++i)
        script += kWays[i].first + ("shot " + std::to_string(i) + ".png\n");
    for (const int highContrast : {0, 1}) {
        HostSetup setup = onSettings(kWiredCase, {kManual, kManual}, "wait 0.3\n" + script + "quit\n");
        setup.store.emplace_back("db/menu/system/accessibility/highcontrast", highContrast);
        setup.size = "960x540";
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        for (std::size_t i = 0; i < std::size(kWays); ++i) {
            const std::string expected = kWays[i].second;
            EXPECT_EQ(litIn(Picture(run.file(std::to_string(i) + ".png"))),
                      expected.empty() ? Texts{} : Texts{expected})
                << "way " << i << ", high contrast " << highContrast;
        }
    }
}

}  // namespace
