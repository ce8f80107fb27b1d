// The Wi-Fi part of the machine's own network. The calls are those of Backend, for a daemon that runs.
#pragma once

#include <NetworkManager.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "network/backend.h"
#include "profile_store.h"

namespace network {

class Radio {
  public:
    explicit Radio(ProfileStore& store) : store_(store) {}

    int accessPoints(NMClient* client, std::vector<std::string>& ids) const;
    int accessPoint(NMClient* client, const std::string& id, AccessPoint& found) const;
    int connectedAccessPoint(NMClient* client, std::string& id) const;
    int connect(NMClient* client, const std::string& id, const std::string& passphrase, Answer answer,
                std::unique_ptr<Question>& question);
    int disconnect(NMClient* client, const std::string& id, Answer answer, std::unique_ptr<Question>& question);
    int scan(NMClient* client, Answer answer, std::unique_ptr<Question>& question) const;
    int askGateway(NMClient* client, const std::string& id, Answer answer, std::unique_ptr<Question>& question) const;
    int askOnline(NMClient* client, const std::string& url, Answer answer, std::unique_ptr<Question>& question) const;
    int store(NMClient* client, const std::string& id, const Ipv6Settings& settings) const;

  private:
    ProfileStore& store_;
    std::unique_ptr<Question> attempt_;  // goes on when nobody listens any more
    std::string attempted_;              // to which access point
};

}  // namespace network
