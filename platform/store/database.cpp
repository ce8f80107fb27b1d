#include "store/database.h"

#include "store/files.h"

namespace store {

namespace {

constexpr int kBusyMilliseconds = 2000;
constexpr std::int64_t kApplicationId = 0x47534554;  // "GSET", what file(1) and our own check tell the file by
constexpr std::int64_t kVersion = 1;

// WAL with FULL syncs the log at each commit: a value that was stored survives a power cut. A log of few pages is soon
// written over from its start, and writes that do not grow their file sync faster.
constexpr const char* kConnectionSettings =
    "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA wal_autocheckpoint=64; PRAGMA trusted_schema=OFF";
// Of a new file; it cannot change once there is a log. Each commit writes and syncs whole pages, and values are short.
constexpr const char* kPageSize = "PRAGMA page_size=1024";
constexpr const char* kTable = "CREATE TABLE settings(key TEXT PRIMARY KEY, value BLOB NOT NULL) WITHOUT ROWID";
constexpr const char* kNumbers = "PRAGMA application_id=0x47534554; PRAGMA user_version=1";
constexpr std::string_view kRead = "SELECT value FROM settings WHERE key=?1";
constexpr std::string_view kWrite =
    "INSERT INTO settings(key, value) VALUES(?1, ?2) ON CONFLICT(key) DO UPDATE SET value=excluded.value";

Outcome outcomeOf(int code) {
    switch (code & 0xff) {
        case SQLITE_OK:
        case SQLITE_ROW:
        case SQLITE_DONE:
            return Outcome::Done;
        case SQLITE_ERROR:  // our SQL is right, so what it was run on is not
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return Outcome::Damaged;
        default:
            return Outcome::Failed;
    }
}

// As sqlite.org/uri.html wants it: the characters that mean something in a URI are escaped.
std::string uriOf(const std::filesystem::path& path) {
    std::string uri = "file:";
    for (const char c : std::filesystem::absolute(path).string()) {
        if (c == '%') {
            uri += "%25";
        } else if (c == '?') {
            uri += "%3f";
        } else if (c == '#') {
            uri += "%23";
        } else {
            uri += c;
        }
    }
    return uri;
}

// Values that were stored but not yet moved into the database itself.
bool hasLog(std::filesystem::path path) {
    std::error_code none;
    const auto size = std::filesystem::file_size(path += "-wal", none);
    return !none && size > 0;
}

Value valueOf(const Statement& row) {
    switch (row.type()) {
        case SQLITE_TEXT:
            return row.text();
        case SQLITE_INTEGER:
            return row.number();
        default:
            return {};
    }
}

// Some damage makes SQLite ask for more memory than there is; then a little can still be had.
bool hasMemory() {
    const std::unique_ptr<void, decltype(&sqlite3_free)> probe(sqlite3_malloc(1 << 20), &sqlite3_free);
    return probe != nullptr;
}

}  // namespace

Outcome Database::open(const std::filesystem::path& path, std::string& why) {
    Outcome outcome = connect(uriOf(path));
    if (outcome == Outcome::Done) outcome = check(why);
    if (outcome == Outcome::Failed && isOnReadOnlyDisk(path) && !hasLog(path)) {
        // A log cannot be made there, but none is needed either.
        why.clear();
        outcome = connect(uriOf(path) + "?immutable=1");
        if (outcome == Outcome::Done) outcome = check(why);
    }
    if (outcome == Outcome::Failed && connection_ && sqlite3_errcode(connection_.get()) == SQLITE_NOMEM &&
        hasMemory()) {
        outcome = Outcome::Damaged;
    }
    if (outcome != Outcome::Damaged && isWriteProtected() && isWritable(path)) {
        why = "the file has a newer format";
        return Outcome::Damaged;
    }
    if (outcome != Outcome::Done && why.empty()) why = connection_ ? lastError() : "no memory";
    return outcome;
}

Outcome Database::connect(const std::string& uri) {
    sqlite3* made = nullptr;
    const int code =
        sqlite3_open_v2(uri.c_str(), &made, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_.reset(made);
    if (made) sqlite3_busy_timeout(made, kBusyMilliseconds);
    return outcomeOf(code);
}

Outcome Database::check(std::string& why) {
    Value application, version, schema, report;
    for (const auto& [sql, value] : {std::pair{"PRAGMA application_id", &application},
                                     {"PRAGMA user_version", &version},
                                     {"SELECT ifnull(group_concat(sql, ';'), '') FROM sqlite_schema", &schema},
                                     {"PRAGMA quick_check(1)", &report}}) {
        if (const Outcome outcome = pragma(sql, *value); outcome != Outcome::Done) return outcome;
    }
    // Nothing in it: new, or its first set-up was cut short.
    const bool empty = schema == Value("") && application == Value(0) && version == Value(0);
    if (report != Value("ok")) {
        why = "the file is damaged";
    } else if (!empty && application != Value(kApplicationId)) {
        why = "the file belongs to another program";
    } else if (!empty && version != Value(kVersion)) {
        why = "the file has version " + std::to_string(std::get<std::int64_t>(version)) +
              ", this program knows version 1";
    } else if (!empty && schema != Value(kTable)) {
        // A trigger or a constraint of somebody's could refuse every write.
        why = "the file's table is not the one of a store";
    }
    if (!why.empty()) return Outcome::Damaged;
    if (empty) {
        if (const Outcome outcome = execute(kPageSize); outcome != Outcome::Done) return outcome;
    }
    if (const Outcome outcome = execute(kConnectionSettings); outcome != Outcome::Done) return outcome;
    if (empty) {
        if (const Outcome outcome = setUp(); outcome != Outcome::Done) return outcome;
    }
    return prepare();
}

Outcome Database::setUp() {
    for (const char* sql : {"BEGIN IMMEDIATE", kTable, kNumbers, "COMMIT"}) {
        const Outcome outcome = execute(sql);
        if (outcome == Outcome::Done) continue;
        sqlite3_exec(connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        return outcome;
    }
    return Outcome::Done;
}

Outcome Database::prepare() {
    for (const auto& [statement, sql] : {std::pair{&read_, kRead}, {&write_, kWrite}}) {
        const int code = statement->prepare(connection_.get(), sql);
        if (code != SQLITE_OK) return outcomeOf(code);
    }
    return Outcome::Done;
}

Outcome Database::execute(const char* sql) {
    return outcomeOf(sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr));
}

Outcome Database::pragma(const char* sql, Value& value) {
    Statement statement;
    int code = statement.prepare(connection_.get(), sql);
    if (code == SQLITE_OK) code = statement.step();
    if (code == SQLITE_ROW) value = valueOf(statement);
    return outcomeOf(code);
}

Outcome Database::read(std::string_view key, Value& value) {
    Run run(read_);
    if (const int code = run->bind(1, key); code != SQLITE_OK) return outcomeOf(code);
    const int code = run->step();
    if (code == SQLITE_ROW) value = valueOf(read_);
    return outcomeOf(code);
}

Outcome Database::write(std::string_view key, const Value& value) {
    Run run(write_);
    const auto* text = std::get_if<std::string>(&value);
    int code = run->bind(1, key);
    if (code == SQLITE_OK) code = text ? run->bind(2, *text) : run->bind(2, std::get<std::int64_t>(value));
    if (code == SQLITE_OK) code = run->step();
    return outcomeOf(code);
}

bool Database::moved() const {
    int moved = 0;
    sqlite3_file_control(connection_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

}  // namespace store
