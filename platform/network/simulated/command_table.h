// What the tables of script commands share: their rows, their numbers, and the values that several of them write.
#pragma once

#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "scenario.h"

namespace network::simulated {

using Words = std::span<const std::string>;

struct Command {
    std::string_view name;
    std::size_t least, most;  // words after the name
    std::string_view usage;
    std::string (*apply)(State&, Words);
};

inline constexpr std::size_t kAnyNumber = 1000;

// Carries out the command that the first word names; `kind` is for the refusals. Empty, or why not.
std::string runCommand(std::span<const Command> table, std::string_view kind, State& state, Words words);

template <typename Number>
std::optional<Number> parseNumber(const std::string& text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

// Each puts what its words say into the target: a MAC address or `none`, ADDRESS/LENGTH or `none`, an address or
// `none`, addresses or `none`, and an answer with its delay in seconds, `success` being the own word for a good one.
// Empty, or why not; then nothing is changed.
std::string writeMac(std::optional<std::string>& mac, const std::string& word, bool unchecked);
std::string writeAddress(Ipv6Values& live, const std::string& word, bool unchecked);
std::string writeRouter(Ipv6Values& live, const std::string& word, bool unchecked);
std::string writeServers(Ipv6Values& live, Words words, bool unchecked);
std::string writeReply(Reply& reply, std::string_view success, Words words);

}  // namespace network::simulated
