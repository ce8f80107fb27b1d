// The radio of a simulated network: access points, connecting, and their questions.
#include <algorithm>

#include "attempt_question.h"
#include "ipv6_settings.h"
#include "simulated_network.h"

namespace network::simulated {
namespace {

constexpr double kAssociationLimit = 30;  // seconds

}  // namespace

int SimulatedNetwork::wifiActivated(bool& activated) {
    activated = state_.radio && state_.radio->on;
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::accessPoints(std::vector<std::string>& ids) {
    if (!state_.radio || !state_.radio->on) return CONNECTION_ERROR_INVALID_OPERATION;
    ids.clear();
    for (const AccessPointRecord& record : state_.radio->accessPoints) {
        if (record.isFound) ids.push_back(record.id);
    }
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::accessPoint(const std::string& id, AccessPoint& found) {
    const AccessPointRecord* record = findAccessPoint(state_, id);
    if (record == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    found = seenAccessPoint(state_, *record);
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::connectedAccessPoint(std::string& id) {
    const AccessPointRecord* record = simulated::connectedAccessPoint(state_);
    if (record == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    id = record->id;
    return CONNECTION_ERROR_NONE;
}

int SimulatedNetwork::connectAccessPoint(const std::string& id, const std::string& passphrase, Answer answer,
                                         std::unique_ptr<Question>& question) {
    const AccessPointRecord* record = findAccessPoint(state_, id);
    if (record == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    if (attempt_) return CONNECTION_ERROR_NOW_IN_PROGRESS;
    auto shared = std::make_shared<Answer>(std::move(answer));
    attempt_.emplace(id, passphrase, shared);
    const double delay = std::min(record->connecting.delay, kAssociationLimit);
    if (!attempt_->timer.start(record->connecting.silent ? kAssociationLimit : delay,
                               [this] { endAttempt(outcomeOf(*attempt_)); })) {
        attempt_.reset();
        return CONNECTION_ERROR_OPERATION_FAILED;
    }
    question = std::make_unique<AttemptQuestion>(std::move(shared));
    return CONNECTION_ERROR_NONE;
}

// What comes of an attempt whose time has come.
int SimulatedNetwork::outcomeOf(const Attempt& attempt) const {
    const AccessPointRecord* record = findAccessPoint(state_, attempt.id);
    if (record == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    const bool isTooLate = record->connecting.delay >= kAssociationLimit;
    if (record->connecting.silent || isTooLate) return CONNECTION_ERROR_NO_REPLY;
    if (record->whenConnected.passphraseRequired && attempt.passphrase != record->passphrase) {
        return CONNECTION_ERROR_INVALID_KEY;
    }
    return record->connecting.result;
}

void SimulatedNetwork::endAttempt(int result) {
    const std::string id = attempt_->id;
    const std::shared_ptr<Answer> answer = attempt_->answer;
    attempt_.reset();
    if (result == CONNECTION_ERROR_NONE) announce([&] { state_.radio->connected = id; });
    tell(answer, result);
}

int SimulatedNetwork::disconnectAccessPoint(const std::string& id, Answer answer, std::unique_ptr<Question>& question) {
    const bool aborts = attempt_ && attempt_->id == id;
    const bool connected = state_.radio && state_.radio->connected == id;
    if (!aborts && !connected) return CONNECTION_ERROR_NO_CONNECTION;
    const auto judge = [this, id] {
        if (state_.radio->connected == id) announce([&] { state_.radio->connected.clear(); });
        // At last: who hears of it may release this network.
        if (attempt_ && attempt_->id == id) endAttempt(CONNECTION_ERROR_OPERATION_ABORTED);
        return CONNECTION_ERROR_NONE;
    };
    return ask(Reply{}, judge, std::move(answer), question);
}

int SimulatedNetwork::scan(Answer answer, std::unique_ptr<Question>& question) {
    if (!state_.radio || !state_.radio->on) return CONNECTION_ERROR_INVALID_OPERATION;
    const auto judge = [this] {
        return state_.radio->on ? resultOf(state_.radio->scanning) : CONNECTION_ERROR_INVALID_OPERATION;
    };
    return ask(state_.radio->scanning, judge, std::move(answer), question);
}

int SimulatedNetwork::askAccessPointGateway(const std::string& id, Answer answer, std::unique_ptr<Question>& question) {
    const AccessPointRecord* record = simulated::connectedAccessPoint(state_);
    if (record == nullptr || record->id != id) return CONNECTION_ERROR_NO_CONNECTION;
    if (seenAccessPoint(state_, *record).ipv6.gateway.empty()) return CONNECTION_ERROR_INVALID_GATEWAY;
    const auto judge = [this, id] {
        const AccessPointRecord* then = simulated::connectedAccessPoint(state_);
        return then == nullptr || then->id != id ? CONNECTION_ERROR_NO_CONNECTION : resultOf(state_.gateway);
    };
    return ask(state_.gateway, judge, std::move(answer), question);
}

int SimulatedNetwork::askWifiOnline(Answer answer, std::unique_ptr<Question>& question) {
    const auto judge = [this] {
        return simulated::connectedAccessPoint(state_) == nullptr ? CONNECTION_ERROR_OFFLINE
                                                                  : resultOf(state_.internet);
    };
    return ask(state_.internet, judge, std::move(answer), question);
}

int SimulatedNetwork::storeAccessPoint(const std::string& id, const Ipv6Settings& settings) {
    if (findAccessPoint(state_, id) == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    const auto record = std::ranges::find(state_.radio->accessPoints, id, &AccessPointRecord::id);
    configure(*record, settings);
    return CONNECTION_ERROR_NONE;
}

}  // namespace network::simulated
