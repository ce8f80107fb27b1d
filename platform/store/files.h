// The files and folders that the settings store lives in.
#pragma once

#include <filesystem>
#include <string>

namespace store {

namespace fs = std::filesystem;

// Where the store lies when nobody says ($XDG_STATE_HOME or ~/.local/state). Empty without a home.
fs::path defaultPath();

// Makes the folder of `file` and those above it, each readable by its owner only and safe against a power cut.
bool makeFolders(const fs::path& file, std::string& why);

// Makes an empty file that only its owner can read, or narrows the rights of the one that is there.
bool makePrivate(const fs::path& file, std::string& why);

// Renames the database and its side files to a name with the date, so that nothing is lost. Returns it, or empty.
fs::path setAside(const fs::path& file, std::string& why);

bool isWritable(const fs::path& file);
bool isOnReadOnlyDisk(const fs::path& file);

// Held while a database is looked at, set aside or set up, so that two processes do not do so at the same time.
class FolderLock {
  public:
    FolderLock(const fs::path& file, std::string& why);  // waits for 2 s at most
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    bool held() const { return held_; }

  private:
    int folder_ = -1;
    bool held_ = false;
};

}  // namespace store
