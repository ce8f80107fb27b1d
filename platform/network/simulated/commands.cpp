// Script commands of a simulated network, also used by the timed events of a scenario.
#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <sstream>

#include "result_names.h"
#include "scenario.h"
#include "values.h"

namespace network::simulated {
namespace {

using Words = std::span<const std::string>;

template <typename Number>
std::optional<Number> parseNumber(const std::string& text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

// The profile that the value commands change: the wired one that is, or with the cable in would be, connected.
ProfileRecord* wiredProfile(State& state) {
    ProfileRecord* first = nullptr;
    for (ProfileRecord& record : state.profiles) {
        if (record.whenLinked.type != CONNECTION_PROFILE_TYPE_ETHERNET) continue;
        if (record.whenLinked.state == CONNECTION_PROFILE_STATE_CONNECTED) return &record;
        if (first == nullptr) first = &record;
    }
    return first;
}

template <typename Change>
std::string changeLiveValues(State& state, Change change) {
    ProfileRecord* record = wiredProfile(state);
    if (record == nullptr) return "there is no Ethernet profile";
    return change(record->whenLinked.ipv6);
}

template <typename Change>
std::string changeInterface(State& state, Change change) {
    if (!state.ethernet) return "there is no Ethernet interface";
    return change(*state.ethernet);
}

std::string setLink(State& state, bool up) {
    return changeInterface(state, [&](EthernetInterface& ethernet) {
        ethernet.linkUp = up;
        ethernet.state.reset();
        return std::string();
    });
}

std::string unplug(State& state, Words /*words*/) {
    return setLink(state, false);
}
std::string plug(State& state, Words /*words*/) {
    return setLink(state, true);
}

std::string setEthernetState(State& state, Words words) {
    constexpr auto kStates = std::to_array<std::pair<std::string_view, int>>({
        {"connected", CONNECTION_ETHERNET_CONNECTED},
        {"disconnected", CONNECTION_ETHERNET_DISCONNECTED},
        {"deactivated", CONNECTION_ETHERNET_DEACTIVATED},
    });
    for (const auto& [name, known] : kStates) {
        if (name != words[0]) continue;
        const int value = known;
        return changeInterface(state, [&](EthernetInterface& ethernet) {
            ethernet.state = value;
            return std::string();
        });
    }
    return "\"" + words[0] + "\" is none of connected, disconnected, deactivated";
}

std::string setMac(State& state, Words words) {
    return changeInterface(state, [&](EthernetInterface& ethernet) {
        if (words[0] == "none") {
            ethernet.mac.reset();
            return std::string();
        }
        std::string fault = macFault(words[0], state.unchecked);
        if (fault.empty()) ethernet.mac = words[0];
        return fault;
    });
}

// `success` is this question's own word for a good answer.
std::string setReply(Reply& reply, std::string_view success, Words words) {
    Reply changed{reply.delay, words[0] == "silent", CONNECTION_ERROR_NONE};
    if (words.size() > 1) {
        const auto seconds = parseNumber<double>(words[1]);
        if (!seconds) return "\"" + words[1] + "\" is not a number of seconds";
        if (std::string fault = secondsFault(*seconds); !fault.empty()) return fault;
        changed.delay = *seconds;
    }
    if (!changed.silent && words[0] != success) {
        const auto result = resultOf(words[0]);
        if (!result) return "\"" + words[0] + "\" is not a result of the connection manager";
        changed.result = *result;
    }
    reply = changed;
    return "";
}

std::string setGateway(State& state, Words words) {
    return setReply(state.gateway, "answer", words);
}

std::string setInternet(State& state, Words words) {
    if (words[0] != "offline") return setReply(state.internet, "online", words);
    std::vector<std::string> asResult(words.begin(), words.end());
    asResult[0] = "OFFLINE";
    return setReply(state.internet, "online", asResult);
}

std::string setAddress(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) { return writeAddress(live, words[0], state.unchecked); });
}

std::string setRouter(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) {
        const bool none = words[0] == "none";
        std::string fault = none ? "" : addressFault(words[0], state.unchecked);
        if (fault.empty()) live.gateway = none ? "" : words[0];
        return fault;
    });
}

