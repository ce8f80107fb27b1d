// The check tick by tick, by a clock that jumps from one timer to the next.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

struct Timeline {
    const char* network;
    std::vector<int> frames;  // after each tick until the verdict's
    bool ready;
    const char* before = "";  // script lines that run at once
};

// Wired, the address is read and the gateway asked on the seventh tick; wireless, on the eleventh. An answer counts
// from the next tick on.
const Timeline kTimelines[] = {
    {"success", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0}, true, "network gateway answer 0\nnetwork internet online 0\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4, 5, 6}, true, "network internet online 2.2\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4, 5, 6, 3, 4}, false, "network internet offline 3.2\n"},
    {"success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, true, "network gateway answer 3.1\n"},
    {"no-address", {1, 2, 3, 0, 1, 2}, false},
    {"late-address", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"gateway-refused", {1, 2, 3, 0, 1, 2}, false},
    {"gateway-retry", {1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"internet-refused", {1, 2, 3, 0, 1, 2, 3, 0}, false},
    {"cable-down", {}, false},
    {"pulled-in-stage-one", {1, 2, 3, 0}, false},
    {"pulled-in-stage-two", {1, 2, 3, 0, 1, 2, 3, 0, 3, 4}, false},
    {"wifi-success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"wifi-success", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, true, "network gateway answer 1.2\n"},
    {"wifi-success",
     {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0},
     true,
     "network fault wifi_ap_check_gateway6_async OPERATION_FAILED 1\n"},
    {"wifi-late-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0}, true},
    {"wifi-no-address", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
    {"wifi-association-lost", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
    {"wifi-off", {1, 2, 3, 0, 1, 2, 3, 0, 1, 2}, false},
};

std::string dumpTicks(std::size_t count) {
    std::string script = "wait 0.01\n";
    for (std::size_t tick = 1; tick <= count; ++tick)
        script += "wait 0.5\ndump tick" + std::to_string(tick) + ".json\n";
    return script;
}

TEST(CheckTimeline, ShowsItsFramesAndEndsOnTheRightTick) {
    for (const Timeline& line : kTimelines) {
        SCOPED_TRACE(std::string(line.network) + ", " + line.before);
        const std::size_t last = line.frames.size() + 1;
        const HostRun run(
            onNetwork(line.network, line.before + dumpTicks(last) + "wait 0.1\nexpect focus \"Close\"\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        for (std::size_t tick = 1; tick < last; ++tick) {
            const nlohmann::json dump = run.dump("tick" + std::to_string(tick) + ".json");
            const std::string frame = "network_popup_connect_" + std::to_string(line.frames[tick - 1]) + ".png";
            EXPECT_EQ(pictureIn(dump, kStatusPart), frame) << "tick " << tick;
            EXPECT_EQ(textIn(dump, kMessagePart), checking(line.network)) << "tick " << tick;
            EXPECT_EQ(focusIn(dump), "Cancel") << "tick " << tick;
        }
        const nlohmann::json end = run.dump("tick" + std::to_string(last) + ".json");
        EXPECT_EQ(textIn(end, kMessagePart), line.ready ? ready(line.network) : failed(line.network));
    }
}

TEST(CheckTimeline, AsksTheGatewayOnceOrOnEveryWirelessPass) {
    const struct {
        const char* network;
        const char* request;
        int times;  // wireless, at 5.5 s and every two seconds from then on; more than are ever kept waiting at once
    } cases[] = {{"gateway-silent", "connection_profile_check_gateway_async success", 1},
                 {"wifi-gateway-silent", "Async check gateway request success", 23}};
    for (const auto& [network, request, times] : cases) {
        HostSetup setup = onNetwork(network, "wait 50\nquit\n");
        setup.arguments = {"--log", "debug"};
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        int asked = 0;
        for (std::size_t at = 0; (at = run.errors().find(request, at)) != std::string::npos; ++at)
            ++asked;
        EXPECT_EQ(asked, times) << network;
    }
}

}  // namespace
