#include "simulated_network.h"

#include <Eina.h>

#include <algorithm>

#include "ipv6_settings.h"
#include "simulated.h"
#include "snapshot.h"

namespace network {
namespace simulated {
namespace {

struct TimedQuestion final : Question {
    Timer timer;
};

struct Addresses {
    std::string ipv4, ipv6;
    bool operator==(const Addresses&) const = default;
};

Addresses addressesOf(const State& state) {
    if (const ProfileRecord* record = connectedProfile(state)) {
        return {record->ipv4, seenProfile(state, *record).ipv6.address};
    }
    const AccessPointRecord* connected = connectedAccessPoint(state);
    return connected == nullptr ? Addresses{} : Addresses{"", seenAccessPoint(state, *connected).ipv6.address};
}

}  // namespace

SimulatedNetwork::SimulatedNetwork(State state) : state_(std::move(state)) {
    for (const Event& event : state_.events) {
        eventTimers_.emplace_back().start(event.at, [this, words = event.words] {
            if (const std::string fault = command(words); !fault.empty()) EINA_LOG_ERR("event: %s", fault.c_str());
        });
    }
}

int SimulatedNetwork::ethernetState(int& state) {
    state = simulated::ethernetState(state_);
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::macAddress(int connectionType, std::string& mac) {
    std::optional<std::string> own;
    if (connectionType == CONNECTION_TYPE_ETHERNET && state_.ethernet) own = state_.ethernet->mac;
    if (connectionType == CONNECTION_TYPE_WIFI && state_.radio) own = state_.radio->mac;
    if (!own) return CONNECTION_ERROR_NO_CONNECTION;
    mac = *own;
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::profiles(int which, std::vector<std::string>& ids) {
    ids.clear();
    for (const ProfileRecord& record : state_.profiles) {
        const bool listed = which == CONNECTION_ITERATOR_CONNECTED ? isConnected(state_, record) : record.registered;
        if (listed) ids.push_back(record.id);
    }
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::profile(const std::string& id, Profile& profile) {
    const ProfileRecord* record = findProfile(state_, id);
    if (record == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    profile = seenProfile(state_, *record);
    return CONNECTION_ERROR_NONE;
}

// What is answered is decided when the time has come: the cable may have been pulled meanwhile.
int SimulatedNetwork::ask(const Reply& reply, std::function<int()> judge, Answer answer,
                          std::unique_ptr<Question>& question) {
    auto asked = std::make_unique<TimedQuestion>();
    const bool started =
        reply.silent || asked->timer.start(reply.delay, [judge = std::move(judge), answer = std::move(answer)] {
            const int result = judge();
            if (result != kNoAnswer) answer(result);
        });
    if (!started) return CONNECTION_ERROR_OPERATION_FAILED;
    question = std::move(asked);
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::askGateway(const std::string& profileId, Answer answer, std::unique_ptr<Question>& question) {
    const ProfileRecord* record = findProfile(state_, profileId);
    if (record == nullptr || !isConnected(state_, *record)) return CONNECTION_ERROR_NO_CONNECTION;
    if (seenProfile(state_, *record).ipv6.gateway.empty()) return CONNECTION_ERROR_INVALID_GATEWAY;
    const auto judge = [this] {
        return connectedProfile(state_) == nullptr ? CONNECTION_ERROR_NO_CONNECTION : resultOf(state_.gateway);
    };
    return ask(state_.gateway, judge, std::move(answer), question);
}

int SimulatedNetwork::askOnline(Answer answer, std::unique_ptr<Question>& question) {
    const auto judge = [this] {
        return connectedProfile(state_) == nullptr ? CONNECTION_ERROR_OFFLINE : resultOf(state_.internet);
    };
    return ask(state_.internet, judge, std::move(answer), question);
}

int SimulatedNetwork::injectedFault(std::string_view function) {
    const auto fault = std::find_if(state_.faults.begin(), state_.faults.end(),
                                    [&](const Fault& known) { return known.call == function; });
    if (fault == state_.faults.end()) return 0;
    const int result = fault->result;
    if (fault->times && --*fault->times == 0) state_.faults.erase(fault);
    return result;
}

std::string SimulatedNetwork::command(std::span<const std::string> words) {
    if (words.size() == 2 && words[0] == "save") return saveState(state_, words[1]);
    std::string fault;
    announce([&] { fault = applyCommand(state_, words); });
    return fault;
}

int SimulatedNetwork::store(const std::string& id, const Ipv6Settings& settings) {
    const auto record = std::find_if(state_.profiles.begin(), state_.profiles.end(),
                                     [&](const ProfileRecord& known) { return known.id == id; });
    if (record == state_.profiles.end()) return CONNECTION_ERROR_NO_CONNECTION;
    configure(*record, settings);
    return CONNECTION_ERROR_NONE;
}

// Carries out a change of the state and queues what the observer must hear of it.
void SimulatedNetwork::announce(const std::function<void()>& change) {
    const int typeBefore = connectionType(state_);
    const Addresses addressesBefore = addressesOf(state_);
    change();
    if (const int type = connectionType(state_); type != typeBefore) {
        queueNotice([type](Observer& observer) { observer.connectionTypeChanged(type); });
    }
    if (const Addresses now = addressesOf(state_); now != addressesBefore) {
        queueNotice([now](Observer& observer) { observer.addressChanged(now.ipv4, now.ipv6); });
    }
}

void SimulatedNetwork::queueNotice(Notice notice) {
    notices_.push_back(std::move(notice));
    if (!noticeTimer_.isRunning()) noticeTimer_.start(0, [this] { deliverNotice(); });
}

// One notice for each iteration, and nothing after it: its receiver may release this network.
void SimulatedNetwork::deliverNotice() {
    const Notice notice = std::move(notices_.front());
    notices_.pop_front();
    if (!notices_.empty()) noticeTimer_.start(0, [this] { deliverNotice(); });
    if (observer_ != nullptr) notice(*observer_);
}

}  // namespace simulated

std::unique_ptr<Backend> openSimulated(const std::string& file, std::string& text) {
    auto state = simulated::loadScenario(file, text);
    if (!state) return nullptr;
    text = state->description.empty() ? file : file + " (" + state->description + ")";
    return std::make_unique<simulated::SimulatedNetwork>(std::move(*state));
}

}  // namespace network
