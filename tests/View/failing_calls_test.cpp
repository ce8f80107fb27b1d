// Every call of the connection manager failing in turn: the documented default, flag or verdict, and a clean end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

constexpr const char* kMac = "02:00:5E:10:00:01";

struct Failure {
    const char* call;
    const char* message;
    Texts panel;  // of a failure verdict
    const char* result = "OPERATION_FAILED";
};

const Texts kLive{kMac, "2001:db8:1::10", "64", "fe80::1", "2001:db8:1::53"};
const Texts kDefaults{kMac, "::", "0", "::", "::"};
const Texts kNothing{"00:00:00:00:00:00", "::", "0", "::", "::"};

const Failure kFailures[] = {
    {"connection_create", kFailed, kNothing},
    {"connection_set_type_changed_cb", kReady, kBlankPanel},
    {"connection_get_ethernet_state", kFailed, kLive},
    {"connection_get_profile_iterator", kFailed, kDefaults},
    {"connection_profile_iterator_next", kFailed, kDefaults},
    {"connection_profile_get_type", kFailed, kDefaults},
    {"connection_profile_clone", kReady, kBlankPanel},
    {"connection_get_mac_address", kReady, kBlankPanel},
    {"connection_profile_get_ip_address", kFailed, {kMac, "::", "64", "fe80::1", "2001:db8:1::53"}},
    {"connection_profile_get_prefix_length", kReady, kBlankPanel},
    {"connection_profile_get_gateway_address", kReady, kBlankPanel},
    {"connection_profile_get_dns_address", kReady, kBlankPanel},
    {"connection_profile_check_gateway6_async", kFailed, kLive},
    {"connection_profile_check_gateway6_async", kFailed, kLive, "NO_CONNECTION"},
    {"connection_get_is_online_ipv6_async", kFailed, kLive},
    {"connection_unset_type_changed_cb", kReady, kBlankPanel},
    {"connection_unset_async_cb", kReady, kBlankPanel},
    {"connection_destroy", kReady, kBlankPanel},
    {"connection_destroy_profile_iterator", kReady, kBlankPanel},
    {"connection_profile_destroy", kReady, kBlankPanel},
};

TEST(FailingCalls, LeaveADefaultAFlagOrAVerdict) {
    for (const Failure& failure : kFailures) {
        const std::string network = R"({"description": "one call fails",
          "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01", "link": "up"}],
          "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "live": {
            "address": "2001:db8:1::10", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:1::53"]}}],
          "gateway": {"delay": 0.3, "result": "NONE"}, "internet": {"delay": 0.4, "result": "NONE"},
          "faults": [{"call": ")" + std::string(failure.call) +
                                    R"(", "result": ")" + failure.result + R"(", "times": "always"}]})";
        const HostRun run(
            {.network = network,
             .script = "expect \"Close\" within 20\nwait 0.1\ndump end.json\nkey Return\nexpect closed within 1\n"});
        ASSERT_TRUE(run.succeeded()) << failure.call << '\n' << run;
        const nlohmann::json dump = run.dump("end.json");
        EXPECT_EQ(textIn(dump, kMessagePart), failure.message) << failure.call;
        EXPECT_EQ(panelIn(dump), failure.panel) << failure.call;
    }
}

TEST(FailingCalls, DefaultsShowInThePanelOfACancelledCheck) {
    struct Case {
        const char* call;
        Texts panel;
    };
    const Case cases[] = {
        {"connection_get_mac_address", {"00:00:00:00:00:00", "2001:db8:1::10", "64", "fe80::1", "2001:db8:1::53"}},
        {"connection_profile_get_prefix_length", {kMac, "2001:db8:1::10", "0", "fe80::1", "2001:db8:1::53"}},
        {"connection_profile_get_gateway_address", {kMac, "2001:db8:1::10", "64", "::", "2001:db8:1::53"}},
        {"connection_profile_get_dns_address", {kMac, "2001:db8:1::10", "64", "fe80::1", "::"}},
    };
    for (const Case& example : cases) {
        const HostRun run({.script = std::string("network fault ") + example.call +
                                     " NO_REPLY always\nwait 1\nkey Return\nwait 0.1\ndump end.json\nquit\n"});
        ASSERT_TRUE(run.succeeded()) << example.call << '\n' << run;
        EXPECT_EQ(panelIn(run.dump("end.json")), example.panel) << example.call;
    }
}

TEST(FailingCalls, AStoreThatCannotBeOpenedLeavesAWorkingGadget) {
    // No store at all: the network type cannot be seeded either, so no check starts, and the gadget still closes.
    const HostRun run({.script = "expect \"Cancel\" within 2\nwait 5\nkey XF86Back\nexpect closed within 1\n",
                       .environment = {{"XDG_STATE_HOME", "/proc/nowhere"}},
                       .arguments = {"--store="}});
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_NE(run.errors().find("/proc/nowhere"), std::string::npos) << run.errors();
}

}  // namespace