std::string setDns(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) -> std::string {
        const bool none = words.size() == 1 && words[0] == "none";
        for (const std::string& server : words) {
            if (std::string fault = none ? "" : addressFault(server, state.unchecked); !fault.empty()) return fault;
        }
        live.dns.assign(words.begin(), none ? words.begin() : words.end());
        return "";
    });
}

std::string addFault(State& state, Words words) {
    const auto result = resultOf(words[1]);
    if (!result) return "\"" + words[1] + "\" is not a result of the connection manager";
    for (const std::string& fault : {callFault(words[0]), errorFault(*result)}) {
        if (!fault.empty()) return fault;
    }
    Fault added{words[0], *result, 1};
    if (words.size() > 2 && words[2] == "always") {
        added.times.reset();
    } else if (words.size() > 2) {
        const auto times = parseNumber<int>(words[2]);
        if (std::string fault = timesFault(times.value_or(0)); !fault.empty()) return fault;
        added.times = times;
    }
    state.faults.push_back(added);
    return "";
}

std::string clearFaults(State& state, Words /*words*/) {
    state.faults.clear();
    return "";
}

std::string changeProfile(State& state, Words words) {
    const auto record = std::find_if(state.profiles.begin(), state.profiles.end(),
                                     [&](const ProfileRecord& known) { return known.id == words[1]; });
    if (record == state.profiles.end()) return "there is no profile \"" + words[1] + "\"";
    if (words[0] == "remove") {
        state.profiles.erase(record);
    } else if (words[0] == "connect") {
        record->whenLinked.state = CONNECTION_PROFILE_STATE_CONNECTED;
    } else if (words[0] == "disconnect") {
        record->whenLinked.state = CONNECTION_PROFILE_STATE_DISCONNECTED;
    } else {
        return "\"" + words[0] + "\" is none of connect, disconnect, remove";
    }
    return "";
}

struct Command {
    std::string_view name;
    std::size_t least, most;  // words after the name
    std::string_view usage;
    std::string (*apply)(State&, Words);
};

constexpr std::size_t kAnyNumber = 1000;
constexpr auto kCommands = std::to_array<Command>({
    {"unplug", 0, 0, "", unplug},
    {"plug", 0, 0, "", plug},
    {"ethernet", 1, 1, " connected|disconnected|deactivated", setEthernetState},
    {"mac", 1, 1, " TEXT|none", setMac},
    {"address", 1, 1, " ADDRESS/LENGTH|none", setAddress},
    {"router", 1, 1, " ADDRESS|none", setRouter},
    {"dns", 1, kAnyNumber, " ADDRESS...|none", setDns},
    {"gateway", 1, 2, " answer|silent|RESULT [SECONDS]", setGateway},
    {"internet", 1, 2, " online|offline|silent|RESULT [SECONDS]", setInternet},
    {"fault", 2, 3, " CALL RESULT [TIMES|always]", addFault},
    {"no-faults", 0, 0, "", clearFaults},
    {"profile", 2, 2, " connect|disconnect|remove ID", changeProfile},
    {"wifi", 1, 3, " on|off|lose|associate|appear|vanish|rssi|mac|address ...", applyWifiCommand},
});

std::string knownNames() {
    std::string names;
    for (const Command& command : kCommands)
        names += (names.empty() ? "" : ", ") + std::string(command.name);
    return names;
}

}  // namespace

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

std::vector<std::string> splitWords(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string applyCommand(State& state, Words words) {
    if (words.empty()) return "no network command; known: " + knownNames();
    const auto command =
        std::find_if(kCommands.begin(), kCommands.end(), [&](const Command& known) { return known.name == words[0]; });
    if (command == kCommands.end()) return "unknown network command \"" + words[0] + "\"; known: " + knownNames();
    const Words arguments = words.subspan(1);
    if (arguments.size() < command->least || arguments.size() > command->most) {
        return "usage: " + std::string(command->name) + std::string(command->usage);
    }
    return command->apply(state, arguments);
}

}  // namespace network::simulated
