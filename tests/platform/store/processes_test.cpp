#include <array>
#include <csignal>

#include "child.h"
#include "store_fixture.h"

namespace {

class Processes : public StoreTest {};

// Counts up, telling each number once its setter has returned, until it is killed.
int countUp(const fs::path& file, int from, int told) {
    std::string message;
    if (!store::open(file, message)) return 1;
    for (int number = from;; ++number) {
        if (vconf_set_int("number", number) != 0) return 2;
        if (write(told, &number, sizeof number) != sizeof number) return 3;
    }
}

TEST_F(Processes, AKilledWriterLosesNothingThatWasStored) {
    int stored = -1;
    const int rounds = std::getenv("GADGET_STORE_LONG") ? 1000 : 30;
    for (int round = 0; round < rounds; ++round) {
        std::array<int, 2> pipe{};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        const pid_t writer = child::start([&] { return countUp(file_, stored + 1, pipe[1]); });
        close(pipe[1]);
        for (int i = 0; i <= round % 30; ++i) {
            ASSERT_EQ(read(pipe[0], &stored, sizeof stored), static_cast<ssize_t>(sizeof stored));
        }
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

int writeMany(const fs::path& file, const std::string& name) {
    std::string message;
    if (!store::open(file, message)) return 1;
    for (int number = 0; number < 200; ++number) {
        if (vconf_set_int((name + std::to_string(number)).c_str(), number) != 0) return 2;
        if (vconf_set_str("shared", name.c_str()) != 0) return 3;
    }
    return 0;
}

// Both also meet the damaged file at their start: one of them sets it aside, and neither loses a value by it.
TEST_F(Processes, TwoWriteAtOnce) {
    std::ofstream(file_) << "damaged";
    const pid_t one = child::start([&] { return writeMany(file_, "one"); });
    const pid_t two = child::start([&] { return writeMany(file_, "two"); });
    EXPECT_EQ(child::finish(one), 0);
    EXPECT_EQ(child::finish(two), 0);
    open();
    for (const std::string name : {"one", "two"}) {
        for (int number = 0; number < 200; ++number) {
            int found = -1;
            EXPECT_EQ(vconf_get_int((name + std::to_string(number)).c_str(), &found), 0);
            EXPECT_EQ(found, number);
        }
    }
    EXPECT_EQ(setAside().size(), 1U);
}

TEST_F(Processes, AReaderSeesWhatAnotherStored) {
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    ASSERT_EQ(textUnder("key"), "old");
    runSql(file_, "UPDATE settings SET value='new'");
    EXPECT_EQ(textUnder("key"), "new");
}

TEST_F(Processes, ALockedStoreCanBeReadAndRefusesToWrite) {
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(textUnder("key"), "old");
    EXPECT_EQ(vconf_set_str("key", "new"), -1);
    EXPECT_EQ(textUnder("key"), "old");
    sqlite3_close(other);
    EXPECT_EQ(vconf_set_str("key", "new"), 0);
}

}  // namespace
