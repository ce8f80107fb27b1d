// What callers and other processes see of the store; any order of writes and reads is tests/fuzz's.
#include <sys/stat.h>

#include <array>
#include <csignal>

#include "child.h"
#include "store_fixture.h"

namespace {

// Counts up, telling each number once its setter has returned, until it is killed.
int countUp(const fs::path& file, int from, int told) {
    std::string message;
    if (!store::open(file, message)) return 1;
    for (int number = from;; ++number) {
        if (vconf_set_int("number", number) != 0) return 2;
        if (write(told, &number, sizeof number) != sizeof number) return 3;
    }
}

int writeMany(const fs::path& file, const std::string& name) {
    std::string message;
    if (!store::open(file, message)) return 1;
    for (int number = 0; number < 200; ++number) {
        if (vconf_set_int((name + std::to_string(number)).c_str(), number) != 0) return 2;
        if (vconf_set_str("shared", name.c_str()) != 0) return 3;
    }
    return 0;
}

using Values = StoreTest;
using Processes = StoreTest;

TEST_F(Values, IntegersHaveThirtyTwoBits) {
    open();
    EXPECT_EQ(vconf_set_int("number", 1), 0);
    const std::pair<const char*, std::optional<int>> kCases[] = {
        {"2147483647", 2147483647}, {"2147483648", {}}, {"-2147483648", -2147483647 - 1},
        {"-2147483649", {}},        {"1.5", {}},        {"x'00'", {}},
    };
    for (const auto& [stored, expected] : kCases) {
        runSql(file_, std::string("UPDATE settings SET value=") + stored);
        int read = 7;
        EXPECT_EQ(vconf_get_int("number", &read), expected ? 0 : -1) << stored;
        EXPECT_EQ(read, expected.value_or(7)) << stored;
        EXPECT_EQ(textUnder("number"), std::nullopt) << stored;
    }
}

TEST_F(Values, NullsAreRefused) {
    int number = 7;
    open();
    EXPECT_EQ(vconf_set_int("key", 1), 0);
    EXPECT_EQ(vconf_get_int("key", nullptr), -1);
    EXPECT_EQ(vconf_set_str("key", nullptr), -1);
    EXPECT_EQ(vconf_get_str(nullptr), nullptr);
    EXPECT_EQ(vconf_set_str(nullptr, "text"), -1);
    EXPECT_EQ(vconf_get_int(nullptr, &number), -1);
    EXPECT_EQ(vconf_set_int(nullptr, 1), -1);
}

TEST_F(Values, OnlyTheOwnerMayRead) {
    const mode_t before = umask(0);
    file_ = folder_ / "state/gadget/settings.db";
    open();
    vconf_set_str("key", "secret");
    for (const auto& [name, mode] :
         {std::pair{"", 0700U}, {"settings.db", 0600U}, {"settings.db-wal", 0600U}, {"settings.db-shm", 0600U}})
        EXPECT_EQ(fs::status(file_.parent_path() / name).permissions(), fs::perms(mode)) << name;
    store::close();
    fs::permissions(file_, fs::perms(0644));
    open();
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
    EXPECT_EQ(textUnder("key"), "secret");
    std::string why;
    EXPECT_FALSE(store::open("/proc/none/settings.db", why));
    EXPECT_EQ(textUnder("key"), std::nullopt) << "the store of before is closed";
    umask(before);
}

TEST_F(Values, LieInTheStateFolderUnlessTold) {
    setenv("HOME", (folder_ / "home").c_str(), 1);
    const std::pair<std::string, const char*> kCases[] = {{folder_ / "state", "state/gadget/settings.db"},
                                                          {"", "home/.local/state/gadget/settings.db"},
                                                          {"relative", "home/.local/state/gadget/settings.db"}};
    for (const auto& [state, expected] : kCases) {
        store::close();
        setenv("XDG_STATE_HOME", state.c_str(), 1);
        EXPECT_EQ(vconf_set_str("key", state.c_str()), 0);
        EXPECT_TRUE(fs::exists(folder_ / expected)) << state;
        EXPECT_EQ(textUnder("key"), state);
    }
    store::close();
    unsetenv("HOME");
    EXPECT_EQ(vconf_set_str("key", "text"), -1);
}

TEST_F(Processes, AKilledWriterLosesNothingThatWasStored) {
    int stored = -1;
    const int rounds = std::getenv("GADGET_STORE_LONG") ? 1000 : 30;
    for (int round = 0; round < rounds; ++round) {
        std::array<int, 2> pipe{};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        const pid_t writer = child::start([&] { return countUp(file_, stored + 1, pipe[1]); });
        close(pipe[1]);
        for (int i = 0; i <= round % 30; ++i)
            ASSERT_EQ(read(pipe[0], &stored, sizeof stored), static_cast<ssize_t>(sizeof stored));
        kill(writer, SIGKILL);
        EXPECT_EQ(child::finish(writer), -SIGKILL);
        while (read(pipe[0], &stored, sizeof stored) == sizeof stored) {
        }
        close(pipe[0]);
        open();
        int found = -1;
        EXPECT_EQ(vconf_get_int("number", &found), 0);
        EXPECT_TRUE(found == stored || found == stored + 1) << found << " after " << stored;
        stored = found;
        store::close();
    }
    EXPECT_TRUE(setAside().empty());
}

// Both also meet the damaged file at their start: one of them sets it aside, and neither loses a value by it.
TEST_F(Processes, TwoWriteAtOnce) {
    std::ofstream(file_) << "damaged";
    const pid_t one = child::start([&] { return writeMany(file_, "one"); });
    const pid_t two = child::start([&] { return writeMany(file_, "two"); });
    EXPECT_EQ(child::finish(one), 0);
    EXPECT_EQ(child::finish(two), 0);
    open();
    for (int number = 0; number < 400; ++number) {
        int found = -1;
        const std::string key = (number < 200 ? "one" : "two") + std::to_string(number % 200);
        EXPECT_EQ(vconf_get_int(key.c_str(), &found), 0);
        EXPECT_EQ(found, number % 200);
    }
    EXPECT_EQ(setAside().size(), 1U);
}

TEST_F(Processes, ALockedStoreCanBeReadAndRefusesToWrite) {
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(vconf_set_str("key", "new"), -1);
    EXPECT_EQ(textUnder("key"), "old");
    sqlite3_close(other);
    EXPECT_EQ(vconf_set_str("key", "new"), 0);
}

}  // namespace
