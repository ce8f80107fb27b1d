// Counts what must not happen: allocations in one run of each piece, and texts made of log lines.
#include <dlfcn.h>

#include <cstddef>
#include <cstdio>
#include <exception>

#include "subjects.h"

namespace {

constexpr int kLines = 1000;

constinit std::size_t allocationCount = 0;

// The next definition of a function after ours.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int linesMade(bool listening) {
    micro::setListening(listening);
    int made = 0;
    for (int line = 0; line < kLines; ++line)
        made += micro::logLine() ? 1 : 0;
    return made;
}

}  // namespace

// These take the C library's place in the whole program; operator new comes here too.
extern "C" [[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
    static auto* const original = next<void*(std::size_t)>("malloc");
    ++allocationCount;
    return original(size);
}

extern "C" [[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
    static auto* const original = next<void*(std::size_t, std::size_t)>("calloc");
    ++allocationCount;
    return original(count, size);
}

extern "C" [[gnu::visibility("default")]] void* realloc(void* block, std::size_t size) noexcept {
    static auto* const original = next<void*(void*, std::size_t)>("realloc");
    ++allocationCount;
    return original(block, size);
}

int main() try {
    for (const micro::Subject& subject : micro::subjects()) {
        subject.run();
        const std::size_t before = allocationCount;
        subject.run();
        std::printf("%s %zu\n", subject.name.c_str(), allocationCount - before);
    }
    std::printf("lines-silent %d\n", linesMade(false));
    std::printf("lines-heard %d\n", linesMade(true));
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "micro-allocations: %s\n", failure.what());
    return 1;
}
