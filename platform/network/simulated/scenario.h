// The state of a simulated network: read from a scenario file, changed by script commands and timed events.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "backend.h"
#include "connection_manager.h"

namespace network::simulated {

struct EthernetInterface {
    std::optional<std::string> mac;  // none: it cannot be read
    bool linkUp = true;
    std::optional<int> state;  // CONNECTION_ETHERNET_* where it differs from what the link says
};

struct ProfileRecord {
    std::string id;
    bool registered = true;
    Profile whenLinked;  // its state and what the network gives it while the cable is in
    Ipv6Settings configured;
    bool renewing = false;  // back in automatic mode, and the network has not given its values again yet
    std::string ipv4;       // for the address notification only
};

// How an asynchronous question is answered.
struct Reply {
    double delay = 0;  // seconds
    bool silent = false;
    int result = CONNECTION_ERROR_NONE;
};

inline constexpr int kNoAnswer = 1;  // no error number: those are negative

inline int resultOf(const Reply& reply) {
    return reply.silent ? kNoAnswer : reply.result;
}

struct AccessPointRecord {
    std::string id;
    AccessPoint whenConnected;  // with what the network gives it then
    std::string passphrase;     // the right one
    bool isFound = true;        // false: it went away
    Reply connecting;           // silent: the association never ends
    Ipv6Settings configured;
    bool renewing = false;  // as for a profile
};

struct Radio {
    bool on = true;
    std::optional<std::string> mac;  // none: it cannot be read
    std::vector<AccessPointRecord> accessPoints;
    std::unordered_map<std::string, std::size_t> places;  // of the identities: a walk asks for each of them
    std::string connected;                                // the identity of the connected one, or empty
    Reply scanning{0.5, false, CONNECTION_ERROR_NONE};
};

struct Fault {
    std::string call;
    int result = CONNECTION_ERROR_OPERATION_FAILED;
    std::optional<int> times;  // none: always
};

struct Event {
    double at = 0;  // seconds after the selection
    std::vector<std::string> words;
};

struct State {
    std::string description;
    bool unchecked = false;  // texts may be anything, and a prefix length whatever 8 bits hold
    std::optional<EthernetInterface> ethernet;
    std::vector<ProfileRecord> profiles;
    std::optional<Radio> radio;
    Reply gateway;
    Reply internet;
    double renewal = 1;  // seconds from a manual address to the automatic one
    std::vector<Fault> faults;
    std::vector<Event> events;
};

// Reads a scenario file. With no result, `error` is one line: file, place and reason.
std::optional<State> loadScenario(const std::string& file, std::string& error);

// The words of a command, parted by blanks; "quoted words" keep theirs.
std::vector<std::string> splitWords(const std::string& text);

// Carries out a script command on the state. Empty, or why not.
std::string applyCommand(State& state, std::span<const std::string> words);

// The same for the words after "wifi".
std::string applyWifiCommand(State& state, std::span<const std::string> words);

// Whether the settings replace the address that the network gives.
bool hasManualAddress(const Ipv6Settings& configured);

// The network gives its values again to the profile or access point of that identity.
void endRenewal(State& state, std::string_view id);

// What the network looks like from outside, with the cable taken into account.
bool linkIsUp(const State& state);
int connectionType(const State& state);  // CONNECTION_TYPE_*
int ethernetState(const State& state);   // CONNECTION_ETHERNET_*
Profile seenProfile(const State& state, const ProfileRecord& record);
bool isConnected(const State& state, const ProfileRecord& record);
const ProfileRecord* findProfile(const State& state, std::string_view id);
const ProfileRecord* connectedProfile(const State& state);  // the first one, or null
AccessPoint seenAccessPoint(const State& state, const AccessPointRecord& record);
// A found access point while the radio is on, or null.
const AccessPointRecord* findAccessPoint(const State& state, std::string_view id);
const AccessPointRecord* connectedAccessPoint(const State& state);

}  // namespace network::simulated
