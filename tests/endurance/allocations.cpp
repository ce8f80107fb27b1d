// Stands before the allocators and lets the gadget's own allocations fail.
#include <dlfcn.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "injection.h"

namespace {

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Each allocator that a module may import, with the answer that it gives when memory is out.
void* outOfMemory() {
    errno = ENOMEM;
    return nullptr;
}

}  // namespace

INTERPOSED void* calloc(std::size_t count, std::size_t size) noexcept {
    static auto* const real = next<void*(std::size_t, std::size_t)>("calloc");
    return injection::allocationFault(__builtin_return_address(0)) ? outOfMemory() : real(count, size);
}

INTERPOSED void* malloc(std::size_t size) noexcept {
    static auto* const real = next<void*(std::size_t)>("malloc");
    return injection::allocationFault(__builtin_return_address(0)) ? outOfMemory() : real(size);
}

INTERPOSED char* strdup(const char* text) noexcept {
    static auto* const real = next<char*(const char*)>("strdup");
    return static_cast<char*>(injection::allocationFault(__builtin_return_address(0)) ? outOfMemory() : real(text));
}

// The operators by the names that the linker knows: new, new[], and both without exceptions.
INTERPOSED void* _Znwm(std::size_t size) {
    static auto* const real = next<void*(std::size_t)>("_Znwm");
    if (injection::allocationFault(__builtin_return_address(0))) throw std::bad_alloc();
    return real(size);
}

INTERPOSED void* _Znam(std::size_t size) {
    static auto* const real = next<void*(std::size_t)>("_Znam");
    if (injection::allocationFault(__builtin_return_address(0))) throw std::bad_alloc();
    return real(size);
}

INTERPOSED void* _ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) noexcept {
    static auto* const real = next<void*(std::size_t, const std::nothrow_t&)>("_ZnwmRKSt9nothrow_t");
    return injection::allocationFault(__builtin_return_address(0)) ? outOfMemory() : real(size, tag);
}

INTERPOSED void* _ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) noexcept {
    static auto* const real = next<void*(std::size_t, const std::nothrow_t&)>("_ZnamRKSt9nothrow_t");
    return injection::allocationFault(__builtin_return_address(0)) ? outOfMemory() : real(size, tag);
}
