// Every verdict end to end: message, advice, pictures, panel, buttons and focus.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "status_screen.h"

namespace {

constexpr const char* kMac = "02:00:5E:10:00:01";
constexpr const char* kCableAdvice = "Check that the network cable is connected to the TV and to the router.";

struct Verdict {
    const char* network;
    const char* advice;
    const char* picture;
    const char* mark;
    Texts panel;
    Texts buttons = kFullRow;
};

Texts panel(const char* mac, const char* address, const char* prefix, const char* gateway, const char* dns) {
    return {mac, address, prefix, gateway, dns};
}

const Texts kLive = panel(kMac, "2001:db8:1::10", "64", "fe80::1", "2001:db8:1::53");
const Texts kNothing = panel(kMac, "::", "0", "::", "::");

const Verdict kFailures[] = {
    {"mac-all-zero", kMacAdvice, kNoGatewayPicture, kErrorMark, panel("00:00:00:00:00:00", "::", "0", "::", "::"),
     kRowWithoutSettings},
    {"mac-all-ones", kMacAdvice, kNoInternetPicture, "", panel("FF:FF:FF:FF:FF:FF", "::", "0", "::", "::"),
     kRowWithoutSettings},
    {"mac-unreadable", kMacAdvice, kNoGatewayPicture, kErrorMark, panel("00:00:00:00:00:00", "::", "0", "::", "::"),
     kRowWithoutSettings},
    {"cable-down", kCableAdvice, kNoCablePicture, "", kNothing},
    {"pulled-in-stage-one", kCableAdvice, kNoCablePicture, "", kNothing},
    {"pulled-in-stage-two", kCableAdvice, kNoCablePicture, "", kLive},
    {"no-address", kFailed, kNoGatewayPicture, kErrorMark, kNothing},
    {"internet-down", kNoInternetAdvice, kNoInternetPicture, "", kLive},
    {"internet-refused", kNoInternetAdvice, kNoInternetPicture, "", kLive},
    {"gateway-down", kFailed, kNoGatewayPicture, kErrorMark, kLive},
    {"gateway-refused", kFailed, kNoGatewayPicture, kErrorMark, kLive},
};

TEST(Verdict, TellsWhatWentWrong) {
    for (const Verdict& verdict : kFailures) {
        const HostRun run(
            {.network = scenario(verdict.network),
             .script = std::string("expect \"") + kFailed + "\" within 20\nwait 0.1\ndump end.json\nquit\n"});
        ASSERT_TRUE(run.succeeded()) << verdict.network << '\n' << run;
        const nlohmann::json dump = run.dump("end.json");
        EXPECT_EQ(textIn(dump, kAdvicePart), verdict.advice) << verdict.network;
        EXPECT_EQ(pictureIn(dump, kVerdictPart), verdict.picture) << verdict.network;
        EXPECT_EQ(pictureIn(dump, kStatusPart), "") << verdict.network;
        EXPECT_EQ(pictureIn(dump, kErrorMarkPart), verdict.mark) << verdict.network;
        EXPECT_EQ(panelIn(dump), verdict.panel) << verdict.network;
        EXPECT_EQ(buttonsIn(dump), verdict.buttons) << verdict.network;
        EXPECT_EQ(focusIn(dump), "Close") << verdict.network;
    }
}

TEST(Verdict, OfSuccessLeavesThePanelAlone) {
    for (const char* network : {"success", "two-profiles", "ethernet-deactivated", "late-address"}) {
        const HostRun run({.network = scenario(network), .script = "wait 15\ndump end.json\nquit\n"});
        ASSERT_TRUE(run.succeeded()) << network << '\n' << run;
        const nlohmann::json dump = run.dump("end.json");
        if (std::string(network) == "ethernet-deactivated") {
            EXPECT_EQ(textIn(dump, kAdvicePart), kCableAdvice) << "a port that is switched off counts as unplugged";
            continue;
        }
        EXPECT_EQ(textIn(dump, kMessagePart), kReady) << network;
        EXPECT_EQ(textIn(dump, kAdvicePart),
                  "If an online service still does not work, contact your internet service provider.");
        EXPECT_EQ(pictureIn(dump, kStatusPart), "network_popup_connect_6.png") << network;
        EXPECT_EQ(panelIn(dump), kBlankPanel) << network;
        EXPECT_EQ(buttonsIn(dump), kFullRow) << network;
    }
}

TEST(Verdict, NormalisesWhatThePlatformSays) {
    constexpr const char* kUnchecked = R"({"description": "long forms", "unchecked": true,
      "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01", "link": "up"}],
      "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "live": {
        "address": "0000:0000:0000:0000:0000:0000:0000:0000", "prefixLength": 129,
        "gateway": "0000:0000:0000:0000:0000:0000:0000:0000", "dns": ["0000:0000:0000:0000:0000:0000:0000:0000"]}}],
      "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})";
    const HostRun run({.network = kUnchecked, .script = "wait 5\ndump end.json\nquit\n"});
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(panelIn(run.dump("end.json")), kNothing);
}

TEST(Verdict, ShowsTextsFromOutsideAsTheyAreAndWithinTheirFields) {
    const std::string longText(5000, 'x');
    const std::string markup = "<b>&amp;</b>%s%n\\u202e";
    const std::string network = R"({"description": "hostile", "unchecked": true,
      "interfaces": [{"kind": "ethernet", "mac": ")" +
                                longText + R"(", "link": "up"}],
      "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "live": {
        "address": ")" + markup +
                                R"(", "prefixLength": 255, "gateway": ")" + longText + R"(", "dns": ["<br/>"]}}],
      "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})";
    const HostRun run({.network = network, .script = "wait 5\ndump end.json\nquit\n", .arguments = {"--log", "debug"}});
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(panelIn(run.dump("end.json")),
              (Texts{longText.substr(0, 31), "<b>&amp;</b>%s%n\u202e", "255", longText.substr(0, 39), "<br/>"}));
}

TEST(Verdict, WearsTheHighContrastLookAndTheUsersLanguageFallsBackToEnglish) {
    for (const char* language : {"en", "xx", ""}) {
        const HostRun run({.network = scenario("internet-down"),
                           .store = {{"db/menu/system/accessibility/highcontrast", 1}},
                           .script = "expect \"Close\" within 20\ndump end.json\nquit\n",
                           .environment = {{"LANGUAGE", language}, {"LC_ALL", "C"}},
                           .arguments = {"--log", "debug"}});
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(textIn(run.dump("end.json"), kMessagePart), kFailed) << language;
        EXPECT_NE(run.errors().find("High Contrast mode enabled"), std::string::npos);
    }
}

}  // namespace
