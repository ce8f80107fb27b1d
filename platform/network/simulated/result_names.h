// Names of the two error tables, as scenario files and script commands write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace network::simulated {

// The code of a name without its CONNECTION_ERROR_ or WIFI_ERROR_ prefix, or of a decimal number. What both tables name
// is the connection manager's code, which the Wi-Fi manager translates as it does every other one.
std::optional<int> resultOf(std::string_view text);

// The refusal of a text that is none.
std::string notAResult(const std::string& text);

}  // namespace network::simulated
