#include "store/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <thread>

namespace store {

namespace {

constexpr mode_t kOwnerFolder = 0700;
constexpr mode_t kOwnerFile = 0600;
constexpr std::array kSuffixes{"", "-wal", "-shm"};
constexpr auto kLockPause = std::chrono::milliseconds(10);
constexpr int kLockAttempts = 200;  // 2 s in all, as long as a busy database is waited for

std::string reason(const fs::path& path) {
    return path.string() + ": " + std::strerror(errno);
}

fs::path withSuffix(fs::path path, std::string_view suffix) {
    return path += suffix;
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// The entry of a new file or folder is on the disk only once its folder is.
void syncFolder(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    ::close(descriptor);
}

std::string utcStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc);
    return text;
}

fs::path freeName(const fs::path& file) {
    const fs::path dated = withSuffix(file, ".set-aside-" + utcStamp());
    fs::path name = dated;
    for (int count = 2; fs::exists(fs::symlink_status(name)); ++count) {
        name = withSuffix(dated, std::string(".").append(std::to_string(count)));
    }
    return name;
}

}  // namespace

fs::path defaultPath() {
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/') return fs::path(state) / "gadget/settings.db";
    const char* home = std::getenv("HOME");
    if (home && *home == '/') return fs::path(home) / ".local/state/gadget/settings.db";
    return {};
}

bool makeFolders(const fs::path& file, std::string& why) {
    fs::path folder;
    for (const fs::path& part : file.parent_path()) {
        folder /= part;
        if (mkdir(folder.c_str(), kOwnerFolder) == 0) {
            syncFolder(folderOf(folder));
        } else if (errno != EEXIST || !fs::is_directory(folder)) {
            if (errno == EEXIST) errno = ENOTDIR;
            why = "cannot make the folder " + reason(folder);
            return false;
        }
    }
    return true;
}

bool makePrivate(const fs::path& file, std::string& why) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerFile);
    if (descriptor >= 0) {
        ::close(descriptor);
        syncFolder(folderOf(file));
        return true;
    }
    struct stat about {};
    if (errno != EEXIST || stat(file.c_str(), &about) != 0) {
        why = reason(file);
        return false;
    }
    if (!S_ISREG(about.st_mode)) {
        why = file.string() + ": not a regular file";
        return false;
    }
    for (const char* suffix : kSuffixes) {
        const fs::path side = withSuffix(file, suffix);
        if (stat(side.c_str(), &about) == 0 && (about.st_mode & 077)) chmod(side.c_str(), kOwnerFile);
    }
    return true;
}

fs::path setAside(const fs::path& file, std::string& why) {
    fs::path name = freeName(file);
    for (const char* suffix : kSuffixes) {
        const fs::path from = withSuffix(file, suffix);
        if (rename(from.c_str(), withSuffix(name, suffix).c_str()) == 0 || errno == ENOENT) continue;
        why = "cannot set aside " + reason(from);
        return {};
    }
    syncFolder(folderOf(file));
    return name;
}

bool isWritable(const fs::path& file) {
    return access(file.c_str(), W_OK) == 0;
}

bool isOnReadOnlyDisk(const fs::path& file) {
    struct statvfs about {};
    return statvfs(file.c_str(), &about) == 0 && (about.f_flag & ST_RDONLY);
}

FolderLock::FolderLock(const fs::path& file, std::string& why) {
    const fs::path path = folderOf(file);
    folder_ = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int attempt = 0; folder_ >= 0 && attempt < kLockAttempts; ++attempt) {
        held_ = flock(folder_, LOCK_EX | LOCK_NB) == 0;
        if (held_) return;
        std::this_thread::sleep_for(kLockPause);
    }
    why = "cannot lock the folder " + reason(path);
}

FolderLock::~FolderLock() {
    if (folder_ >= 0) ::close(folder_);
}

}  // namespace store
