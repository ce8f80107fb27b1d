// The settings store's SQLite file: one table of keys with text or integer values.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "store/statement.h"

namespace store {

using Value = std::variant<std::monostate, std::string, std::int64_t>;

enum class Outcome {
    Done,
    Failed,   // a full or read-only disk, a lock that another process keeps, no rights: the file stays as it is
    Damaged,  // the file is not, or no longer, a store of this version
};

class Database {
  public:
    // Opens the file, checks it whole, and sets it up when it is empty. Call with the folder locked. On a read-only
    // disk the values can still be read.
    Outcome open(const std::filesystem::path& path, std::string& why);

    // No value leaves std::monostate. A write is on the disk when it returns.
    Outcome read(std::string_view key, Value& value);
    Outcome write(std::string_view key, const Value& value);

    // Whether the path names another file by now, or none.
    bool moved() const;
    std::string lastError() const { return sqlite3_errmsg(connection_.get()); }

  private:
    Outcome connect(const std::string& uri);
    Outcome check(std::string& why);
    Outcome setUp();
    Outcome prepare();
    Outcome execute(const char* sql);
    bool isWriteProtected() const { return connection_ && sqlite3_db_readonly(connection_.get(), "main") == 1; }
    Outcome pragma(const char* sql, Value& value);

    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };
    std::unique_ptr<sqlite3, Closer> connection_;
    Statement read_;
    Statement write_;
};

}  // namespace store
