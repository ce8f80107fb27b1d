// Shared by the parts of the preloaded library that makes what the gadget calls fail.
#pragma once

#include <string_view>

#define INTERPOSED extern "C" __attribute__((visibility("default")))

namespace injection {

// Whether the code at that address belongs to the module that is being tested.
bool isGadgets(const void* address);

/**
 * Counts one platform call of the gadget.
 * @param caller the return address; calls of the host are neither counted nor failed
 * @return the error that this call shall have, or 0
 */
int platformFault(const char* function, const void* caller);

// Counts one allocation of the gadget. True when it shall fail.
bool allocationFault(const void* caller);

// How long an answer is to be kept back: 0 not at all, negative for ever.
double secondsToHold();

// What every text of the platform, or of the catalogues, shall be; null: it stays as it is.
const char* platformText();
const char* catalogueText();

// Something came when it must not come any more.
void complain(std::string_view what, const char* function);

// A command that a script gives by `set-store endurance/NAME VALUE`. False when the key is the store's own.
bool takeCommand(std::string_view key, const char* value);

// Timers of the gadget that are running now.
int liveTimers();

}  // namespace injection
