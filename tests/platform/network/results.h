// Receiving what the connection manager hands out.
#pragma once

#include <arpa/inet.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace contract {

struct Results {
    std::vector<int> codes;
    std::function<void()> then = [] {};
};

inline void record(int result, void* userData) {
    auto* results = static_cast<Results*>(userData);
    results->codes.push_back(result);
    results->then();
}

// "IPv4 IPv6" of a change of address, at the end of the texts.
inline void recordAddress(const char* ipv4, const char* ipv6, void* texts) {
    static_cast<std::vector<std::string>*>(texts)->push_back(std::string(ipv4) + " " + ipv6);
}

inline std::string take(char* text) {
    std::string copy = text == nullptr ? "" : text;
    std::free(text);
    return copy;
}

// What a getter gives for a handle and further arguments: a text, empty when it fails, or a number, -1 when it fails.
template <typename Getter, typename... Arguments>
std::string text(Getter getter, Arguments... arguments) {
    char* given = nullptr;
    return getter(arguments..., &given) == 0 ? take(given) : "";
}
template <typename Number, typename Getter, typename... Arguments>
int number(Getter getter, Arguments... arguments) {
    Number given{};
    return getter(arguments..., &given) == 0 ? given : -1;
}

inline bool isAddress(const std::string& text) {
    in6_addr address{};
    return inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

}  // namespace contract
