// What a simulated network looks like from outside.
#include <algorithm>

#include "scenario.h"

namespace network::simulated {

bool linkIsUp(const State& state) {
    return state.ethernet && state.ethernet->linkUp;
}

int ethernetState(const State& state) {
    if (!state.ethernet) return CONNECTION_ETHERNET_DEACTIVATED;
    const int byLink = state.ethernet->linkUp ? CONNECTION_ETHERNET_CONNECTED : CONNECTION_ETHERNET_DISCONNECTED;
    return state.ethernet->state.value_or(byLink);
}

int connectionType(const State& state) {
    if (linkIsUp(state)) return CONNECTION_TYPE_ETHERNET;
    return connectedProfile(state) == nullptr ? CONNECTION_TYPE_DISCONNECTED : CONNECTION_TYPE_WIFI;
}

Profile seenProfile(const State& state, const ProfileRecord& record) {
    Profile seen = record.whenLinked;
    if (seen.type == CONNECTION_PROFILE_TYPE_ETHERNET && !linkIsUp(state)) {
        seen.state = CONNECTION_PROFILE_STATE_DISCONNECTED;
    }
    if (seen.state == CONNECTION_PROFILE_STATE_DISCONNECTED) seen.ipv6 = {};
    return seen;
}

bool isConnected(const State& state, const ProfileRecord& record) {
    return seenProfile(state, record).state == CONNECTION_PROFILE_STATE_CONNECTED;
}

const ProfileRecord* findProfile(const State& state, std::string_view id) {
    const auto found = std::find_if(state.profiles.begin(), state.profiles.end(),
                                    [&](const ProfileRecord& record) { return record.id == id; });
    return found == state.profiles.end() ? nullptr : &*found;
}

const ProfileRecord* connectedProfile(const State& state) {
    const auto found = std::find_if(state.profiles.begin(), state.profiles.end(),
                                    [&](const ProfileRecord& record) { return isConnected(state, record); });
    return found == state.profiles.end() ? nullptr : &*found;
}

}  // namespace network::simulated
