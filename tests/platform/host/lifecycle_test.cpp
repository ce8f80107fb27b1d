// What a gadget sees of the host, in the order in which it comes.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "host_run.h"

namespace {

using Calls = std::vector<std::string>;

struct Recorded {
    std::string name;
    std::string behaviour;
    std::string script;
    int exitCode;
    Calls calls;
};

const std::vector<Recorded>& recorded() {
    static const std::vector<Recorded> list{
        {"Quit", "", "wait 1\nquit", 0, {"init", "create", "start", "destroy", "view gone", "exit"}},
        {"EndsLaterThanAsked",
         "asking",
         "expect closed within 2",
         0,
         {"init", "create", "start", "ask 0 0 -22 -22", "timer over", "destroy", "view gone", "exit"}},
        {"EndsEvenWhenAskedInCreate",
         "hasty",
         "expect closed within 1",
         0,
         {"init", "create", "ask 0 0 -22 -22", "start", "destroy", "view gone", "exit"}},
        {"PausesAndResumesInTurn",
         "",
         "resume\npause\npause\nresume\nresume\npause\nquit",
         0,
         {"init", "create", "start", "pause", "resume", "pause", "destroy", "view gone", "exit"}},
        {"EndsOnSignal",
         "terminated",
         "wait 2",
         0,
         {"init", "create", "start", "timer over", "destroy", "view gone", "exit"}},
        {"StaysLoadedForWhatItForgot",
         "forgetful",
         "quit",
         0,
         {"init", "create", "start", "destroy", "view gone", "exit", "forgotten widget gone"}},
        {"RefusedInit", "refusing", "", 6, {"init"}},
        {"NoView", "no-view", "", 7, {"init", "create", "destroy", "exit"}},
    };
    return list;
}

Calls callsOf(const HostRun& run) {
    Calls calls;
    std::ifstream file(run.file("calls"));
    for (std::string line; std::getline(file, line);)
        calls.push_back(line);
    return calls;
}

class Lifecycle : public testing::TestWithParam<Recorded> {};

TEST_P(Lifecycle, CallsEachOnceAndInOrder) {
    const Recorded& expected = GetParam();
    const HostRun run({.script = expected.script,
                       .environment = {{"RECORDER", expected.behaviour}},
                       .module = HOST_TEST_MODULES "recorder.so"});
    EXPECT_EQ(run.exitCode(), expected.exitCode) << run;
    EXPECT_EQ(callsOf(run), expected.calls) << run;
}

INSTANTIATE_TEST_SUITE_P(Table, Lifecycle, testing::ValuesIn(recorded()),
                         [](const auto& row) { return row.param.name; });

struct Language {
    std::string name;
    std::vector<std::pair<std::string, std::string>> environment;
    std::string locale;  // locale and LANGUAGE as the gadget finds them
};

class Languages : public testing::TestWithParam<Language> {};

TEST_P(Languages, FallBackToEnglishWithoutInstalledLocales) {
    HostSetup setup{.script = "quit", .module = HOST_TEST_MODULES "recorder.so"};
    setup.environment = GetParam().environment;
    setup.environment.emplace_back("RECORDER", "language");
    const HostRun run(setup);
    const Calls calls = callsOf(run);
    ASSERT_GT(calls.size(), 2U) << run;
    EXPECT_EQ(calls[2], GetParam().locale) << run;
}

INSTANTIATE_TEST_SUITE_P(Table, Languages,
                         testing::Values(Language{"Nothing", {{"LC_ALL", ""}, {"LANGUAGE", ""}}, "C.UTF-8 en"},
                                         Language{"Posix", {{"LC_ALL", "POSIX"}, {"LANGUAGE", ""}}, "C.UTF-8 en"},
                                         Language{"NotInstalled",
                                                  {{"LC_ALL", ""}, {"LANG", "xx_YY.UTF-8@z"}, {"LANGUAGE", ""}},
                                                  "C.UTF-8 xx_YY:en"},
                                         Language{
                                             "Wished", {{"LC_ALL", "C"}, {"LANGUAGE", "ko:de"}}, "C.UTF-8 ko:de:en"},
                                         Language{"EnglishKeepsItsPlace", {{"LANGUAGE", "en:ko"}}, "C.UTF-8 en:ko"}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
