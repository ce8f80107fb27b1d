// For callbacks of the toolkit: it is written in C, and no exception may pass through it.
#pragma once

#include <new>

#include "Common/Log.h"

// Runs the body; what it could not finish for want of memory is left undone, with a line in the log.
// False when memory was out.
template <typename Body>
bool unlessOutOfMemory(Body body) {
    try {
        body();
        return true;
    } catch (const std::bad_alloc&) {
        LOG_ERROR("Memory is out\n");
        return false;
    }
}
