// Each way to fail has its own code and one line that says what is wrong.
#include "host/exit_codes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host_run.h"

namespace {

struct Failure {
    std::string name;
    HostSetup setup;
    int exitCode;
    std::string says;
};

HostSetup with(std::vector<std::string> arguments) {
    return {.arguments = std::move(arguments)};
}
HostSetup withModule(const std::string& file) {
    return {.module = HOST_TEST_MODULES + file};
}
HostSetup withRecorder(const std::string& behaviour) {
    return {.environment = {{"RECORDER", behaviour}}, .module = HOST_TEST_MODULES "recorder.so"};
}

const std::vector<Failure>& failures() {
    static const std::vector<Failure> list{
        {"UnknownOption", with({"--colour"}), host::kExitUsage, "--colour"},
        {"ExtraArgument", with({"more"}), host::kExitUsage, "unexpected argument more"},
        {"SizeWithoutCross", with({"--size", "1080"}), host::kExitUsage, "--size 1080"},
        {"SizeTooSmall", with({"--size", "319x320"}), host::kExitUsage, "each side from 320"},
        {"SizeWithTail", with({"--size", "640x480p"}), host::kExitUsage, "640x480p"},
        {"LogLevel", with({"--log", "loud"}), host::kExitUsage, "loud"},
        {"ModuleMissing", withModule("none.so"), host::kExitModuleMissing, "none.so"},
        {"NotALibrary", withModule("red.png"), host::kExitModuleNotLoadable, "red.png"},
        {"NoExit", withModule("no_exit.so"), host::kExitEntryMissing, "UG_MODULE_EXIT"},
        {"InitRefuses", withRecorder("refusing"), host::kExitInitRefused, "returned -1"},
        {"NoView", withRecorder("no-view"), host::kExitNoView, "no view"},
        {"NoDisplay",
         {.environment = {{"ELM_DISPLAY", ""}, {"ELM_ENGINE", ""}}, .module = HOST_TEST_MODULES "recorder.so"},
         host::kExitNoDisplay,
         "no display"},
        {"NoScenario", {.network = "/nowhere/network.json"}, host::kExitNetwork, "/nowhere/network.json"},
        {"NetworkKind", with({"--network", "pigeons"}), host::kExitNetwork, "pigeons"},
        {"StoreIsAFolder", with({"--store", "/proc"}), host::kExitStore, "/proc"},
        {"ScriptMissing", with({"--script", "/nowhere/a.tour"}), host::kExitScript, "/nowhere/a.tour"},
    };
    return list;
}

class ExitCodes : public testing::TestWithParam<Failure> {};

TEST_P(ExitCodes, SayWhatIsWrong) {
    const HostRun run(GetParam().setup);
    EXPECT_EQ(run.exitCode(), GetParam().exitCode) << run;
    EXPECT_NE(run.errors().find(GetParam().says), std::string::npos) << run;
}

INSTANTIATE_TEST_SUITE_P(Table, ExitCodes, testing::ValuesIn(failures()),
                         [](const auto& row) { return row.param.name; });

TEST(Help, ListsEveryExitCode) {
    const HostRun run(with({"--help"}));
    EXPECT_TRUE(run.succeeded()) << run;
    for (const host::ExitText& row : host::kExitTexts) {
        const std::string line = std::to_string(row.code) + "  " + std::string(row.text);
        EXPECT_NE(run.transcript().find(line), std::string::npos) << line;
    }
}

}  // namespace
