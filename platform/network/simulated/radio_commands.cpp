// Script commands of the simulated radio: the words after "network wifi".
#include <algorithm>
#include <array>
#include <charconv>

#include "scenario.h"
#include "values.h"

namespace network::simulated {
namespace {

using Words = std::span<const std::string>;

// The first access point of that name, found or not.
AccessPointRecord* named(Radio& radio, const std::string& name) {
    const auto found = std::ranges::find_if(
        radio.accessPoints, [&](const AccessPointRecord& record) { return record.whenConnected.essid == name; });
    return found == radio.accessPoints.end() ? nullptr : &*found;
}

template <typename Change>
std::string changeNamed(State& state, const std::string& name, Change change) {
    AccessPointRecord* record = named(*state.radio, name);
    if (record == nullptr) return "there is no access point \"" + name + "\"";
    return change(*record);
}

std::string switchOn(State& state, Words /*words*/) {
    state.radio->on = true;
    return "";
}

std::string switchOff(State& state, Words /*words*/) {
    state.radio->on = false;
    state.radio->connected.clear();
    return "";
}

std::string lose(State& state, Words /*words*/) {
    state.radio->connected.clear();
    return "";
}

std::string associate(State& state, Words words) {
    return changeNamed(state, words[0], [&](const AccessPointRecord& record) -> std::string {
        if (!record.isFound || !state.radio->on) return "the access point cannot be reached";
        state.radio->connected = record.id;
        return "";
    });
}

std::string appear(State& state, Words words) {
    return changeNamed(state, words[0], [](AccessPointRecord& record) -> std::string {
        record.isFound = true;
        return "";
    });
}

std::string vanish(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) -> std::string {
        record.isFound = false;
        if (state.radio->connected == record.id) state.radio->connected.clear();
        return "";
    });
}

std::string setRssi(State& state, Words words) {
    int rssi = 0;
    const char* end = words[1].data() + words[1].size();
    const auto [stop, error] = std::from_chars(words[1].data(), end, rssi);
    if (error != std::errc{} || stop != end) return "\"" + words[1] + "\" is not a signal in dBm";
    return changeNamed(state, words[0], [&](AccessPointRecord& record) -> std::string {
        record.whenConnected.rssi = rssi;
        return "";
    });
}

std::string setMac(State& state, Words words) {
    if (words[0] == "none") {
        state.radio->mac.reset();
        return "";
    }
    std::string fault = macFault(words[0], state.unchecked);
    if (fault.empty()) state.radio->mac = words[0];
    return fault;
}

std::string setAddress(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) {
        return writeAddress(record.whenConnected.ipv6, words[1], state.unchecked);
    });
}

struct WifiCommand {
    std::string_view name;
    std::size_t words;  // after the name
    std::string_view usage;
    std::string (*apply)(State&, Words);
};

constexpr auto kCommands = std::to_array<WifiCommand>({
    {"on", 0, "", switchOn},
    {"off", 0, "", switchOff},
    {"lose", 0, "", lose},
    {"associate", 1, " NAME", associate},
    {"appear", 1, " NAME", appear},
    {"vanish", 1, " NAME", vanish},
    {"rssi", 2, " NAME DBM", setRssi},
    {"mac", 1, " TEXT|none", setMac},
    {"address", 2, " NAME ADDRESS/LENGTH|none", setAddress},
});

}  // namespace

std::string applyWifiCommand(State& state, Words words) {
    if (!state.radio) return "there is no radio";
    const auto command =
        std::ranges::find_if(kCommands, [&](const WifiCommand& known) { return known.name == words[0]; });
    if (command == kCommands.end()) return "unknown wifi command \"" + words[0] + "\"";
    if (words.size() - 1 != command->words) {
        return "usage: wifi " + std::string(command->name) + std::string(command->usage);
    }
    return command->apply(state, words.subspan(1));
}

}  // namespace network::simulated
