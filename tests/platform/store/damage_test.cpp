// Files that are no store, and disks that do not take one.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>

#include "child.h"
#include "store_fixture.h"

namespace {

struct Case {
    const char* cause;  // part of what the log says
    std::function<void()> make;
};

class Damage : public StoreTest {
  protected:
    // A closed store of twenty values.
    void fill(std::size_t valueSize = 50'000) {
        open();
        const std::string text(valueSize, 'v');
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(vconf_set_str(("key" + std::to_string(i)).c_str(), text.c_str()), 0);
        store::close();
    }

    void overwriteAllButTheFirstPages() const {
        const std::string noise(fs::file_size(file_) - 4096, '\xff');
        std::fstream(file_, std::ios::in | std::ios::out | std::ios::binary).seekp(4096) << noise;
    }
};

using Disk = StoreTest;

TEST_F(Damage, EveryUnusableFileIsSetAsideWhole) {
    const Case kCases[] = {
        {"not a database", [&] { std::ofstream(file_) << std::string(5000, 'x'); }},
        {"malformed", [&] { fill(), fs::resize_file(file_, fs::file_size(file_) / 2); }},
        {"damaged", [&] { fill(), overwriteAllButTheFirstPages(); }},
        {"another program", [&] { runSql(file_, "CREATE TABLE bookmarks(url)"); }},
        {"version 2", [&] { fill(), runSql(file_, "PRAGMA user_version=2"); }},
        {"not the one of a store",
         [&] {
             fill(), runSql(file_, "CREATE TRIGGER no BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, ''); END");
         }},
    };
    std::size_t count = 0;
    for (const auto& [cause, make] : kCases) {
        SCOPED_TRACE(cause);
        make();
        const std::string content = contentOf(file_);
        testing::internal::CaptureStderr();
        open();
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_NE(log.find(cause), std::string::npos) << log;
        EXPECT_EQ(textUnder("key1"), std::nullopt);
        EXPECT_EQ(vconf_set_str("key1", "fresh"), 0);
        EXPECT_EQ(textUnder("key1"), "fresh");
        const auto aside = setAside();
        EXPECT_EQ(aside.size(), ++count);
        EXPECT_TRUE(std::ranges::any_of(aside, [&](const fs::path& file) {
            return log.find(file.filename().string() + ",") != std::string::npos && contentOf(file) == content;
        })) << log;
        store::close();
        fs::remove(file_);
    }
}

TEST_F(Damage, IsMetWhileTheStoreIsOpen) {
    fill(300'000);  // more than SQLite keeps in memory
    open();
    ASSERT_EQ(vconf_set_str("key1", "new"), 0);
    overwriteAllButTheFirstPages();
    fs::resize_file(file_.string() + "-wal", 0);
    for (int i = 0; i < 20; ++i)
        textUnder(("key" + std::to_string(i)).c_str());
    EXPECT_EQ(vconf_set_str("key1", "fresh"), 0);
    EXPECT_EQ(textUnder("key1"), "fresh");
    EXPECT_EQ(setAside().size(), 1U);
}

TEST_F(Damage, AnUnfinishedSetUpIsANewStore) {
    runSql(file_, "PRAGMA journal_mode=WAL");
    open();
    EXPECT_EQ(vconf_set_str("key", "text"), 0);
    EXPECT_TRUE(setAside().empty());
}

TEST_F(Damage, GoesOnWithTheFileThatHasTheNameNow) {
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    for (const char* suffix : {"", "-wal", "-shm"})
        fs::remove(file_.string() + suffix);
    EXPECT_EQ(textUnder("key"), std::nullopt);
    EXPECT_EQ(vconf_set_str("key", "new"), 0);
    open();
    EXPECT_EQ(textUnder("key"), "new");
}

int readFromReadOnlyDisk(const fs::path& folder, const fs::path& file) {
    if (!child::makeMountsPrivate()) return child::kSkip;
    for (const int flags : {0 | MS_BIND, MS_REMOUNT | MS_BIND | MS_RDONLY}) {
        if (mount(folder.c_str(), folder.c_str(), nullptr, static_cast<unsigned long>(flags), nullptr) != 0)
            return child::kSkip;
    }
    std::string message;
    if (!store::open(file, message)) return 1;
    if (vconf_set_str("key", "new") != -1) return 2;
    if (textUnder("key") != "old") return 3;
    return store::open(folder / "none.db", message) ? 4 : 0;
}

TEST_F(Disk, AReadOnlyOneCanStillBeRead) {
    file_ = folder_ / "50% #1?.db";
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    store::close();
    const int status = child::finish(child::start([&] { return readFromReadOnlyDisk(folder_, file_); }));
    if (status == child::kSkip) GTEST_SKIP() << "this machine allows no mounts of our own";
    EXPECT_EQ(status, 0);
}

TEST_F(Disk, AnObstacleIsToldOnceAndOvercome) {
    const fs::path parent = folder_ / "sub";
    file_ = parent / "settings.db";
    const Case kCases[] = {
        {"not a regular file", [&] { fs::create_directory(parent), mkfifo(file_.c_str(), 0600); }},
        {"Not a directory", [&] { std::ofstream(parent) << "x"; }},
        {"No such file", [&] { fs::create_directory(parent), fs::create_symlink(folder_ / "none/none", file_); }},
    };
    for (const auto& [cause, make] : kCases) {
        SCOPED_TRACE(cause);
        make();
        std::string message;
        EXPECT_FALSE(store::open(file_, message));
        EXPECT_NE(message.find(cause), std::string::npos) << message;
        testing::internal::CaptureStderr();
        for (int i = 0; i < 3; ++i) {
            int number = 7;
            EXPECT_EQ(vconf_set_str("key", "text"), -1);
            EXPECT_EQ(textUnder("key"), std::nullopt);
            EXPECT_EQ(vconf_get_int("key", &number), -1);
        }
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::ranges::count(log, '\n'), 1) << log;
        fs::remove_all(parent);
        EXPECT_EQ(vconf_set_str("key", "text"), 0);
        EXPECT_EQ(textUnder("key"), "text");
        fs::remove_all(parent);
    }
}

}  // namespace
