// Choosing the file of the settings store. For the host program, its tools and tests.
#pragma once

#include <string>

#include "platform_api.h"

namespace store {

/**
 * Opens a store in place of the one that is open. Without this call the first access opens the default one.
 * A file that is damaged, of another program or of a newer version is set aside under a dated name, with a warning in
 * the log, and a fresh one started.
 * @param path    the file; empty: $XDG_STATE_HOME/gadget/settings.db, or ~/.local/state/gadget/settings.db
 * @param message one line that says what is wrong, when the result is false
 * @return false when it cannot be opened; each access then tries again, and fails as long as this stays so
 */
PLATFORM_API bool open(const std::string& path, std::string& message);

/** Closes the store and forgets its path: the next access opens the default one. */
PLATFORM_API void close();

}  // namespace store
