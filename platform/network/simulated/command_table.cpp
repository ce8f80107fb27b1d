#include "command_table.h"

#include <algorithm>

#include "result_names.h"
#include "values.h"

namespace network::simulated {
namespace {

std::string namesOf(std::span<const Command> table) {
    std::string names;
    for (const Command& command : table)
        names += (names.empty() ? "" : ", ") + std::string(command.name);
    return names;
}

}  // namespace

std::string runCommand(std::span<const Command> table, std::string_view kind, State& state, Words words) {
    const std::string what = std::string(kind) + " command";
    if (words.empty()) return "no " + what + "; known: " + namesOf(table);
    const auto command = std::ranges::find(table, words[0], &Command::name);
    if (command == table.end()) return "unknown " + what + " \"" + words[0] + "\"; known: " + namesOf(table);
    const Words arguments = words.subspan(1);
    if (arguments.size() < command->least || arguments.size() > command->most) {
        return "usage: " + std::string(command->usage);
    }
    return command->apply(state, arguments);
}

std::string writeMac(std::optional<std::string>& mac, const std::string& word, bool unchecked) {
    if (word == "none") {
        mac.reset();
        return "";
    }
    std::string fault = macFault(word, unchecked);
    if (fault.empty()) mac = word;
    return fault;
}

std::string writeAddress(Ipv6Values& live, const std::string& word, bool unchecked) {
    if (word == "none") {
        live.address.clear();
        live.prefixLength.reset();
        return "";
    }
    const auto slash = word.rfind('/');
    if (slash == std::string::npos) return "an address is written ADDRESS/LENGTH";
    const std::string address = word.substr(0, slash);
    const auto length = parseNumber<int>(word.substr(slash + 1));
    if (!length) return "\"" + word.substr(slash + 1) + "\" is not a prefix length";
    for (const std::string& fault : {addressFault(address, unchecked), prefixLengthFault(*length, unchecked)}) {
        if (!fault.empty()) return fault;
    }
    live.address = address;
    live.prefixLength = static_cast<std::uint8_t>(*length);
    return "";
}

std::string writeRouter(Ipv6Values& live, const std::string& word, bool unchecked) {
    const bool none = word == "none";
    std::string fault = none ? "" : addressFault(word, unchecked);
    if (fault.empty()) live.gateway = none ? "" : word;
    return fault;
}

std::string writeServers(Ipv6Values& live, Words words, bool unchecked) {
    const bool none = words.size() == 1 && words[0] == "none";
    for (const std::string& server : words) {
        if (std::string fault = none ? "" : addressFault(server, unchecked); !fault.empty()) return fault;
    }
    live.dns.assign(words.begin(), none ? words.begin() : words.end());
    return "";
}

std::string writeReply(Reply& reply, std::string_view success, Words words) {
    Reply changed{reply.delay, words[0] == "silent", CONNECTION_ERROR_NONE};
    if (words.size() > 1) {
        const auto seconds = parseNumber<double>(words[1]);
        if (!seconds) return "\"" + words[1] + "\" is not a number of seconds";
        if (std::string fault = secondsFault(*seconds); !fault.empty()) return fault;
        changed.delay = *seconds;
    }
    if (!changed.silent && words[0] != success) {
        const auto result = resultOf(words[0]);
        if (!result) return notAResult(words[0]);
        changed.result = *result;
    }
    reply = changed;
    return "";
}

}  // namespace network::simulated
