// What the sanitizers start with in every program of ours; ASAN_OPTIONS and LSAN_OPTIONS in the environment win.
// Names and meaning: LLVM's sanitizer/asan_interface.h and sanitizer/lsan_interface.h.
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>

#pragma GCC visibility push(default)

// Two frames tell who allocated; whole stacks take three times as long, since the toolkit has no frame pointers:
// ASAN_OPTIONS=fast_unwind_on_malloc=0:malloc_context_size=64 shows them. The tests preload their clock first.
const char* __asan_default_options() {
    return "verify_asan_link_order=0:malloc_context_size=2";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// Lost by the toolkit, whoever uses it: 16 bytes for each of its layout objects, 87 for each of its own modules. The
// loader's list is known to the sanitizer only as long as nobody stands before malloc.
const char* __lsan_default_suppressions() {
    return "leak:libevas.so\nleak:eina_module_new\nleak:add_to_global_resize\n";
}

#pragma GCC visibility pop
