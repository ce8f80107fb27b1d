// Settings store: the C functions over one open database.
#include "settings_store.h"

#include <climits>
#include <cstring>
#include <mutex>
#include <optional>

#include "platform_log.h"
#include "store/database.h"
#include "store/files.h"
#include "store/store.h"

namespace store {

namespace {

constexpr const char* kTag = "SETTINGS";

class Store {
  public:
    bool open(const fs::path& path, std::string& why);
    void close();

    Outcome read(const char* key, Value& value) {
        return attempt([&](Database& database) { return database.read(key, value); });
    }
    Outcome write(const char* key, const Value& value) {
        const Outcome outcome = attempt([&](Database& database) { return database.write(key, value); });
        if (outcome == Outcome::Done) lastComplaint_.clear();
        return outcome;
    }

  private:
    template <class Access>
    Outcome attempt(Access access);
    bool ready();
    bool openOnce(std::string& why);
    bool startAfresh(const std::string& cause, std::string& why);
    void complain(const std::string& why);

    std::mutex mutex_;
    fs::path path_;
    std::optional<Database> database_;
    std::string lastComplaint_;
};

// Never destroyed: the last access may come while the process ends, and each value is on the disk already.
Store& theStore() {
    static auto& instance = *new Store;
    return instance;
}

bool Store::open(const fs::path& path, std::string& why) {
    const std::lock_guard guard(mutex_);
    database_.reset();
    lastComplaint_.clear();
    path_ = path.empty() ? defaultPath() : path;
    return openOnce(why);
}

void Store::close() {
    const std::lock_guard guard(mutex_);
    database_.reset();
    path_.clear();
    lastComplaint_.clear();
}

bool Store::openOnce(std::string& why) {
    if (path_.empty()) why = "neither XDG_STATE_HOME nor HOME names a folder";
    if (path_.empty() || !makeFolders(path_, why)) return false;
    const FolderLock lock(path_, why);
    if (!lock.held() || !makePrivate(path_, why)) return false;
    std::string cause;
    const Outcome outcome = database_.emplace().open(path_, cause);
    if (outcome == Outcome::Done) return true;
    if (outcome == Outcome::Damaged) return startAfresh(cause, why);
    database_.reset();
    why = path_.string() + ": " + cause;
    return false;
}

// The old file is renamed while it is still open: SQLite then leaves its log alone when it closes.
bool Store::startAfresh(const std::string& cause, std::string& why) {
    const fs::path name = setAside(path_, why);
    database_.reset();
    if (name.empty()) return false;
    __dlog_print(DLOG_ID_MAIN, DLOG_WARN, kTag, "%s: %s; set aside as %s, settings start afresh", path_.c_str(),
                 cause.c_str(), name.c_str());
    std::string again;
    if (!makePrivate(path_, why)) return false;
    if (database_.emplace().open(path_, again) == Outcome::Done) return true;
    database_.reset();
    why = path_.string() + ": " + again;
    return false;
}

// Once for each cause until a value can be stored again, since every access tries anew.
void Store::complain(const std::string& why) {
    if (why == lastComplaint_) return;
    lastComplaint_ = why;
    __dlog_print(DLOG_ID_MAIN, DLOG_ERROR, kTag, "settings cannot be used: %s", why.c_str());
}

bool Store::ready() {
    // Another process may have set the file aside, or somebody deleted it: go on with the one that has its name now.
    if (database_ && database_->moved()) database_.reset();
    if (database_) return true;
    if (path_.empty()) path_ = defaultPath();
    std::string why;
    if (openOnce(why)) return true;
    complain(why);
    return false;
}

template <class Access>
Outcome Store::attempt(Access access) {
    const std::lock_guard guard(mutex_);
    if (!ready()) return Outcome::Failed;
    Outcome outcome = access(*database_);
    if (outcome == Outcome::Damaged) {
        // Opening looks at the whole file, and only what it finds damaged is set aside.
        database_.reset();
        if (!ready()) return Outcome::Failed;
        outcome = access(*database_);
    }
    if (outcome != Outcome::Done) complain(path_.string() + ": " + database_->lastError());
    return outcome;
}

bool isKey(const char* key) {
    return key && *key;
}

}  // namespace

bool open(const std::string& path, std::string& message) {
    return theStore().open(path, message);
}

void close() {
    theStore().close();
}

}  // namespace store

char* vconf_get_str(const char* key) {
    store::Value value;
    if (!store::isKey(key) || store::theStore().read(key, value) != store::Outcome::Done) return nullptr;
    const auto* text = std::get_if<std::string>(&value);
    return text ? strdup(text->c_str()) : nullptr;
}

int vconf_set_str(const char* key, const char* value) {
    if (!store::isKey(key) || !value) return -1;
    return store::theStore().write(key, std::string(value)) == store::Outcome::Done ? 0 : -1;
}

int vconf_get_int(const char* key, int* value) {
    store::Value stored;
    if (!store::isKey(key) || !value || store::theStore().read(key, stored) != store::Outcome::Done) return -1;
    const auto* number = std::get_if<std::int64_t>(&stored);
    if (!number || *number < INT_MIN || *number > INT_MAX) return -1;
    *value = static_cast<int>(*number);
    return 0;
}

int vconf_set_int(const char* key, int value) {
    if (!store::isKey(key)) return -1;
    return store::theStore().write(key, std::int64_t{value}) == store::Outcome::Done ? 0 : -1;
}
