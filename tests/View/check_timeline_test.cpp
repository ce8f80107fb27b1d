// The check of a wired connection tick by tick, by a clock that jumps from one timer to the next.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

struct Timeline {
    const char* what;
    const char* network;                // a shipped scenario
    std::vector<const char*> pictures;  // after each tick; the last one is the verdict's
    const char* message;                // after the last tick
    std::string before{};               // script lines that run at once
    std::string beforeTick3{};          // script lines that run between the second and the third tick
};

constexpr const char* k0 = "network_popup_connect_0.png";
constexpr const char* k1 = "network_popup_connect_1.png";
constexpr const char* k2 = "network_popup_connect_2.png";
constexpr const char* k3 = "network_popup_connect_3.png";
constexpr const char* k4 = "network_popup_connect_4.png";
constexpr const char* k5 = "network_popup_connect_5.png";
constexpr const char* k6 = "network_popup_connect_6.png";

// The address is read and the gateway asked on the seventh tick; an answer counts from the next tick on.
const Timeline kTimelines[] = {
    {"everything answers", "success", {k1, k2, k3, k0, k1, k2, k3, k0, k6}, kReady},
    {"the answers come at once",
     "success",
     {k1, k2, k3, k0, k1, k2, k3, k0, k6},
     kReady,
     "network gateway answer 0\nnetwork internet online 0\n"},
    {"the internet takes two seconds",
     "success",
     {k1, k2, k3, k0, k1, k2, k3, k0, k3, k4, k5, k6, k6},
     kReady,
     "network internet online 2.2\n"},
    {"the internet takes longer than its frames",
     "success",
     {k1, k2, k3, k0, k1, k2, k3, k0, k3, k4, k5, k6, k3, k4, kNoInternetPicture},
     kFailed,
     "network internet offline 3.2\n"},
    {"the gateway takes three seconds",
     "success",
     {k1, k2, k3, k0, k1, k2, k3, k0, k1, k2, k3, k0, k1, k2, k6},
     kReady,
     "network gateway answer 3.1\n"},
    {"the address is never valid", "no-address", {k1, k2, k3, k0, k1, k2, k0}, kFailed},
    {"the address comes just before it is read", "late-address", {k1, k2, k3, k0, k1, k2, k3, k0, k6}, kReady},
    {"the gateway check cannot be started", "gateway-refused", {k1, k2, k3, k0, k1, k2, k0}, kFailed},
    {"the gateway check starts at the second attempt", "gateway-retry", {k1, k2, k3, k0, k1, k2, k3, k0, k6}, kReady},
    {"the online check cannot be started",
     "internet-refused",
     {k1, k2, k3, k0, k1, k2, k3, k0, kNoInternetPicture},
     kFailed},
    {"the cable is out from the start", "cable-down", {kNoCablePicture}, kFailed},
    {"the cable is pulled in stage one", "success", {k1, k2, kNoCablePicture}, kFailed, "", "network unplug\n"},
    {"the cable is pulled in stage two",
     "pulled-in-stage-two",
     {k1, k2, k3, k0, k1, k2, k3, k0, k3, k4, kNoCablePicture},
     kFailed},
};

TEST(CheckTimeline, ShowsItsFramesAndEndsOnTheRightTick) {
    for (const Timeline& line : kTimelines) {
        std::string script =
            line.before + dumpTicks(static_cast<int>(line.pictures.size())) + "wait 0.1\ndump end.json\nquit\n";
        if (!line.beforeTick3.empty()) script.insert(script.find("wait 0.5\ndump tick3"), line.beforeTick3);
        const HostRun run({.network = scenario(line.network), .script = script});
        ASSERT_TRUE(run.succeeded()) << line.what << '\n' << run;
        for (std::size_t tick = 1; tick <= line.pictures.size(); ++tick) {
            const nlohmann::json dump = run.dump("tick" + std::to_string(tick) + ".json");
            const bool last = tick == line.pictures.size();
            const std::string running = pictureIn(dump, kStatusPart);
            EXPECT_EQ(running.empty() ? pictureIn(dump, kVerdictPart) : running, line.pictures[tick - 1])
                << line.what << ", tick " << tick;
            EXPECT_EQ(textIn(dump, kMessagePart), last ? line.message : kChecking) << line.what << ", tick " << tick;
            if (!last) {
                EXPECT_EQ(focusIn(dump), "Cancel") << line.what << ", tick " << tick;
            }
        }
        EXPECT_EQ(focusIn(run.dump("end.json")), "Close") << line.what;
    }
}

TEST(CheckTimeline, AsksTheGatewayOnceARun) {
    // The gateway stays silent, so every checking pass after the first would have a reason to ask again.
    const HostRun run(
        {.network = scenario("gateway-silent"), .script = "wait 20\nquit\n", .arguments = {"--log", "debug"}});
    ASSERT_TRUE(run.succeeded()) << run;
    std::size_t asked = 0;
    const std::string request = "connection_profile_check_gateway_async success";
    for (std::size_t at = run.errors().find(request); at != std::string::npos;
         at = run.errors().find(request, at + 1)) {
        ++asked;
    }
    EXPECT_EQ(asked, 1U);
}

}  // namespace
