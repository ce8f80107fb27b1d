#include "log/log.h"

#include <Eina.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "child.h"
#include "platform_log.h"

namespace {

constexpr const char* kTag = "LOG_TEST";
constexpr std::size_t kStampSize = 24;  // time, priority and tag with the blanks behind them

class Log : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("JOURNAL_STREAM");
        level("verbose");
        testing::internal::CaptureStderr();
    }
    void TearDown() override { testing::internal::GetCapturedStderr(); }

    static void level(const char* name) {
        std::string message;
        ASSERT_TRUE(logging::setLevel(name, message)) << message;
    }

    static std::vector<std::string> captured() {
        std::istringstream text(testing::internal::GetCapturedStderr());
        testing::internal::CaptureStderr();
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
};

TEST_F(Log, LetsPassWhatIsAtOrAboveTheLevel) {
    const std::pair<const char*, std::string> kCases[] = {
        {"silent", ""},   {"fatal", "F"},     {"error", "EF"},       {"warning", "WEF"},
        {"info", "IWEF"}, {"debug", "DIWEF"}, {"verbose", "VDIWEF"},
    };
    for (const auto& [name, letters] : kCases) {
        level(name);
        for (int priority = DLOG_VERBOSE; priority <= DLOG_SILENT; ++priority) {
            __dlog_print(DLOG_ID_MAIN, priority, kTag, "text");
        }
        std::string seen;
        for (const std::string& line : captured())
            seen += line.substr(13, 1);
        EXPECT_EQ(seen, letters) << name;
    }
}

TEST_F(Log, KeepsTheLevelWhenTheNameIsUnknown) {
    level("error");
    for (const char* name : {"", "ERROR", "loud\n"}) {
        std::string message;
        EXPECT_FALSE(logging::setLevel(name, message)) << name;
        EXPECT_NE(message.find("unknown log level"), std::string::npos) << name;
        EXPECT_EQ(message.find('\n'), std::string::npos) << name;
    }
    const auto* unreadable = reinterpret_cast<const char*>(1);  // formatting it would crash
    EXPECT_EQ(__dlog_print(DLOG_ID_MAIN, DLOG_WARN, kTag, "%s", unreadable), 0);
    EXPECT_EQ(__dlog_print(DLOG_ID_MAIN, DLOG_ERROR, kTag, "text"), 4);
}

TEST_F(Log, MakesOneCleanLineOfAnyText) {
    const std::string large(1U << 20, 'x');
    const std::pair<std::string, std::string> kCases[] = {
        {"ends with breaks\n\r\n", "ends with breaks"},
        {"\n", ""},
        {"a\n12:00:00.000 F LOG_TEST forged", "a\\n12:00:00.000 F LOG_TEST forged"},
        {"\x1b[31mred\tstop\x7f", "\\x1b[31mred\\x09stop\\x7f"},
        {"C1 \xc2\x9b", "C1 \\x9b"},
        {"Zürich 한국어 🙂 100 %s %n", "Zürich 한국어 🙂 100 %s %n"},
        {"stray \x80\xff\xc3 bytes", "stray \\x80\\xff\\xc3 bytes"},
        {"last ones \xc2\x9f \xe2\x80\xa8 \xe2\x81\xa9", "last ones \\x9f \\u2028 \\u2069"},
        {"seen \xc2\xa0 \xe2\x80\xaf \xe2\x81\xaa", "seen \xc2\xa0 \xe2\x80\xaf \xe2\x81\xaa"},
        {"turned \xe2\x80\xae \xe2\x81\xa6", "turned \\u202e \\u2066"},
        {large, large},
    };
    const std::regex stamp(R"(\d\d:\d\d:\d\d\.\d{3} W LOG_TEST )");
    for (const auto& [text, line] : kCases) {
        EXPECT_EQ(__dlog_print(DLOG_ID_MAIN, DLOG_WARN, kTag, "%s", text.c_str()), static_cast<int>(text.size()));
        const auto lines = captured();
        ASSERT_EQ(lines.size(), 1U) << text;
        EXPECT_TRUE(std::regex_match(lines[0].substr(0, kStampSize), stamp)) << lines[0];
        EXPECT_EQ(lines[0].substr(kStampSize), line);
    }
}

