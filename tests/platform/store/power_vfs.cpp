#include "power_vfs.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace power {

namespace {

constexpr std::size_t kSector = 512;

struct Change {
    std::size_t at = 0;
    std::string bytes;
    bool truncates = false;
};

struct Disk {
    std::string synced;
    std::vector<Change> pending;
};

struct File {
    sqlite3_file base;
    Disk* disk;  // null for what needs no safety
    sqlite3_file* real;
};

sqlite3_vfs* realVfs = nullptr;
sqlite3_vfs shim;
int countdown = 0;
Fault chosen = Fault::None;
bool failed = false;
std::map<std::string, Disk>& disks() {
    static std::map<std::string, Disk> all;
    return all;
}

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// SQLITE_OK, or the error that this step is to give.
int step(int error) {
    if (failed && chosen == Fault::Cut) return error;
    if (chosen == Fault::None || failed || --countdown > 0) return SQLITE_OK;
    failed = true;
    return chosen == Fault::Full ? SQLITE_FULL : error;
}

File* of(sqlite3_file* file) {
    return reinterpret_cast<File*>(file);
}
sqlite3_file* real(sqlite3_file* file) {
    return of(file)->real;
}

void apply(std::string& content, const Change& change) {
    if (change.truncates) return content.resize(std::min(content.size(), change.at));
    content.resize(std::max(content.size(), change.at + change.bytes.size()));
    content.replace(change.at, change.bytes.size(), change.bytes);
}

int closeFile(sqlite3_file* file) {
    const int code = real(file)->pMethods->xClose(real(file));
    sqlite3_free(real(file));
    return code;
}
int readFile(sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
    return real(file)->pMethods->xRead(real(file), to, size, at);
}
int writeFile(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
    // The write that a cut meets is half there.
    const int code = step(SQLITE_IOERR_WRITE);
    if (of(file)->disk && (code == SQLITE_OK || countdown == 0)) {
        of(file)->disk->pending.push_back(
            {static_cast<std::size_t>(at), {static_cast<const char*>(from), static_cast<std::size_t>(size)}, false});
        if (code != SQLITE_OK) countdown = -1;
    }
    return code == SQLITE_OK ? real(file)->pMethods->xWrite(real(file), from, size, at) : code;
}
int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
    if (const int code = step(SQLITE_IOERR_TRUNCATE); code != SQLITE_OK) return code;
    if (of(file)->disk) of(file)->disk->pending.push_back({static_cast<std::size_t>(size), {}, true});
    return real(file)->pMethods->xTruncate(real(file), size);
}
int syncFile(sqlite3_file* file, int flags) {
    if (const int code = step(SQLITE_IOERR_FSYNC); code != SQLITE_OK) return code;
    if (Disk* disk = of(file)->disk) {
        for (const Change& change : disk->pending)
            apply(disk->synced, change);
        disk->pending.clear();
    }
    return real(file)->pMethods->xSync(real(file), flags);
}
int sizeOfFile(sqlite3_file* file, sqlite3_int64* size) {
    return real(file)->pMethods->xFileSize(real(file), size);
}
int lock(sqlite3_file* file, int level) {
    return real(file)->pMethods->xLock(real(file), level);
}
int unlock(sqlite3_file* file, int level) {
    return real(file)->pMethods->xUnlock(real(file), level);
}
int isReserved(sqlite3_file* file, int* is) {
    return real(file)->pMethods->xCheckReservedLock(real(file), is);
}
int control(sqlite3_file* file, int what, void* about) {
    return real(file)->pMethods->xFileControl(real(file), what, about);
}
int sectorSize(sqlite3_file* file) {
    return real(file)->pMethods->xSectorSize(real(file));
}
int characteristics(sqlite3_file* file) {
    return real(file)->pMethods->xDeviceCharacteristics(real(file));
}
int shmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    return real(file)->pMethods->xShmMap(real(file), page, size, extend, memory);
}
int shmLock(sqlite3_file* file, int offset, int count, int flags) {
    return real(file)->pMethods->xShmLock(real(file), offset, count, flags);
}
void shmBarrier(sqlite3_file* file) {
    real(file)->pMethods->xShmBarrier(real(file));
}
int shmUnmap(sqlite3_file* file, int remove) {
    return real(file)->pMethods->xShmUnmap(real(file), remove);
}

constexpr sqlite3_io_methods kMethods{
    2,       closeFile,  readFile,        writeFile, truncateFile, syncFile,   sizeOfFile, lock,    unlock, isReserved,
    control, sectorSize, characteristics, shmMap,    shmLock,      shmBarrier, shmUnmap,   nullptr, nullptr};

int openFile(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    file->pMethods = nullptr;
    auto* opened = static_cast<sqlite3_file*>(sqlite3_malloc(realVfs->szOsFile));
    std::memset(opened, 0, static_cast<std::size_t>(realVfs->szOsFile));
    const std::string before = name ? contentOf(name) : "";
    const int code = realVfs->xOpen(realVfs, name, opened, flags, outFlags);
    if (code != SQLITE_OK) {
        sqlite3_free(opened);
        return code;
    }
    of(file)->real = opened;
    of(file)->disk = name ? &disks().try_emplace(name, Disk{before, {}}).first->second : nullptr;
    file->pMethods = &kMethods;
    return SQLITE_OK;
}

int removeFile(sqlite3_vfs* /*vfs*/, const char* name, int sync) {
    if (failed && chosen == Fault::Cut) return SQLITE_IOERR_DELETE;
    disks().erase(name);
    return realVfs->xDelete(realVfs, name, sync);
}

}  // namespace

void install() {
    if (realVfs) return;
    realVfs = sqlite3_vfs_find(nullptr);
    shim = *realVfs;
    shim.zName = "power";
    shim.szOsFile = sizeof(File);
    shim.xOpen = openFile;
    shim.xDelete = removeFile;
    sqlite3_vfs_register(&shim, 1);
}

void failAt(int n, Fault fault) {
    countdown = n;
    chosen = fault;
    failed = false;
}

bool hasFailed() {
    return failed;
}

void restore(std::mt19937& random) {
    for (auto& [path, disk] : disks()) {
        std::string content = disk.synced;
        const unsigned kept = random() % 4;  // none, or a quarter to three quarters of the sectors
        for (const Change& change : disk.pending) {
            if (change.truncates && random() % 4 < kept) apply(content, change);
            for (std::size_t at = 0; at < change.bytes.size(); at += kSector) {
                if (random() % 4 < kept) apply(content, {change.at + at, change.bytes.substr(at, kSector), false});
            }
        }
        std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
        std::filesystem::remove(path.substr(0, path.rfind("-wal")) + "-shm");
    }
    disks().clear();
    failAt(0, Fault::None);
}

}  // namespace power
