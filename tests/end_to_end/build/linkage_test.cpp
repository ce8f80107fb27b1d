// The dynamic symbols, so that a platform of another maker can stand in for ours, and the hardening of what is linked.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>

#include "tool_output.h"

namespace {

using Names = std::set<std::string>;

const std::regex kBoundary("^(ug_|vconf_|connection_|wifi_|vc_elm_|__dlog_print).*");

Names symbols(const std::string& options, const std::string& file) {
    const ToolOutput output = runTool(NM " -j " + options + " '" + file + "'");
    EXPECT_EQ(output.status, 0) << file;
    return {output.lines.begin(), output.lines.end()};
}

Names matching(const Names& names, const std::regex& pattern) {
    Names found;
    std::ranges::copy_if(names, std::inserter(found, found.end()),
                         [&](const std::string& name) { return std::regex_search(name, pattern); });
    return found;
}

// Whether a line of what readelf says of the file has the one text, and, where it is given, lacks the other.
bool readelfSays(const std::string& options, const std::string& file, const std::string& text,
                 const std::string& absent = {}) {
    const ToolOutput output = runTool(READELF " -W " + options + " '" + file + "'");
    EXPECT_EQ(output.status, 0) << file;
    return std::ranges::any_of(output.lines, [&](const std::string& line) {
        return line.find(text) != std::string::npos && (absent.empty() || line.find(absent) == std::string::npos);
    });
}

TEST(Linkage, TheModuleExportsItsTwoEntriesOnly) {
    EXPECT_EQ(symbols("-D --defined-only", MODULE_FILE), (Names{"UG_MODULE_INIT", "UG_MODULE_EXIT"}));
}

TEST(Linkage, ThePlatformOffersAllThatTheModuleCalls) {
    const Names called = matching(symbols("-D --undefined-only", MODULE_FILE), kBoundary);
    const Names offered = symbols("-D --defined-only", PLATFORM_FILE);
    EXPECT_TRUE(called.contains("__dlog_print")) << "the pattern finds nothing";
    for (const std::string& name : called)
        EXPECT_TRUE(offered.contains(name)) << name;
}

TEST(Linkage, NothingOfThePlatformIsInsideTheModule) {
    const std::regex ours("^_ZN?K?(5store|7logging|7network|4host)");
    const Names inside = symbols("--defined-only", MODULE_FILE);
    EXPECT_TRUE(inside.contains("UG_MODULE_INIT")) << "no symbol table";
    // Names of the gadget's own may look like the boundary's; what the platform offers is the platform's.
    for (const std::string& offered : matching(symbols("-D --defined-only", PLATFORM_FILE), kBoundary))
        EXPECT_FALSE(inside.contains(offered)) << offered;
    EXPECT_EQ(matching(inside, ours), Names{});
    EXPECT_NE(matching(symbols("--defined-only", PLATFORM_FILE), ours), Names{}) << "the pattern finds nothing";
    const ToolOutput dynamic = runTool(READELF " -d '" MODULE_FILE "'");
    ASSERT_EQ(dynamic.status, 0);
    for (const std::string& line : dynamic.lines)
        EXPECT_EQ(line.find("libgadget-platform"), std::string::npos) << line;
}

TEST(Linkage, EveryProductIsHardened) {
    for (const std::string file : {MODULE_FILE, PLATFORM_FILE, HOST_FILE}) {
        SCOPED_TRACE(file);
        EXPECT_TRUE(readelfSays("-h", file, "DYN (")) << "loaded at a fixed place";
        EXPECT_TRUE(readelfSays("-l", file, "GNU_RELRO")) << "the tables of the linker stay writable";
        EXPECT_TRUE(readelfSays("-d", file, "BIND_NOW")) << "the tables of the linker stay writable";
        EXPECT_TRUE(readelfSays("-l", file, "GNU_STACK", " RWE ")) << "the stack can be executed";
        const Names called = symbols("-D --undefined-only", file);
        EXPECT_EQ(matching(called, std::regex("^__stack_chk_fail")).size(), 1u);
        const bool hasCheckedCopies = !matching(called, std::regex("^__(?!stack).*_chk(@|$)")).empty();
        EXPECT_EQ(hasCheckedCopies, HAS_CHECKED_COPIES);
    }
}

}  // namespace
