// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

// The entry point of each target, called with one input at a time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Ends the program when what must hold does not, also in builds without assertions.
inline void require(bool holds, const char* what, std::string_view about = "") {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s: %.*s\n", what, static_cast<int>(about.size()), about.data());
    std::abort();
}

// Draws values from an input until it is used up; then every number is 0 and every text empty.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool empty() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return static_cast<std::uint8_t>(first);
    }

    // At most `length` bytes.
    std::string text(std::size_t length) {
        std::string taken(rest_.substr(0, length));
        rest_.remove_prefix(taken.size());
        return taken;
    }
    // The same up to the first byte that is zero.
    std::string cText(std::size_t length) {
        const std::string taken = text(length);
        return taken.substr(0, taken.find('\0'));
    }

  private:
    std::string_view rest_;
};

// A folder of this process, gone when it ends.
class Folder {
  public:
    Folder() {
        std::string name = std::filesystem::temp_directory_path() / "fuzz-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "a folder can be made", name);
        path_ = name;
    }
    ~Folder() {
        std::error_code none;
        std::filesystem::remove_all(path_, none);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::filesystem::path operator/(const char* name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

}  // namespace fuzz
