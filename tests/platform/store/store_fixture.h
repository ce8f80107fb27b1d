// A settings store in a folder of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "settings_store.h"
#include "store/store.h"

namespace fs = std::filesystem;

inline std::optional<std::string> textUnder(const char* key) {
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str(key), &std::free);
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

inline std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Runs SQL on the file as another program would.
inline void runSql(const fs::path& file, const std::string& sql) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(connection);
}

class StoreTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "store-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
        file_ = folder_ / "settings.db";
    }
    void TearDown() override {
        store::close();
        fs::remove_all(folder_);
    }

    void open() {
        std::string message;
        ASSERT_TRUE(store::open(file_, message)) << message;
    }

    // What was set aside, side files left out.
    std::vector<fs::path> setAside() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            const std::string name = entry.path().filename();
            const bool side = name.ends_with("-wal") || name.ends_with("-shm");
            if (name.starts_with("settings.db.set-aside-") && !side) found.push_back(entry.path());
        }
        return found;
    }

    fs::path folder_;
    fs::path file_;
};
