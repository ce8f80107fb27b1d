// Scripts: what is wrong with a line, what fails, and what time it is.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host_run.h"

namespace {

HostSetup withScreen(const std::string& script) {
    return {.script = script, .environment = {{"SCREEN_TICKS", "1"}}, .module = HOST_TEST_MODULES "screen.so"};
}

struct WrongLine {
    std::string line;
    int column;
    std::string reason;
};

TEST(Script, NamesThePlaceOfAWrongLineBeforeAnythingRuns) {
    const std::vector<WrongLine> lines{
        {"dance", 1, "unknown command 'dance'"},
        {"\"key\" Up", 1, "unknown command"},
        {"  key", 6, "the key's name is missing"},
        {"key Up Down", 8, "'Down' is too much"},
        {"wait soon", 6, "'soon' is not a number"},
        {"wait -1", 6, "from 0 to 86400"},
        {"wait nan", 6, "is not a number"},
        {"expect \"Close", 8, "quote is not closed"},
        {"expect Clo\"se\"", 8, "inside a word"},
        {"expect \"\"", 8, "the text is empty"},
        {"expect \"a\" within", 18, "a number of seconds is missing"},
        {"expect \"a\" until 3", 12, "'until' is too much"},
        {"expect picture a.png in", 24, "the part's name is missing"},
        {"resize 12x12", 8, "is not a size"},
        {"click at 12", 12, "how far down is missing"},
        {"click at 12 -1", 13, "is not a number of pixels from 0 to 7680"},
        {"try", 4, "the command is missing"},
        {"try dance", 5, "unknown command 'dance'"},
        {"set-store db/key", 17, "the value is missing"},
    };
    for (const WrongLine& wrong : lines) {
        const HostRun run(withScreen("# first\ndump early.json\n" + wrong.line + "\n"));
        const std::string place = "script.tour:3:" + std::to_string(wrong.column) + ": ";
        EXPECT_EQ(run.exitCode(), 11) << wrong.line;
        EXPECT_NE(run.errors().find(place), std::string::npos) << wrong.line << '\n' << run;
        EXPECT_NE(run.errors().find(wrong.reason), std::string::npos) << wrong.line << '\n' << run;
        EXPECT_FALSE(exists(run.file("early.json")));
    }
}

struct Failing {
    std::string name;
    std::string script;
    std::string says;
};

class Expectations : public testing::TestWithParam<Failing> {};

TEST_P(Expectations, FailWithWhatStoodThere) {
    const HostRun run(withScreen(GetParam().script));
    EXPECT_EQ(run.exitCode(), 12) << run;
    EXPECT_NE(run.errors().find(GetParam().says), std::string::npos) << run;
}

INSTANTIATE_TEST_SUITE_P(
    Table, Expectations,
    testing::Values(Failing{"Text", "expect \"Nowhere\" within 3", "not on the screen"},
                    Failing{"PartOfAText", "wait 0.2\nexpect exactly \"Fish\"", "not on the screen"},
                    Failing{"ConcealedText", "wait 2\nexpect \"Never seen\"", "not on the screen"},
                    Failing{"StillThere", "wait 0.2\nexpect-gone \"Leave\" within 1", "still there: \"Leave\""},
                    Failing{"OtherPicture", "wait 2\nexpect picture blue.png", "there is red.png"},
                    Failing{"OtherPart", "wait 2\nexpect picture red.png in PartMain:list", "no picture there"},
                    Failing{"Focus", "wait 0.2\nexpect focus \"Disabled\" within 1", "the focus is on \"Leave\""},
                    Failing{"NotClosed", "expect closed within 5", "the gadget is open"},
                    Failing{"Closed", "click \"Leave\" within 1\nexpect closed within 1\nexpect \"Leave\" within 9",
                            "the gadget has closed"},
                    Failing{"ClickNowhere", "click \"Nowhere\"", "not on the screen"},
                    Failing{"Store", "set-store a/b \"x\"\nexpect-store a/b \"y\"", "\"x\""},
                    Failing{"StoreType", "set-store a/b \"1\"\nexpect-store a/b 1", "no number there"},
                    Failing{"Network", "network dance", "dance"},
                    Failing{"Folder", "shot /nowhere/a.png", "/nowhere/a.png"}),
    [](const auto& row) { return row.param.name; });

TEST(Script, CarriesOutWhatItSays) {
    const HostRun run(withScreen(R"(
        expect focus "Leave" within 1       # quoted words keep blanks
        expect "Title \"quoted\"" within 0
    )"));
    EXPECT_EQ(run.exitCode(), 12);
    EXPECT_NE(run.errors().find("expect \"Title \\\"quoted\\\"\""), std::string::npos) << run;
    EXPECT_NE(run.transcript().find("text: \"Title & more\""), std::string::npos) << run;
}

TEST(Script, GoesOnAfterAFailedTryAndOpensAgain) {
    const HostRun run(withScreen(R"(
        wait 0.2
        expect sane
        click at 0 0
        try click "Nowhere"
        click "Leave"
        expect closed within 1
        try key Left
        expect sane
        open
        expect open
        expect focus "Leave" within 1
        quit
    )"));
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_NE(run.transcript().find("try click \"Nowhere\"  -> not done: not on the screen"), std::string::npos) << run;
}

TEST(Script, ReadsStandardInput) {
    HostSetup setup = withScreen("");
    setup.arguments = {"--script", "-"};
    setup.input = "set-store a/text \"two words\"\nset-store a/number 42\nlog \"no line end\"";
    const HostRun run(setup);
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(run.storedText("a/text"), "two words");
    EXPECT_EQ(run.storedNumber("a/number"), 42);
}

TEST(Script, StopsAtAWrongLineOfStandardInput) {
    HostSetup setup = withScreen("");
    setup.arguments = {"--script", "-"};
    setup.input = "log \"a\"\nwait\n";
    const HostRun run(setup);
    EXPECT_EQ(run.exitCode(), 11) << run;
    EXPECT_NE(run.errors().find("standard input:2:5: "), std::string::npos) << run;
}

TEST(Clock, LandsAfterTheTimersOfTheSameInstant) {
    const HostRun run(withScreen(R"(
        expect "Fish" within 0.2
        wait 0.5
        expect exactly "tick 1"
        wait 0.5
        expect exactly "tick 2"
        wait 58.5
        expect exactly "tick 119"
        wait 0.5
        expect exactly "tick 120"
        quit
    )"));
    EXPECT_TRUE(run.succeeded()) << run;
}

TEST(Clock, GivesEveryRunTheSameTimes) {
    const auto commands = [](const HostRun& run) { return run.transcript().substr(run.transcript().find('\n')); };
    const std::string script = "expect \"tick 7\" within 9\nkey Left\nclick \"Leave\"\nexpect closed within 1";
    const HostRun first(withScreen(script));
    const HostRun second(withScreen(script));
    EXPECT_TRUE(first.succeeded()) << first;
    EXPECT_EQ(commands(first), commands(second));
}

}  // namespace
