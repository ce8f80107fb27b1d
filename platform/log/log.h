// Choosing how much is logged. For the host program and for tests.
#pragma once

#include <string>
#include <string_view>

#include "platform_api.h"

namespace logging {

/**
 * Sets the level of every tag, those still to come included. The toolkit's own domains keep theirs (EINA_LOG_LEVEL),
 * and a tag that EINA_LOG_LEVELS names keeps that level until this is called.
 * @param name    "silent", "fatal", "error", "warning" (the level at start), "info", "debug" or "verbose"
 * @param message one line that says what is wrong, when the result is false
 * @return false for a name that is none of these; the level then stays
 */
PLATFORM_API bool setLevel(std::string_view name, std::string& message);

}  // namespace logging
