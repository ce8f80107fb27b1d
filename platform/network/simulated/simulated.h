// A network described by a JSON file (docs/simulated-network.md).
#pragma once

#include <memory>
#include <string>

#include "backend.h"

namespace network {

// Reads the scenario and starts the clock of its events. `text` gets the file and its description; or, with a null
// result, one line that says what is wrong and where.
std::unique_ptr<Backend> openSimulated(const std::string& file, std::string& text);

}  // namespace network
