// Reading a scenario file into the state of a simulated network.
#include "scenario.h"

#include <algorithm>

#include "json_reader.h"
#include "result_names.h"
#include "scenario_reader.h"
#include "values.h"

namespace network::simulated {
namespace {

double readSeconds(const Node& node) {
    const double seconds = node.number();
    node.require(secondsFault(seconds));
    return seconds;
}

std::string readAddress(const Node& node, bool unchecked) {
    std::string text = node.text();
    node.require(addressFault(text, unchecked));
    return text;
}

std::uint8_t readPrefixLength(const Node& node, bool unchecked) {
    const long long length = node.whole();
    node.require(prefixLengthFault(length, unchecked));
    return static_cast<std::uint8_t>(length);
}

bool readDnsMode(const Node& node) {
    return node.choice<bool>({{"static", true}, {"dynamic", false}});
}

// A result by name or by number.
int readResult(const Node& node) {
    const std::string text = node.isText() ? node.text() : std::to_string(node.whole());
    const auto result = resultOf(text);
    if (!result) node.fail(notAResult(text));
    return *result;
}

}  // namespace

Reply readReply(const Node& node) {
    node.allow({"delay", "result"});
    Reply reply;
    if (const auto delay = node.find("delay")) reply.delay = readSeconds(*delay);
    const Node result = node.at("result");
    reply.silent = result.isText() && result.text() == "silence";
    if (!reply.silent) reply.result = readResult(result);
    return reply;
}

namespace {

EthernetInterface readInterface(const Node& node, bool unchecked) {
    node.allow({"kind", "mac", "link", "state"});
    node.at("kind").choice<bool>({{"ethernet", true}});
    EthernetInterface ethernet;
    if (const auto mac = node.find("mac"); mac && !mac->isNull()) {
        ethernet.mac = mac->text();
        mac->require(macFault(*ethernet.mac, unchecked));
    }
    if (const auto link = node.find("link")) ethernet.linkUp = link->choice<bool>({{"up", true}, {"down", false}});
    if (const auto state = node.find("state")) {
        ethernet.state = state->choice<int>({{"connected", CONNECTION_ETHERNET_CONNECTED},
                                             {"disconnected", CONNECTION_ETHERNET_DISCONNECTED},
                                             {"deactivated", CONNECTION_ETHERNET_DEACTIVATED}});
    }
    return ethernet;
}

void readInterfaces(const Node& list, State& state) {
    for (const Node& node : list.items()) {
        if (state.ethernet) node.fail("a second Ethernet interface; there can be one");
        state.ethernet = readInterface(node, state.unchecked);
    }
}

}  // namespace

Ipv6Values readLiveValues(const Node& node, bool unchecked) {
    node.allow({"address", "prefixLength", "gateway", "dns", "dnsMode"});
    Ipv6Values live;
    if (const auto address = node.find("address")) live.address = readAddress(*address, unchecked);
    if (const auto length = node.find("prefixLength")) {
        live.prefixLength = readPrefixLength(*length, unchecked);
    }
    if (const auto gateway = node.find("gateway")) live.gateway = readAddress(*gateway, unchecked);
    if (const auto servers = node.find("dns")) {
        for (const Node& server : servers->items())
            live.dns.push_back(readAddress(server, unchecked));
    }
    if (const auto mode = node.find("dnsMode")) {
        live.dnsIsStatic = readDnsMode(*mode);
    }
    return live;
}

// Values that are left out are not configured.
Ipv6Settings readConfigured(const Node& node, bool unchecked) {
    node.allow({"mode", "address", "prefixLength", "gateway", "dnsMode", "dns"});
    Ipv6Settings configured;
    if (const auto mode = node.find("mode")) {
        configured.isStatic = mode->choice<bool>({{"static", true}, {"automatic", false}});
    }
    if (const auto address = node.find("address")) configured.address = readAddress(*address, unchecked);
    if (const auto length = node.find("prefixLength")) configured.prefixLength = readPrefixLength(*length, unchecked);
    if (const auto gateway = node.find("gateway")) configured.gateway = readAddress(*gateway, unchecked);
    if (const auto mode = node.find("dnsMode")) configured.dnsIsStatic = readDnsMode(*mode);
    if (const auto servers = node.find("dns")) {
        int order = 0;
        for (const Node& server : servers->items())
            configured.dns[++order] = readAddress(server, unchecked);
    }
    return configured;
}

namespace {

ProfileRecord readProfile(const Node& node, bool unchecked) {
    node.allow({"id", "type", "state", "registered", "live", "configured", "ipv4Address"});
    ProfileRecord record;
    record.id = node.at("id").text();
    node.at("id").require(record.id.empty() ? "must not be empty" : textFault(record.id));
    record.whenLinked.type = node.at("type").choice<int>(
        {{"ethernet", CONNECTION_PROFILE_TYPE_ETHERNET}, {"wifi", CONNECTION_PROFILE_TYPE_WIFI}});
    record.whenLinked.state = node.at("state").choice<int>({{"connected", CONNECTION_PROFILE_STATE_CONNECTED},
                                                            {"configuration", CONNECTION_PROFILE_STATE_CONFIGURATION},
                                                            {"association", CONNECTION_PROFILE_STATE_ASSOCIATION},
                                                            {"disconnected", CONNECTION_PROFILE_STATE_DISCONNECTED}});
    if (const auto registered = node.find("registered")) record.registered = registered->flag();
    if (const auto live = node.find("live")) record.whenLinked.ipv6 = readLiveValues(*live, unchecked);
    if (const auto set = node.find("configured")) record.configured = readConfigured(*set, unchecked);
    if (const auto ipv4 = node.find("ipv4Address")) {
        record.ipv4 = ipv4->text();
        ipv4->require(textFault(record.ipv4));
    }
    return record;
}

void readProfiles(const Node& list, State& state) {
    for (const Node& node : list.items()) {
        ProfileRecord record = readProfile(node, state.unchecked);
        if (findProfile(state, record.id) != nullptr) node.at("id").fail("a second profile \"" + record.id + "\"");
        state.profiles.push_back(std::move(record));
    }
}

Fault readFault(const Node& node) {
    node.allow({"call", "result", "times"});
    Fault fault;
    fault.call = node.at("call").text();
    node.at("call").require(callFault(fault.call));
    fault.result = readResult(node.at("result"));
    node.at("result").require(errorFault(fault.result));
    const auto times = node.find("times");
    if (!times || (times->isText() && times->text() == "always")) return fault;
    const long long count = times->whole();
    times->require(timesFault(count));
    fault.times = static_cast<int>(count);
    return fault;
}

// Tries the events one after the other on a copy, so that a scenario that cannot be played is refused now.
void readEvents(const Node& list, State& state) {
    State played = state;
    double last = 0;
    for (const Node& node : list.items()) {
        node.allow({"at", "do"});
        Event event{readSeconds(node.at("at")), splitWords(node.at("do").text())};
        if (event.at < last) node.at("at").fail("events must stand in the order of their time");
        last = event.at;
        node.at("do").require(applyCommand(played, event.words));
        state.events.push_back(std::move(event));
    }
}

State readScenario(const Node& root) {
    root.allow({"description", "unchecked", "interfaces", "profiles", "wifi", "gateway", "internet", "renewal",
                "faults", "events"});
    State state;
    if (const auto node = root.find("description")) state.description = node->text();
    if (const auto node = root.find("unchecked")) state.unchecked = node->flag();
    readInterfaces(root.at("interfaces"), state);
    readProfiles(root.at("profiles"), state);
    if (const auto node = root.find("wifi")) state.radio = readRadio(*node, state.unchecked);
    state.gateway = readReply(root.at("gateway"));
    state.internet = readReply(root.at("internet"));
    if (const auto node = root.find("renewal")) state.renewal = readSeconds(*node);
    if (const auto list = root.find("faults")) {
        for (const Node& node : list->items())
            state.faults.push_back(readFault(node));
    }
    if (const auto list = root.find("events")) readEvents(*list, state);
    return state;
}

}  // namespace

std::optional<State> loadScenario(const std::string& file, std::string& error) {
    try {
        const nlohmann::json document = parseFile(file);
        return readScenario(Node(document));
    } catch (const ReadError& reason) {
        error = file + ": " + reason.what();
        std::replace(error.begin(), error.end(), '\n', ' ');
        return std::nullopt;
    }
}

}  // namespace network::simulated
