// Stores IPv6 settings in NetworkManager's profiles, behind the caller's back, and applies them without dropping the
// link.
#pragma once

#include <NetworkManager.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "network/backend.h"

namespace network {

class ProfileStore {
  public:
    ProfileStore() = default;
    ~ProfileStore();
    ProfileStore(const ProfileStore&) = delete;
    ProfileStore& operator=(const ProfileStore&) = delete;

    /**
     * Takes the settings and returns; the profile is written in later iterations. Later failures are logged. What
     * NetworkManager cannot hold yet (a manual mode without an address) waits here until its values come.
     * @param id the profile's UUID, wired or wireless
     * @return NO_CONNECTION: there is no such profile. INVALID_OPERATION: it is read-only. OPERATION_FAILED: changing
     *         it is not permitted. INVALID_PARAMETER: NetworkManager would refuse the result.
     */
    int store(NMClient* client, const std::string& id, const Ipv6Settings& settings);

    // Whether something is being written, or about to be. What waits for its values is not.
    bool isWriting() const;

    // The DNS mode that was asked for and is not in the profile yet.
    std::optional<bool> askedDnsIsStatic(const std::string& id) const;

  private:
    struct Work;
    std::map<std::string, std::shared_ptr<Work>> works_;  // by UUID
};

}  // namespace network
