// The simulated network behind the managers.
#pragma once

#include <deque>
#include <list>

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
    void observe(Observer* observer) override { observer_ = observer; }
    int injectedFault(std::string_view function) override;
    std::string command(std::span<const std::string> words) override;

  private:
    using Notice = std::function<void(Observer&)>;

    int ask(Reply State::*reply, int whenDisconnected, Answer answer, std::unique_ptr<Question>& question);
    template <typename Change>
    void announce(Change change);
    void queueNotice(Notice notice);
    void deliverNotice();

    State state_;
    Observer* observer_ = nullptr;
    std::deque<Notice> notices_;
    Timer noticeTimer_;
    std::list<Timer> eventTimers_;
};

}  // namespace network::simulated