TEST_F(Log, RefusesBadArguments) {
    for (const auto& [id, priority] : {std::pair{1, 5}, {-1, 5}, {0, -1}, {0, 1}, {0, 9}}) {
        EXPECT_LT(__dlog_print(id, priority, kTag, "text"), 0) << id << ", " << priority;
    }
    const char* noFormat = nullptr;
    EXPECT_LT(__dlog_print(DLOG_ID_MAIN, DLOG_WARN, kTag, noFormat, 1), 0);
    EXPECT_TRUE(captured().empty());
    EXPECT_EQ(__dlog_print(DLOG_ID_MAIN, DLOG_WARN, nullptr, "untagged"), 8);
    EXPECT_EQ(captured().at(0).substr(13), "W untagged");
}

TEST_F(Log, ShowsTheToolkitsLinesInTheSameForm) {
    eina_log_print(EINA_LOG_DOMAIN_GLOBAL, EINA_LOG_LEVEL_ERR, "edje.c", "load", 7, "no group\n%s", "\x1b[0m");
    EXPECT_EQ(captured().at(0).substr(13), "E edje.c:7 load() no group\\n\\x1b[0m");
}

TEST_F(Log, KeepsLinesOfThreadsApart) {
    const auto speak = [](char letter) {
        const std::string text(3000, letter);
        for (int i = 0; i < 50; ++i)
            __dlog_print(DLOG_ID_MAIN, DLOG_WARN, kTag, "%s", text.c_str());
    };
    {
        std::jthread one(speak, 'a');
        std::jthread two(speak, 'b');
    }
    const auto lines = captured();
    EXPECT_EQ(lines.size(), 100U);
    for (const std::string& line : lines)
        EXPECT_EQ(line.substr(kStampSize), std::string(3000, line.back()));
}

// A journal's socket of our own; the child's standard error is "connected" to it as the service manager tells.
int logToOwnJournal() {
    if (!child::makeMountsPrivate() || mount("none", "/run", "tmpfs", 0, nullptr) != 0) return child::kSkip;
    std::filesystem::create_directories("/run/systemd/journal");
    const int journal = socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{AF_UNIX, "/run/systemd/journal/socket"};
    if (bind(journal, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return 1;
    struct stat about {};
    fstat(STDERR_FILENO, &about);
    setenv("JOURNAL_STREAM", (std::to_string(about.st_dev) + ':' + std::to_string(about.st_ino)).c_str(), 1);
    __dlog_print(DLOG_ID_MAIN, DLOG_ERROR, kTag, "to the journal\n");
    char received[4096]{};
    if (recv(journal, received, sizeof received - 1, MSG_DONTWAIT) < 0) return 2;
    const std::string fields = received;
    const bool whole =
        std::ranges::all_of(std::array{"MESSAGE=to the journal\n", "PRIORITY=3\n", "SYSLOG_IDENTIFIER=LOG_TEST\n"},
                            [&](const char* field) { return fields.find(field) != std::string::npos; });
    return whole ? 0 : 3;
}

TEST_F(Log, GoesToTheJournalUnderTheServiceManager) {
    const int status = child::finish(child::start(logToOwnJournal));
    if (status == child::kSkip) GTEST_SKIP() << "this machine allows no mounts of our own";
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(captured().empty());
    setenv("JOURNAL_STREAM", "1:2", 1);  // somebody else's: standard error was sent elsewhere
    __dlog_print(DLOG_ID_MAIN, DLOG_ERROR, kTag, "to the terminal");
    EXPECT_EQ(captured().size(), 1U);
}

}  // namespace
