// The ways out: close keys in every state, the Close button, and the minute without input; and the teardown's order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

TEST(Closing, CloseKeysWorkInEveryStateAndOnEveryButton) {
    const std::string verdict = "expect \"Close\" within 20\nwait 0.1\n";
    const std::string states[] = {"",
                                  "wait 1.2\n",
                                  "wait 4.6\n",
                                  verdict,
                                  verdict + "key Left\nwait 0.1\n",
                                  verdict + "key Right\nwait 0.1\n",
                                  "wait 1\nkey Return\nwait 0.1\n"};
    for (const char* key : {"XF86Back", "Menu", "XF86Close", "Escape", "F10", "F4"}) {
        for (const std::string& state : states) {
            const HostRun run({.network = scenario("internet-down"),
                               .script = state + "key a\nkey 7\nkey " + key + "\nexpect closed within 1\n"});
            EXPECT_TRUE(run.succeeded()) << key << " after " << state << run;
        }
    }
}

TEST(Closing, AMinuteWithoutInputClosesTheVerdict) {
    // The verdict of a pulled cable comes at 0.5 s; that tick is the last activity.
    struct Case {
        const char* script;
        bool closes;
    };
    const Case cases[] = {
        {"wait 58\nexpect \"Close\"\nexpect closed within 4\n", true},
        {"wait 58\nkey a\nwait 57\nexpect \"Close\"\nexpect closed within 5\n", true},
        {"wait 58\nclick \"IPv6 status\"\nwait 57\nexpect \"Close\"\nexpect closed within 5\n", true},
    };
    for (const Case& example : cases) {
        const HostRun run({.network = scenario("cable-down"), .script = example.script});
        EXPECT_EQ(run.succeeded(), example.closes) << run;
    }
}

TEST(Closing, ARunningCheckKeepsTheGadgetOpen) {
    const HostRun run({.network = scenario("gateway-silent"),
                       .script = "wait 300\nexpect \"Cancel\"\nkey Return\nexpect closed within 65\n"});
    EXPECT_TRUE(run.succeeded()) << run;
}

// The functions that were entered, in order, from the first one named on.
std::vector<std::string> callsFrom(const std::string& log, const std::string& first) {
    std::vector<std::string> calls;
    for (std::size_t at = log.find("] START"); at != std::string::npos; at = log.find("] START", at + 1)) {
        const std::size_t lineStart = log.rfind('\n', at) + 1;
        const std::size_t nameStart = log.find(".cpp: ", lineStart) + 6;
        std::string name = log.substr(nameStart, log.find('(', nameStart) - nameStart);
        if (!calls.empty() || name == first) calls.push_back(std::move(name));
    }
    return calls;
}

TEST(Closing, TearsDownInOrder) {
    const std::vector<std::string> kWired{
        "_on_destroy",       "_clear_Timers",       "DestroyIPSettings",  "destroyIPSettings", "freeGlobalIPInfo",
        "deregister_client", "createNetworkStatus", "freeSNetworkStatus", "UG_MODULE_EXIT",    "freeSNetworkStatus"};
    for (const char* moment : {"wait 0.2\n", "wait 3.7\n", "wait 4.2\n", "wait 8\n"}) {
        const HostRun run({.network = scenario("success"),
                           .script = std::string(moment) + "key XF86Close\nexpect closed within 1\n",
                           .arguments = {"--log", "debug"}});
        ASSERT_TRUE(run.succeeded()) << run;
        std::vector<std::string> calls = callsFrom(run.errors(), "_on_destroy");
        std::erase_if(
            calls, [](const std::string& call) { return call.starts_with("convert") || call.starts_with("string_"); });
        EXPECT_EQ(calls, kWired) << "closed after " << moment;
    }
    const HostRun unknown({.network = scenario("success"),
                           .store = {{"db/menu/network/network_type", "Coax"}},
                           .script = "wait 1\nkey XF86Back\nexpect closed within 1\n",
                           .arguments = {"--log", "debug"}});
    EXPECT_NE(unknown.errors().find("Wrong Connection Type"), std::string::npos);
    EXPECT_EQ(callsFrom(unknown.errors(), "deregister_client").size(), 0U);
}

}  // namespace
