#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <functional>

#include "child.h"
#include "store_fixture.h"

namespace {

class Disk : public StoreTest {};

void limitFileSize(rlim_t size) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = size;
    setrlimit(RLIMIT_FSIZE, &limit);
}

// Fills up in a process of its own, since the limit is the whole process's.
int fillUp(const fs::path& file) {
    std::string message;
    const std::string large(100'000, 'x');
    std::signal(SIGXFSZ, SIG_IGN);
    if (!store::open(file, message) || vconf_set_str("key", "old") != 0) return 1;
    limitFileSize(fs::file_size(file.string() + "-wal"));
    if (vconf_set_str("key", large.c_str()) != -1 || vconf_set_int("number", 1) != -1) return 2;
    if (textUnder("key") != "old") return 3;
    limitFileSize(RLIM_INFINITY);
    if (vconf_set_str("key", "new") != 0 || textUnder("key") != "new") return 4;
    return 0;
}

TEST_F(Disk, AFullOneKeepsTheOldValue) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(child::run([&] { return fillUp(file_); }), 0);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(log, '\n'), 1) << log;
    open();
    EXPECT_EQ(textUnder("key"), "new");
}

int readFromReadOnlyDisk(const fs::path& folder, const fs::path& file) {
    if (!child::makeMountsPrivate()) return child::kSkip;
    if (mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0) return child::kSkip;
    if (mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0) return child::kSkip;
    std::string message;
    if (!store::open(file, message)) return 1;
    if (textUnder("key") != "old") return 2;
    if (vconf_set_str("key", "new") != -1) return 3;
    if (textUnder("key") != "old") return 4;
    return store::open(folder / "none.db", message) ? 5 : 0;
}

TEST_F(Disk, AReadOnlyOneCanStillBeRead) {
    file_ = folder_ / "50% #1?.db";
    open();
    ASSERT_EQ(vconf_set_str("key", "old"), 0);
    store::close();
    const int status = child::run([&] { return readFromReadOnlyDisk(folder_, file_); });
    if (status == child::kSkip) GTEST_SKIP() << "this machine allows no mounts of our own";
    EXPECT_EQ(status, 0);
}

TEST_F(Disk, AnObstacleIsToldOnceAndOvercome) {
    struct Case {
        const char* name;
        const char* cause;
        std::function<void()> make;
    };
    const fs::path parent = folder_ / "sub";
    file_ = parent / "settings.db";
    const Case kCases[] = {
        {"folder in its place", "not a regular file", [&] { fs::create_directories(file_); }},
        {"pipe in its place", "not a regular file", [&] { fs::create_directory(parent), mkfifo(file_.c_str(), 0600); }},
        {"file in the folder's place", "Not a directory", [&] { std::ofstream(parent) << "x"; }},
        {"link to nowhere", "No such file",
         [&] { fs::create_directory(parent), fs::create_symlink(folder_ / "none/none", file_); }},
    };
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.name);
        one.make();
        std::string message;
        EXPECT_FALSE(store::open(file_, message));
        EXPECT_NE(message.find(one.cause), std::string::npos) << message;
        testing::internal::CaptureStderr();
        for (int i = 0; i < 3; ++i) {
            int number = 7;
            EXPECT_EQ(vconf_set_str("key", "text"), -1);
            EXPECT_EQ(vconf_get_str("key"), nullptr);
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
