// What a simulated network looks like from outside.
#include <algorithm>

#include "ipv6_settings.h"
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
    const bool connected = connectedProfile(state) != nullptr || connectedAccessPoint(state) != nullptr;
    return connected ? CONNECTION_TYPE_WIFI : CONNECTION_TYPE_DISCONNECTED;
}

bool hasManualAddress(const Ipv6Settings& configured) {
    return configured.isStatic.value_or(false) && configured.address;
}

namespace {

// Settings count in their static mode only, and a static mode without values leaves what the network gave.
Ipv6Values liveValues(const Ipv6Values& given, const Ipv6Settings& configured, bool renewing) {
    Ipv6Values live;
    live.dnsIsStatic = given.dnsIsStatic;
    if (!renewing) live = given;
    Ipv6Settings counting;
    counting.dnsIsStatic = configured.dnsIsStatic.value_or(live.dnsIsStatic);
    if (hasManualAddress(configured)) {
        counting.address = configured.address;
        counting.prefixLength = configured.prefixLength;
        counting.gateway = configured.gateway;
    }
    if (*counting.dnsIsStatic && !configured.dns.empty()) {
        live.dns.clear();
        counting.dns = configured.dns;
    }
    overlay(counting, live);
    return live;
}

}  // namespace

void endRenewal(State& state, std::string_view id) {
    for (ProfileRecord& record : state.profiles) {
        if (record.id == id) record.renewing = false;
    }
    if (!state.radio) return;
    for (AccessPointRecord& record : state.radio->accessPoints) {
        if (record.id == id) record.renewing = false;
    }
}

Profile seenProfile(const State& state, const ProfileRecord& record) {
    Profile seen = record.whenLinked;
    seen.ipv6 = liveValues(record.whenLinked.ipv6, record.configured, record.renewing);
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

AccessPoint seenAccessPoint(const State& state, const AccessPointRecord& record) {
    AccessPoint seen = record.whenConnected;
    const bool connected = state.radio->connected == record.id;
    seen.ipv6 = connected ? liveValues(seen.ipv6, record.configured, record.renewing) : Ipv6Values{};
    return seen;
}

const AccessPointRecord* findAccessPoint(const State& state, std::string_view id) {
    if (!state.radio || !state.radio->on) return nullptr;
    const auto place = state.radio->places.find(std::string(id));
    if (place == state.radio->places.end()) return nullptr;
    const AccessPointRecord& record = state.radio->accessPoints[place->second];
    return record.isFound ? &record : nullptr;
}

const AccessPointRecord* connectedAccessPoint(const State& state) {
    return state.radio ? findAccessPoint(state, state.radio->connected) : nullptr;
}

}  // namespace network::simulated
