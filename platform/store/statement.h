// A prepared SQLite statement.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace store {

class Statement {
  public:
    int prepare(sqlite3* connection, std::string_view sql) {
        sqlite3_stmt* made = nullptr;
        const int code = sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()),
                                            SQLITE_PREPARE_PERSISTENT, &made, nullptr);
        statement_.reset(made);
        return code;
    }

    // Bound texts are borrowed until the Run that reads them ends.
    int bind(int index, std::string_view text) {
        return sqlite3_bind_text64(statement_.get(), index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int bind(int index, std::int64_t number) { return sqlite3_bind_int64(statement_.get(), index, number); }

    int step() { return sqlite3_step(statement_.get()); }
    int type() const { return sqlite3_column_type(statement_.get(), 0); }
    std::int64_t number() const { return sqlite3_column_int64(statement_.get(), 0); }
    std::string text() const {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), 0));
        return {bytes ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), 0))};
    }

    void reset() {
        sqlite3_reset(statement_.get());
        sqlite3_clear_bindings(statement_.get());
    }

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

// One use of a statement: resets it when it goes, so that no lock stays behind.
class Run {
  public:
    explicit Run(Statement& statement) : statement_(statement) {}
    ~Run() { statement_.reset(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    Statement* operator->() { return &statement_; }

  private:
    Statement& statement_;
};

}  // namespace store
