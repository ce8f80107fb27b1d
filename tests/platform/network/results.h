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

inline std::string take(char* text) {
    std::string copy = text == nullptr ? "" : text;
    std::free(text);
    return copy;
}

inline bool isAddress(const std::string& text) {
    in6_addr address{};
    return inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

}  // namespace contract
