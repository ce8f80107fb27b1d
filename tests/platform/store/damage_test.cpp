#include <fcntl.h>

#include <functional>

#include "store_fixture.h"

namespace {

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

    void overwrite(off_t from, std::size_t size) const {
        const std::string noise(size, '\xff');
        const int descriptor = ::open(file_.c_str(), O_WRONLY);
        ASSERT_EQ(pwrite(descriptor, noise.data(), size, from), static_cast<ssize_t>(size));
        ::close(descriptor);
    }
};

TEST_F(Damage, AnUnusableFileIsSetAsideWhole) {
    struct Case {
        const char* name;
        const char* cause;
        std::function<void()> make;
    };
    const Case kCases[] = {
        {"text", "not a database", [&] { std::ofstream(file_) << std::string(5000, 'x'); }},
        {"short text", "not a database", [&] { std::ofstream(file_) << "x\n"; }},
        {"cut", "malformed", [&] { fill(), fs::resize_file(file_, fs::file_size(file_) / 2); }},
        {"header", "not a database", [&] { fill(), overwrite(0, 100); }},
        {"pages", "damaged", [&] { fill(), overwrite(4096, fs::file_size(file_) - 4096); }},
        {"other program", "another program", [&] { runSql(file_, "CREATE TABLE bookmarks(url)"); }},
        {"newer version", "version 2", [&] { fill(), runSql(file_, "PRAGMA user_version=2"); }},
        {"no table", "not the one of a store", [&] { fill(), runSql(file_, "DROP TABLE settings"); }},
        {"a trigger", "not the one of a store",
         [&] {
             fill(),
                 runSql(file_, "CREATE TRIGGER never BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'no'); END");
         }},
    };
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.name);
        one.make();
        const std::string content = contentOf(file_);
        testing::internal::CaptureStderr();
        open();
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_NE(log.find(one.cause), std::string::npos) << log;
        EXPECT_EQ(textUnder("key1"), std::nullopt);
        EXPECT_EQ(vconf_set_str("key1", "fresh"), 0);
        EXPECT_EQ(textUnder("key1"), "fresh");
        const auto aside = setAside();
        ASSERT_EQ(aside.size(), 1U);
        EXPECT_NE(log.find(aside[0].filename()), std::string::npos) << log;
        EXPECT_EQ(contentOf(aside[0]), content);
        TearDown();
        SetUp();
    }
}

TEST_F(Damage, KeepsEverySetAsideFile) {
    for (std::size_t count = 1; count <= 3; ++count) {
        std::ofstream(file_) << "damage " << count;
        open();
        EXPECT_EQ(setAside().size(), count);
        store::close();
    }
}

TEST_F(Damage, IsMetWhileTheStoreIsOpen) {
    fill(300'000);  // more than SQLite keeps in memory
    open();
    ASSERT_EQ(vconf_set_str("key1", "new"), 0);
    overwrite(4096, fs::file_size(file_) - 4096);
    fs::resize_file(file_.string() + "-wal", 0);

    for (int i = 0; i < 20; ++i)
        textUnder(("key" + std::to_string(i)).c_str());
    EXPECT_EQ(vconf_set_str("key1", "fresh"), 0);
    EXPECT_EQ(textUnder("key1"), "fresh");
    EXPECT_EQ(setAside().size(), 1U);
}

TEST_F(Damage, AnEmptyFileOrAnUnfinishedSetUpIsANewStore) {
    for (const char* sql : {"", "PRAGMA journal_mode=WAL"}) {
        std::ofstream(file_).close();
        runSql(file_, sql);
        open();
        EXPECT_EQ(vconf_set_str("key", "text"), 0);
        EXPECT_TRUE(setAside().empty()) << sql;
        store::close();
        fs::remove(file_);
    }
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

}  // namespace
