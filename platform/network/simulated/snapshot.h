// A simulated network as a scenario file: what a script's `network save` leaves for whoever looks at it afterwards.
#pragma once

#include <string>

#include "scenario.h"

namespace network::simulated {

// Writes interface, profiles, radio and answers, without faults and events. Live values are those that are seen now.
// Empty, or why the file could not be written.
std::string saveState(const State& state, const std::string& file);

}  // namespace network::simulated
