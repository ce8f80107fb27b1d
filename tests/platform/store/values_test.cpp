#include <sys/stat.h>
#include <sys/syscall.h>

#include <climits>

#include "store_fixture.h"

namespace {

constinit int syncs = 0;

class Values : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
    }
};

TEST_F(Values, TextsComeBackAsTheyWereAfterReopening) {
    const std::pair<const char*, std::string> kCases[] = {
        {"db/menu/network/network_type", "Wired"},
        {"empty", ""},
        {"NULL", "NULL"},
        {"quote'\"; DROP TABLE settings; --", "'; --"},
        {"percent %s", "%n %s 100 %"},
        {"ключ", "거실 TV 🙂"},
        {"not UTF-8 \xff", "\xfe\xc3( \x01\n"},
        {"long", std::string(3U << 20, 'x')},
    };
    for (const auto& [key, text] : kCases)
        EXPECT_EQ(vconf_set_str(key, text.c_str()), 0) << key;
    open();
    for (const auto& [key, text] : kCases)
        EXPECT_EQ(textUnder(key), text) << key;
    EXPECT_EQ(textUnder("none"), std::nullopt);
    EXPECT_EQ(textUnder("NULL "), std::nullopt);
}

TEST_F(Values, IntegersHaveThirtyTwoBits) {
    for (const int number : {0, 1, -1, INT_MAX, INT_MIN}) {
        int read = 7;
        EXPECT_EQ(vconf_set_int("number", number), 0);
        EXPECT_EQ(vconf_get_int("number", &read), 0);
        EXPECT_EQ(read, number);
    }
    for (const char* other : {"2147483648", "-2147483649", "1.5", "x'00'"}) {
        runSql(file_, std::string("UPDATE settings SET value=") + other);
        int read = 7;
        EXPECT_EQ(vconf_get_int("number", &read), -1) << other;
        EXPECT_EQ(read, 7) << other;
        EXPECT_EQ(textUnder("number"), std::nullopt) << other;
    }
}

TEST_F(Values, AKeyHasOneTypeTheLastOneStored) {
    int read = 7;
    EXPECT_EQ(vconf_set_str("key", "12"), 0);
    EXPECT_EQ(vconf_get_int("key", &read), -1);
    EXPECT_EQ(vconf_set_int("key", 12), 0);
    EXPECT_EQ(textUnder("key"), std::nullopt);
    EXPECT_EQ(vconf_get_int("key", &read), 0);
    EXPECT_EQ(read, 12);
    EXPECT_EQ(vconf_get_int("none", &read), -1);
    EXPECT_EQ(read, 12);
}

TEST_F(Values, BadArgumentsAreRefused) {
    int number = 7;
    for (const char* key : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(vconf_get_str(key), nullptr);
        EXPECT_EQ(vconf_set_str(key, "text"), -1);
        EXPECT_EQ(vconf_get_int(key, &number), -1);
        EXPECT_EQ(vconf_set_int(key, 1), -1);
    }
    EXPECT_EQ(vconf_set_str("key", nullptr), -1);
    EXPECT_EQ(vconf_set_int("key", 1), 0);
    EXPECT_EQ(vconf_get_int("key", nullptr), -1);
}

TEST_F(Values, EachOneIsSyncedBeforeTheSetterReturns) {
    for (int i = 0; i < 5; ++i) {
        const int before = syncs;
        EXPECT_EQ(vconf_set_int("number", i), 0);
        EXPECT_GT(syncs, before);
    }
}

TEST_F(StoreTest, OnlyTheOwnerMayRead) {
    const mode_t before = umask(0);
    file_ = folder_ / "state/gadget/settings.db";
    open();
    vconf_set_str("key", "secret");
    for (const auto& [name, mode] :
         {std::pair{"", 0700U}, {"settings.db", 0600U}, {"settings.db-wal", 0600U}, {"settings.db-shm", 0600U}}) {
        struct stat about {};
        ASSERT_EQ(stat((file_.parent_path() / name).c_str(), &about), 0) << name;
        EXPECT_EQ(about.st_mode & 07777, mode) << name;
    }
    store::close();
    fs::permissions(file_, fs::perms(0644));
    open();
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
    umask(before);
}

TEST_F(StoreTest, LiesInTheStateFolderUnlessTold) {
    struct Case {
        const char* state;
        const char* expected;
    };
    setenv("HOME", (folder_ / "home").c_str(), 1);
    const std::string state = folder_ / "state";
    for (const auto& [value, expected] : {Case{state.c_str(), "state/gadget/settings.db"},
                                          {"", "home/.local/state/gadget/settings.db"},
                                          {"relative", "home/.local/state/gadget/settings.db"}}) {
        store::close();
        setenv("XDG_STATE_HOME", value, 1);
        EXPECT_EQ(vconf_set_str("key", value), 0);
        EXPECT_TRUE(fs::exists(folder_ / expected)) << value;
        EXPECT_EQ(textUnder("key"), value);
    }
    store::close();
    unsetenv("HOME");
    EXPECT_EQ(vconf_set_str("key", "text"), -1);
}

}  // namespace

// The store's own syncs pass here: the program's symbols come before the C library's.
extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor) {
    ++syncs;
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}
