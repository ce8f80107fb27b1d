// Script commands of the simulated radio: the words after "network wifi".
#include <algorithm>
#include <array>

#include "command_table.h"
#include "values.h"

namespace network::simulated {
namespace {

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
    const auto rssi = parseNumber<int>(words[1]);
    if (!rssi) return "\"" + words[1] + "\" is not a signal in dBm";
    if (std::string fault = rssiFault(*rssi); !fault.empty()) return fault;
    return changeNamed(state, words[0], [&](AccessPointRecord& record) -> std::string {
        record.whenConnected.rssi = *rssi;
        return "";
    });
}

std::string setMac(State& state, Words words) {
    return writeMac(state.radio->mac, words[0], state.unchecked);
}

std::string setAddress(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) {
        return writeAddress(record.whenConnected.ipv6, words[1], state.unchecked);
    });
}

std::string setRouter(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) {
        return writeRouter(record.whenConnected.ipv6, words[1], state.unchecked);
    });
}

std::string setDns(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) {
        return writeServers(record.whenConnected.ipv6, words.subspan(1), state.unchecked);
    });
}

std::string setConnecting(State& state, Words words) {
    return changeNamed(state, words[0], [&](AccessPointRecord& record) {
        return writeReply(record.connecting, "success", words.subspan(1));
    });
}

constexpr auto kCommands = std::to_array<Command>({
    {"on", 0, 0, "wifi on", switchOn},
    {"off", 0, 0, "wifi off", switchOff},
    {"lose", 0, 0, "wifi lose", lose},
    {"associate", 1, 1, "wifi associate NAME", associate},
    {"appear", 1, 1, "wifi appear NAME", appear},
    {"vanish", 1, 1, "wifi vanish NAME", vanish},
    {"rssi", 2, 2, "wifi rssi NAME DBM", setRssi},
    {"mac", 1, 1, "wifi mac TEXT|none", setMac},
    {"address", 2, 2, "wifi address NAME ADDRESS/LENGTH|none", setAddress},
    {"router", 2, 2, "wifi router NAME ADDRESS|none", setRouter},
    {"dns", 2, kAnyNumber, "wifi dns NAME ADDRESS...|none", setDns},
    {"connect", 2, 3, "wifi connect NAME success|silent|RESULT [SECONDS]", setConnecting},
});

}  // namespace

std::string applyWifiCommand(State& state, Words words) {
    return state.radio ? runCommand(kCommands, "wifi", state, words) : "there is no radio";
}

}  // namespace network::simulated
