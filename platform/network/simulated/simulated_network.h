// The simulated network behind the managers.
#pragma once

#include <deque>
#include <list>
#include <map>
#include <utility>

#include "ipv6_settings.h"
#include "scenario.h"
#include "timer.h"

namespace network::simulated {

class SimulatedNetwork final : public Backend {
  public:
    explicit SimulatedNetwork(State state);

    int ethernetState(int& state) override;
    int macAddress(int connectionType, std::string& mac) override;
    int profiles(int which, std::vector<std::string>& ids) override;
    int profile(const std::string& id, Profile& profile) override;
    int store(const std::string& id, const Ipv6Settings& settings) override;
    int askGateway(const std::string& profileId, Answer answer, std::unique_ptr<Question>& question) override;
    int askOnline(Answer answer, std::unique_ptr<Question>& question) override;
    int wifiActivated(bool& activated) override;
    int accessPoints(std::vector<std::string>& ids) override;
    int accessPoint(const std::string& id, AccessPoint& found) override;
    int connectedAccessPoint(std::string& id) override;
    int connectAccessPoint(const std::string& id, const std::string& passphrase, Answer answer,
                           std::unique_ptr<Question>& question) override;
    int disconnectAccessPoint(const std::string& id, Answer answer, std::unique_ptr<Question>& question) override;
    int scan(Answer answer, std::unique_ptr<Question>& question) override;
    int askAccessPointGateway(const std::string& id, Answer answer, std::unique_ptr<Question>& question) override;
    int askWifiOnline(Answer answer, std::unique_ptr<Question>& question) override;
    int storeAccessPoint(const std::string& id, const Ipv6Settings& settings) override;
    void observe(Observer* observer) override { observer_ = observer; }
    int injectedFault(std::string_view function) override;
    std::string command(std::span<const std::string> words) override;

  private:
    using Notice = std::function<void(Observer&)>;

    // A connection under way. The question may be withdrawn while the attempt goes on.
    struct Attempt {
        Attempt(std::string identity, std::string given, std::shared_ptr<Answer> whoAsked)
            : id(std::move(identity)), passphrase(std::move(given)), answer(std::move(whoAsked)) {}

        std::string id;
        std::string passphrase;
        std::shared_ptr<Answer> answer;
        Timer timer;
    };

    int ask(const Reply& reply, std::function<int()> judge, Answer answer, std::unique_ptr<Question>& question);
    int outcomeOf(const Attempt& attempt) const;
    void endAttempt(int result);
    template <typename Record>
    void configure(Record& record, const Ipv6Settings& changes);
    void announce(const std::function<void()>& change);
    void queueNotice(Notice notice);
    void deliverNotice();

    State state_;
    std::optional<Attempt> attempt_;
    Observer* observer_ = nullptr;
    std::deque<Notice> notices_;
    Timer noticeTimer_;
    std::list<Timer> eventTimers_;
    std::map<std::string, Timer> renewals_;  // by the identity of the profile or access point
};

// Stores changed settings in a profile or access point. Back from a manual address, the network's own values take a
// while, as they would when a router is asked for them.
template <typename Record>
void SimulatedNetwork::configure(Record& record, const Ipv6Settings& changes) {
    announce([&] {
        const bool wasManual = hasManualAddress(record.configured);
        merge(changes, record.configured);
        const bool isManual = hasManualAddress(record.configured);
        record.renewing = !isManual && (wasManual || record.renewing);
    });
    if (!record.renewing || renewals_[record.id].isRunning()) return;
    renewals_[record.id].start(state_.renewal, [this, id = record.id] { announce([&] { endRenewal(state_, id); }); });
}

}  // namespace network::simulated
