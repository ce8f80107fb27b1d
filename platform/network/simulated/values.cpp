#include "values.h"

#include <arpa/inet.h>
#include <dlfcn.h>

#include <array>
#include <regex>

namespace network::simulated {
namespace {

constexpr int kAddressBits = 128;
constexpr int kEightBits = 255;
constexpr int kStrongest = 127;  // dBm, and its negative the weakest
constexpr int kMostTimes = 1'000'000;

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

}  // namespace

std::string textFault(const std::string& text) {
    return text.find('\0') == std::string::npos ? "" : "a text cannot hold a NUL character";
}

std::string addressFault(const std::string& text, bool unchecked) {
    if (std::string fault = textFault(text); !fault.empty() || unchecked) return fault;
    std::array<unsigned char, sizeof(in6_addr)> address{};
    return inet_pton(AF_INET6, text.c_str(), address.data()) == 1 ? "" : quoted(text) + " is not an IPv6 address";
}

std::string macFault(const std::string& text, bool unchecked) {
    if (std::string fault = textFault(text); !fault.empty() || unchecked) return fault;
    static const std::regex form("([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}");
    return std::regex_match(text, form) ? "" : quoted(text) + " is not a MAC address (six pairs of hexadecimal digits)";
}

std::string prefixLengthFault(long long value, bool unchecked) {
    const int most = unchecked ? kEightBits : kAddressBits;
    if (value >= 0 && value <= most) return "";
    return std::to_string(value) + " is not a prefix length (0 to " + std::to_string(most) + ")";
}

std::string rssiFault(long long value) {
    if (value >= -kStrongest && value <= kStrongest) return "";
    return std::to_string(value) + " is not a signal in dBm (-127 to 127)";
}

// The boundary's own symbols are the list of what can fail.
std::string callFault(const std::string& call) {
    const bool isService = call.starts_with("connection_") || call.starts_with("wifi_");
    if (textFault(call).empty() && isService && dlsym(RTLD_DEFAULT, call.c_str()) != nullptr) return "";
    return quoted(call) + " is not a function of the connection or Wi-Fi manager";
}

std::string errorFault(int result) {
    return result == 0 ? "a fault needs an error, not success" : "";
}

std::string timesFault(long long times) {
    if (times >= 1 && times <= kMostTimes) return "";
    return "times must be \"always\" or lie between 1 and " + std::to_string(kMostTimes);
}

std::string secondsFault(double value) {
    if (value >= 0 && value <= kLongestTime) return "";
    return "seconds must lie between 0 and " + std::to_string(static_cast<int>(kLongestTime));
}

}  // namespace network::simulated
