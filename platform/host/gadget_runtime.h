// The one gadget that the host runs: loading, lifecycle and the deferred end. Main loop only.
#pragma once

#include <functional>
#include <string>

#include "gadget_host.h"

namespace host {

enum class OpenFailure {
    kNone,
    kModuleMissing,      // no such file, or not readable
    kModuleNotLoadable,  // the dynamic linker refuses it
    kEntryMissing,       // UG_MODULE_INIT or UG_MODULE_EXIT is not exported
    kInitRefused,        // UG_MODULE_INIT did not return 0
    kNoView,             // create returned null
};

struct OpenResult {
    OpenFailure failure = OpenFailure::kNone;
    std::string message;  // one line that says what failed and where; empty on success
};

// The window that ug_get_window hands out: an Evas_Object, or null. It stays the caller's. A null window also unloads
// the modules of closed gadgets: as long as there is a window, it may hold widgets that they forgot.
PLATFORM_API void setWindow(void* window);

/**
 * Loads the module and brings its gadget up: INIT, create, start. One gadget at a time.
 * @param file     the module's path
 * @param onClosed called once after the gadget's EXIT, from the main loop; not called when opening fails
 * @return what failed. A gadget that was initialised but gave no view has had destroy and EXIT by then.
 */
PLATFORM_API OpenResult openGadget(const std::string& file, std::function<void()> onClosed);

PLATFORM_API bool isGadgetOpen();

// Asks for the end as ug_destroy_me does, in a later iteration of the main loop.
PLATFORM_API void closeGadgetLater();

// Ends the gadget at once: for the way out of the program, never from inside one of the gadget's callbacks.
PLATFORM_API void closeGadgetNow();

// Each is delivered only when it changes the gadget's state, so pauses and resumes alternate.
PLATFORM_API void pauseGadget();
PLATFORM_API void resumeGadget();

PLATFORM_API void sendMessage(ug_data message);
PLATFORM_API void sendEvent(int event);

}  // namespace host
