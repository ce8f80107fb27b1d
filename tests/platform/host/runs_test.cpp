// Whole runs of the host: how each ends, what it says, and what the module saw of it, in the order in which it came.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "host/exit_codes.h"
#include "host_run.h"

namespace {

using Texts = std::vector<std::string>;
using Environment = std::vector<std::pair<std::string, std::string>>;

struct Row {
    std::string name;
    HostSetup setup;
    int exitCode;
    std::string says;  // part of the standard error
    Texts calls{};     // of the recorder
};

HostSetup with(Texts arguments) {
    return {.arguments = std::move(arguments)};
}
HostSetup withModule(const std::string& file) {
    return {.module = file};
}
HostSetup recorder(const std::string& behaviour, const std::string& script = "", Environment environment = {}) {
    environment.emplace_back("RECORDER", behaviour);
    return {.script = script, .environment = environment, .module = HOST_TEST_MODULES "recorder.so"};
}
HostSetup speaking(const Environment& environment) {
    return recorder("language", "quit", environment);
}
HostSetup gadget(const std::string& script) {
    return {.script = script};
}

// The calls of a whole life, with more of them after the first or before the last.
Texts life(const Texts& begin, const Texts& end = {}) {
    Texts calls{"init", "create"};
    calls.insert(calls.end(), begin.begin(), begin.end());
    calls.insert(calls.end(), {"destroy", "view gone", "exit"});
    calls.insert(calls.end(), end.begin(), end.end());
    return calls;
}

const std::vector<Row>& rows() {
    static const std::string asked = "ask 0 0 -22 -22";
    static const std::vector<Row> list{
        {"UnknownOption", with({"--colour"}), host::kExitUsage, "--colour"},
        {"ExtraArgument", with({"more"}), host::kExitUsage, "unexpected argument more"},
        {"SizeWithoutCross", with({"--size", "1080"}), host::kExitUsage, "--size 1080"},
        {"SizeTooSmall", with({"--size", "319x320"}), host::kExitUsage, "each side from 320"},
        {"SizeWithTail", with({"--size", "640x480p"}), host::kExitUsage, "640x480p"},
        {"LogLevel", with({"--log", "loud"}), host::kExitUsage, "loud"},
        {"ModuleMissing", withModule("none.so"), host::kExitModuleMissing, "none.so"},
        {"NotALibrary", withModule(HOST_TEST_TEXT), host::kExitModuleNotLoadable, HOST_TEST_TEXT},
        {"NoExit", withModule(HOST_TEST_MODULES "no_exit.so"), host::kExitEntryMissing, "UG_MODULE_EXIT"},
        {"NoDisplay", recorder("", "", {{"ELM_DISPLAY", ""}, {"ELM_ENGINE", ""}}), host::kExitNoDisplay, "no display"},
        {"NoScenario", {.network = "/nowhere/network.json"}, host::kExitNetwork, "/nowhere/network.json"},
        {"NetworkKind", with({"--network", "pigeons"}), host::kExitNetwork, "pigeons"},
        {"StoreIsAFolder", with({"--store", "/proc"}), host::kExitStore, "/proc"},
        {"ScriptMissing", with({"--script", "/nowhere/a.tour"}), host::kExitScript, "/nowhere/a.tour"},

        {"RefusedInit", recorder("refusing"), host::kExitInitRefused, "returned -1", {"init"}},
        {"NoView", recorder("no-view"), host::kExitNoView, "no view", {"init", "create", "destroy", "exit"}},
        {"Quit", recorder("", "wait 1\nquit"), 0, "", life({"start"})},
        {"EndsLaterThanAsked", recorder("asking", "expect closed within 2"), 0, "",
         life({"start", asked, "timer over"})},
        {"EndsEvenWhenAskedInCreate", recorder("hasty", "expect closed within 1"), 0, "", life({asked, "start"})},
        {"PausesAndResumesInTurn", recorder("", "resume\npause\npause\nresume\nresume\npause\nquit"), 0, "",
         life({"start", "pause", "resume", "pause"})},
        {"EndsOnSignal", recorder("terminated", "wait 2"), 0, "", life({"start", "timer over"})},
        {"StaysLoadedForWhatItForgot", recorder("forgetful", "quit"), 0, "",
         life({"start"}, {"forgotten widget gone"})},

        {"NoLocale", speaking({{"LC_ALL", ""}, {"LANGUAGE", ""}}), 0, "", life({"C.UTF-8 en", "start"})},
        {"PosixLocale", speaking({{"LC_ALL", "POSIX"}, {"LANGUAGE", ""}}), 0, "", life({"C.UTF-8 en", "start"})},
        {"LocaleNotInstalled", speaking({{"LC_ALL", ""}, {"LANG", "xx_YY.UTF-8@z"}, {"LANGUAGE", ""}}), 0, "",
         life({"C.UTF-8 xx_YY:en", "start"})},
        {"LanguagesWished", speaking({{"LC_ALL", "C"}, {"LANGUAGE", "ko:de"}}), 0, "",
         life({"C.UTF-8 ko:de:en", "start"})},
        {"EnglishKeepsItsPlace", speaking({{"LANGUAGE", "en:ko"}}), 0, "", life({"C.UTF-8 en:ko", "start"})},

        {"NoFocus", recorder("", "expect sane"), host::kExitExpectation, "nothing has the focus", life({"start"})},
        {"Text", gadget("expect \"Nowhere\" within 3"), host::kExitExpectation, "not on the screen"},
        {"PartOfAText", gadget("wait 6\nexpect exactly \"Clos\""), host::kExitExpectation, "not on the screen"},
        {"StillThere", gadget("wait 6\nexpect-gone \"Close\" within 1"), host::kExitExpectation,
         "still there: \"Close\""},
        {"OtherPicture", gadget("wait 6\nexpect picture blue.png"), host::kExitExpectation, "there is network_popup"},
        {"OtherPart", gadget("wait 6\nexpect picture network_popup_connect_6.png in PartMain:elm.swallow.stop"),
         host::kExitExpectation, "no picture there"},
        {"Focus", gadget("wait 6\nexpect focus \"Retry\""), host::kExitExpectation, "the focus is on \"Close\""},
        {"NotClosed", gadget("expect closed within 5"), host::kExitExpectation, "the gadget is open"},
        {"Closed", gadget("wait 6\nclick \"Close\"\nexpect closed within 1\nexpect \"Close\" within 9"),
         host::kExitExpectation, "the gadget has closed"},
        {"ClickNowhere", gadget("click \"Nowhere\""), host::kExitExpectation, "not on the screen"},
        {"Store", gadget("set-store a/b \"x\"\nexpect-store a/b \"y\""), host::kExitExpectation, "\"x\""},
        {"StoreType", gadget("set-store a/b \"1\"\nexpect-store a/b 1"), host::kExitExpectation, "no number there"},
        {"Network", gadget("network dance"), host::kExitExpectation, "dance"},
        {"Folder", gadget("shot /nowhere/a.png"), host::kExitExpectation, "/nowhere/a.png"},
    };
    return list;
}

class Runs : public testing::TestWithParam<Row> {};

TEST_P(Runs, EndAsTheyShould) {
    const auto& [name, setup, exitCode, says, calls] = GetParam();
    const HostRun run(setup);
    EXPECT_EQ(run.exitCode(), exitCode) << run;
    EXPECT_NE(run.errors().find(says), std::string::npos) << run;
    Texts seen;
    std::ifstream file(run.file("calls"));
    for (std::string line; std::getline(file, line);)
        seen.push_back(line);
    EXPECT_EQ(seen, calls) << run;
}

INSTANTIATE_TEST_SUITE_P(Host, Runs, testing::ValuesIn(rows()), [](const auto& row) { return row.param.name; });

struct WrongLine {
    std::string line;
    int column;
    std::string reason;
};

TEST(Script, NamesThePlaceOfAWrongLineBeforeAnythingRuns) {
    const WrongLine kLines[] = {
        {"dance", 1, "unknown command 'dance'"},
        {"\"key\" Up", 1, "unknown command"},
        {"  key", 6, "the key's name is missing"},
        {"key Up Down", 8, "'Down' is too much"},
        {"wait soon", 6, "'soon' is not a number"},
        {"wait -1", 6, "from 0 to 86400"},
        {"expect \"Close", 8, "quote is not closed"},
        {"expect Clo\"se\"", 8, "inside a word"},
        {"expect \"\"", 8, "the text is empty"},
        {"expect \"a\" within", 18, "a number of seconds is missing"},
        {"resize 12x12", 8, "is not a size"},
        {"click at 12 -1", 13, "is not a number of pixels from 0 to 7680"},
        {"try dance", 5, "unknown command 'dance'"},
    };
    for (const auto& [line, column, reason] : kLines) {
        const HostRun run(recorder("", "# first\nlog \"early\"\n" + line + "\n"));
        EXPECT_EQ(run.exitCode(), host::kExitScript) << line;
        EXPECT_NE(run.errors().find("script.tour:3:" + std::to_string(column) + ": "), std::string::npos) << run;
        EXPECT_NE(run.errors().find(reason), std::string::npos) << run;
        EXPECT_FALSE(exists(run.file("calls"))) << line;
    }
}

// A bus that takes connections and never says a word.
class MuteBus {
  public:
    MuteBus() {
        address_.sun_family = AF_UNIX;
        std::snprintf(address_.sun_path + 1, sizeof address_.sun_path - 1, "mute-bus-%d", getpid());
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + std::strlen(name()));
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address_), length), 0);
        EXPECT_EQ(listen(socket_, 8), 0);
    }
    ~MuteBus() { close(socket_); }
    MuteBus(const MuteBus&) = delete;
    MuteBus& operator=(const MuteBus&) = delete;
    const char* name() const { return address_.sun_path + 1; }

  private:
    int socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address_{};
};

TEST(Network, IsSimulatedWhereTheBusIsMute) {
    const MuteBus bus;
    const HostRun run({.script = "quit",
                       .environment = {{"DBUS_SYSTEM_BUS_ADDRESS", std::string("unix:abstract=") + bus.name()}},
                       .arguments = {"--network", "auto"}});
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_NE(run.transcript().find("NetworkManager does not answer; simulated network"), std::string::npos) << run;
}

TEST(Help, ListsEveryExitCode) {
    const HostRun run(with({"--help"}));
    EXPECT_TRUE(run.succeeded()) << run;
    for (const host::ExitText& row : host::kExitTexts) {
        const std::string line = std::to_string(row.code) + "  " + std::string(row.text);
        EXPECT_NE(run.transcript().find(line), std::string::npos) << line;
    }
}

}  // namespace
