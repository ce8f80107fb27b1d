// What counts as a possible value, for scenario files and script commands alike.
#pragma once

#include <string>
#include <string_view>

namespace network::simulated {

// Each returns an empty text, or what is wrong with the value. `unchecked`: any text without a NUL will do.
std::string addressFault(const std::string& text, bool unchecked);
std::string macFault(const std::string& text, bool unchecked);
std::string prefixLengthFault(long long value, bool unchecked);
std::string rssiFault(long long value);
std::string textFault(const std::string& text);

// For faults: the boundary function, the error that it shall give, and how many times.
std::string callFault(const std::string& call);
std::string errorFault(int result);
std::string timesFault(long long times);

constexpr double kLongestTime = 86400;  // seconds
std::string secondsFault(double value);

}  // namespace network::simulated
