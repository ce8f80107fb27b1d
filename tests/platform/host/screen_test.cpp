// What scripts, dumps and pictures make of the gadget's screen.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "host_run.h"
#include "picture.h"

namespace {

using nlohmann::json;

TEST(Dump, ShowsWhatIsSeenAndNothingElse) {
    const HostRun run({.script = "wait 6\ndump status.json\nclick \"IPv6 settings\"\nwait 1\ndump settings.json\n"
                                 "key Menu\nexpect closed within 1\ndump closed.json"});
    ASSERT_TRUE(run.succeeded()) << run;
    const json status = run.dump("status.json"), settings = run.dump("settings.json"), closed = run.dump("closed.json");
    EXPECT_EQ(status["gadget"], "open");
    EXPECT_EQ(status["focus"],
              (json{{"label", "Close"}, {"part", "PartMain:elm.swallow.stop"}, {"widget", "elm_button"}}));
    EXPECT_EQ(status["parts"]["PartMain:elm.text.title"]["text"], "IPv6 status");
    EXPECT_EQ(status["parts"]["PartMain:elm.swallow.status"]["picture"], "network_popup_connect_6.png");
    EXPECT_EQ(status["parts"]["PartMain:elm.swallow.retry"]["button"], "IPv6 settings");
    EXPECT_EQ(status["parts"]["elm.swallow.content"]["widget"], "elm_layout");
    EXPECT_FALSE(status["parts"].contains("PartMain:elm.swallow.status_unset"));
    EXPECT_EQ(status["popups"][0]["texts"][0], "IPv6 status");
    ASSERT_EQ(settings["buttons"].size(), 2U);  // those below are covered
    EXPECT_EQ(settings["buttons"][1]["part"], "button2");
    EXPECT_EQ(settings["buttons"][1]["focused"], false);
    EXPECT_EQ(settings["rows"][0],
              (json{{"disabled", false},
                    {"focused", true},
                    {"selected", false},
                    {"text", {{"elm.text", "IP settings"}, {"elm.text.1", "Obtain automatically"}}}}));
    EXPECT_EQ(settings["rows"][1]["disabled"], true);
    EXPECT_EQ(closed["gadget"], "closed");
    EXPECT_TRUE(closed["focus"].is_null());
    EXPECT_TRUE(closed["parts"].empty() && closed["buttons"].empty() && closed["popups"].empty()) << closed;
}

TEST(Picture, ShowsTheWholeWindowScaledWithItsHeight) {
    const HostRun run({.script = "resize 960x540\nwait 6\ndump small.json\nshot screen.png\nquit"});
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(run.dump("small.json")["buttons"][2]["geometry"], (json{602, 456, 220, 40}));
    const Picture picture(run.file("screen.png"));
    ASSERT_EQ(std::pair(picture.width, picture.height), std::pair(960U, 540U));
    const auto is = [&](unsigned x, unsigned y, auto expected) {
        const auto [red, green, blue] = picture.at(x, y);
        return expected(red, green, blue);
    };
    EXPECT_TRUE(is(2, 2, [](int red, int green, int blue) { return red < green && green < blue && blue < 60; }))
        << "the dark blue behind the gadget";
    EXPECT_TRUE(is(620, 476, [](int red, int green, int blue) { return red > 220 && green > 220 && blue > 220; }))
        << "the white of the focused button";
    EXPECT_TRUE(is(365, 290, [](int red, int green, int blue) { return red < blue && blue < green && green > 180; }))
        << "the green line to the router";
}

TEST(Script, GoesOnAfterAFailedTryAndOpensAgain) {
    const HostRun run({.script = R"(
        expect "Checking" within 1          # quoted words keep blanks
        expect focus "Close" within 10
        expect sane
        click at 0 0
        try click "Nowhere"
        click part PartMain:elm.swallow.stop
        expect closed within 1
        try key Left
        expect sane
        open
        expect open
        expect "Checking the \"wired\"" within 0
    )"});
    EXPECT_EQ(run.exitCode(), 12) << run;
    EXPECT_NE(run.transcript().find("try click \"Nowhere\"  -> not done: not on the screen"), std::string::npos) << run;
    EXPECT_NE(run.errors().find("expect \"Checking the \\\"wired\\\"\""), std::string::npos) << run;
    EXPECT_NE(run.transcript().find("text: \"Checking the wired"), std::string::npos) << run;
}

TEST(Script, ReadsStandardInputUntilAWrongLine) {
    HostSetup setup{.input = "set-store a/text \"two words\"\nset-store a/number 42\nlog \"no line end\"",
                    .arguments = {"--script", "-"}};
    const HostRun run(setup);
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(run.storedText("a/text"), "two words");
    EXPECT_EQ(run.storedNumber("a/number"), 42);
    setup.input = "log \"a\"\nwait\n";
    const HostRun wrong(setup);
    EXPECT_EQ(wrong.exitCode(), 11) << wrong;
    EXPECT_NE(wrong.errors().find("standard input:2:5: "), std::string::npos) << wrong;
}

TEST(Script, GivesEveryRunTheSameTimes) {
    const HostSetup setup{.script = "expect \"ready\" within 9\nkey Left\nclick \"Close\"\nexpect closed within 1"};
    const auto times = [](const HostRun& run) { return run.transcript().substr(run.transcript().find('\n')); };
    const HostRun first(setup), second(setup);
    EXPECT_TRUE(first.succeeded()) << first;
    EXPECT_EQ(times(first), times(second));
}

}  // namespace
