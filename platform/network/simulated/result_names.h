// Names of the connection error table, as scenario files and script commands write them.
#pragma once

#include <optional>
#include <string_view>

namespace network::simulated {

// The code of a name without its CONNECTION_ERROR_ prefix, or of a decimal number.
std::optional<int> resultOf(std::string_view text);

}  // namespace network::simulated
