// Endurance: power cuts and failing writes at any moment. GADGET_STORE_LONG=1 plays the long form, 1,000 of each:
//   GADGET_STORE_LONG=1 build/dev/tests/store-test --gtest_filter='Power.*:Processes.AKilled*'
#include <algorithm>
#include <map>
#include <random>

#include "store_fixture.h"

namespace {

constexpr std::size_t kSector = 512;

enum class Fault { None, Error, Full, Cut };

struct Change {
    std::size_t at;
    std::string bytes;  // none: the file ends at that place
};

struct File {
    std::string synced;
    std::vector<Change> pending;
};

// A file of SQLite's, with our functions in the place of some of its own.
struct Opened {
    File* file;
    const sqlite3_io_methods* real;
    sqlite3_io_methods ours;
};

sqlite3_vfs* realVfs = nullptr;
int countdown = 0;
Fault chosen = Fault::None;
bool failed = false;
std::map<std::string, File> files;
std::map<sqlite3_file*, Opened> openFiles;

// The n-th write, truncation or sync from now on (counted from 1) fails: once, or, at a cut, with all that follow it.
void failAt(int n, Fault fault) {
    countdown = n;
    chosen = fault;
    failed = false;
}

// SQLITE_OK, or the error that this step is to give.
int step(int error) {
    if (failed && chosen == Fault::Cut) return error;
    if (chosen == Fault::None || failed || --countdown > 0) return SQLITE_OK;
    failed = true;
    return chosen == Fault::Full ? SQLITE_FULL : error;
}

void apply(std::string& content, const Change& change) {
    if (change.bytes.empty()) return content.resize(std::min(content.size(), change.at));
    content.resize(std::max(content.size(), change.at + change.bytes.size()));
    content.replace(change.at, change.bytes.size(), change.bytes);
}

int closeFile(sqlite3_file* file) {
    return openFiles.extract(file).mapped().real->xClose(file);
}

int writeFile(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
    const Opened& opened = openFiles.at(file);
    const int code = step(SQLITE_IOERR_WRITE);
    // The write that a cut meets is half there.
    if (code == SQLITE_OK || std::exchange(countdown, -1) == 0) {
        opened.file->pending.push_back(
            {static_cast<std::size_t>(at), {static_cast<const char*>(from), static_cast<std::size_t>(size)}});
    }
    return code == SQLITE_OK ? opened.real->xWrite(file, from, size, at) : code;
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
    if (const int code = step(SQLITE_IOERR_TRUNCATE); code != SQLITE_OK) return code;
    openFiles.at(file).file->pending.push_back({static_cast<std::size_t>(size), {}});
    return openFiles.at(file).real->xTruncate(file, size);
}

int syncFile(sqlite3_file* file, int flags) {
    if (const int code = step(SQLITE_IOERR_FSYNC); code != SQLITE_OK) return code;
    File& synced = *openFiles.at(file).file;
    for (const Change& change : synced.pending)
        apply(synced.synced, change);
    synced.pending.clear();
    return openFiles.at(file).real->xSync(file, flags);
}

int openFile(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    const std::string before = name ? contentOf(name) : "";
    const int code = realVfs->xOpen(realVfs, name, file, flags, outFlags);
    if (code != SQLITE_OK || !name) return code;
    Opened& opened = openFiles[file];
    opened = {&files.try_emplace(name, File{before, {}}).first->second, file->pMethods, *file->pMethods};
    opened.ours.xClose = closeFile;
    opened.ours.xWrite = writeFile;
    opened.ours.xTruncate = truncateFile;
    opened.ours.xSync = syncFile;
    file->pMethods = &opened.ours;
    return code;
}

int removeFile(sqlite3_vfs* /*vfs*/, const char* name, int sync) {
    if (failed && chosen == Fault::Cut) return SQLITE_IOERR_DELETE;
    files.erase(name);
    return realVfs->xDelete(realVfs, name, sync);
}

// The files as a disk may hold them after a cut. Each sector of a write that was not synced is there or not, in any
// order.
void restore(std::mt19937& random) {
    for (auto& [path, file] : files) {
        const unsigned kept = random() % 4;  // none, or a quarter to three quarters of the sectors
        for (const auto& [from, bytes] : file.pending) {
            for (std::size_t at = 0; at == 0 || at < bytes.size(); at += kSector) {
                if (random() % 4 < kept) apply(file.synced, {from + at, bytes.substr(at, kSector)});
            }
        }
        std::ofstream(path, std::ios::binary) << file.synced;
        fs::remove(path.substr(0, path.rfind("-wal")) + "-shm");
    }
    files.clear();
    failAt(0, Fault::None);
}

// An SQLite VFS that remembers what was synced.
class Power : public StoreTest {
  protected:
    static void SetUpTestSuite() {
        static sqlite3_vfs shim;
        if (realVfs) return;
        realVfs = sqlite3_vfs_find(nullptr);
        shim = *realVfs;
        shim.zName = "power";
        shim.xOpen = openFile;
        shim.xDelete = removeFile;
        sqlite3_vfs_register(&shim, 1);
    }
};

// A value that tells a torn one: its number all over, in many lengths.
std::string valueOf(unsigned number, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += std::to_string(number) + ' ';
    return text;
}

TEST_F(Power, ACutLosesNothingThatWasStoredAndTearsNothing) {
    const int cuts = std::getenv("GADGET_STORE_LONG") ? 1000 : 100;
    std::mt19937 random(20261123);
    std::map<std::string, std::optional<std::string>> stored;
    unsigned number = 0;
    int inFlight = 0;
    for (int cut = 0; cut < cuts; ++cut) {
        failAt(static_cast<int>(1 + random() % 120), Fault::Cut);
        std::string message, key, text;
        if (store::open(file_, message)) {
            do {
                key = "key" + std::to_string(random() % 8);
                text = valueOf(++number, random() % 16 == 0 ? 300'000 : random() % 9000);
            } while (vconf_set_str(key.c_str(), text.c_str()) == 0 && (stored[key] = text, true));
        }
        ASSERT_TRUE(failed) << message;
        store::close();
        restore(random);
        open();
        for (auto& [name, value] : stored) {
            const auto found = textUnder(name.c_str());
            ASSERT_TRUE(found == value || (name == key && found == text)) << name << " after cut " << cut;
        }
        if (!key.empty()) stored[key] = textUnder(key.c_str());
        inFlight += !key.empty();
        ASSERT_TRUE(setAside().empty());
        store::close();
    }
    EXPECT_GT(inFlight, cuts / 2);
}

TEST_F(Power, TheNthFailureIsAnsweredAndKeepsTheOldValue) {
    for (const Fault fault : {Fault::Error, Fault::Full}) {
        for (const std::size_t size : {10U, 1'500'000U}) {  // the large one moves the log into the database
            int refused = 0;
            for (int n = 1;; n += size > 10 && n > 3 ? 500 : 1) {  // thousands of alike writes
                failAt(0, Fault::None);
                open();
                ASSERT_EQ(vconf_set_str("key", "old"), 0);
                const std::string text = valueOf(7, size);
                failAt(n, fault);
                const int answer = vconf_set_str("key", text.c_str());
                const bool hasFailed = failed;
                failAt(0, Fault::None);
                ASSERT_EQ(textUnder("key"), answer == 0 ? text : "old") << n;
                open();
                ASSERT_EQ(textUnder("key"), answer == 0 ? text : "old") << n;
                refused += answer == -1;
                if (!hasFailed) break;
            }
            EXPECT_GE(refused, 2);
            EXPECT_TRUE(setAside().empty());
        }
    }
}

}  // namespace
