// Script commands of a simulated network, also used by the timed events of a scenario.
#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

#include "command_table.h"
#include "result_names.h"
#include "values.h"

namespace network::simulated {
namespace {

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
    return changeInterface(
        state, [&](EthernetInterface& ethernet) { return writeMac(ethernet.mac, words[0], state.unchecked); });
}

std::string setGateway(State& state, Words words) {
    return writeReply(state.gateway, "answer", words);
}

std::string setInternet(State& state, Words words) {
    if (words[0] != "offline") return writeReply(state.internet, "online", words);
    std::vector<std::string> asResult(words.begin(), words.end());
    asResult[0] = "OFFLINE";
    return writeReply(state.internet, "online", asResult);
}

std::string setAddress(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) { return writeAddress(live, words[0], state.unchecked); });
}

std::string setRouter(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) { return writeRouter(live, words[0], state.unchecked); });
}

std::string setDns(State& state, Words words) {
    return changeLiveValues(state, [&](Ipv6Values& live) { return writeServers(live, words, state.unchecked); });
}

std::string addFault(State& state, Words words) {
    const auto result = resultOf(words[1]);
    if (!result) return notAResult(words[1]);
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

constexpr auto kCommands = std::to_array<Command>({
    {"unplug", 0, 0, "unplug", unplug},
    {"plug", 0, 0, "plug", plug},
    {"ethernet", 1, 1, "ethernet connected|disconnected|deactivated", setEthernetState},
    {"mac", 1, 1, "mac TEXT|none", setMac},
    {"address", 1, 1, "address ADDRESS/LENGTH|none", setAddress},
    {"router", 1, 1, "router ADDRESS|none", setRouter},
    {"dns", 1, kAnyNumber, "dns ADDRESS...|none", setDns},
    {"gateway", 1, 2, "gateway answer|silent|RESULT [SECONDS]", setGateway},
    {"internet", 1, 2, "internet online|offline|silent|RESULT [SECONDS]", setInternet},
    {"fault", 2, 3, "fault CALL RESULT [TIMES|always]", addFault},
    {"no-faults", 0, 0, "no-faults", clearFaults},
    {"profile", 2, 2, "profile connect|disconnect|remove ID", changeProfile},
    {"wifi", 0, kAnyNumber, "wifi COMMAND", applyWifiCommand},
});

}  // namespace

std::vector<std::string> splitWords(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> std::quoted(word);)
        words.push_back(word);
    return words;
}

std::string applyCommand(State& state, Words words) {
    return runCommand(kCommands, "network", state, words);
}

}  // namespace network::simulated
