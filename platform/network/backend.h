// What a network looks like to the managers: one interface, met by the simulated network and by the machine's own.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "connection_manager.h"

namespace network {

// The live IPv6 values of one profile. Empty texts: there is none.
struct Ipv6Values {
    std::string address;  // without prefix length, RFC 5952 text form
    std::optional<std::uint8_t> prefixLength;
    std::string gateway;
    std::vector<std::string> dns;  // in the order of their use
    bool dnsIsStatic = false;
};

struct Profile {
    int type = 0;   // CONNECTION_PROFILE_TYPE_*
    int state = 0;  // CONNECTION_PROFILE_STATE_*
    Ipv6Values ipv6;
};

// One access point as the radio finds it.
struct AccessPoint {
    std::string essid;  // any bytes
    std::string bssid;
    int rssi = 0;                     // dBm
    int security = 0;                 // WIFI_SECURITY_*
    bool passphraseRequired = false;  // no connection without one
    Ipv6Values ipv6;                  // empty while it is not connected
};

// IPv6 settings to change; what is absent stays as it is. Checked already: addresses are unicast ones, the prefix
// length is 1 to 128, and an empty gateway or server means that there shall be none.
struct Ipv6Settings {
    std::optional<bool> isStatic;
    std::optional<std::string> address;
    std::optional<std::uint8_t> prefixLength;
    std::optional<std::string> gateway;
    std::optional<bool> dnsIsStatic;
    std::map<int, std::string> dns;  // by order of use, from 1
};

// The answer to an asynchronous question: CONNECTION_ERROR_NONE or the error that came of it.
using Answer = std::function<void(int result)>;

// A question under way. Destroying it withdraws the question: its Answer is not called any more. Its owner may destroy
// it from inside its own Answer, and may even release the whole backend there.
class Question {
  public:
    virtual ~Question() = default;
};

// Told of changes, on the main loop, never from inside a call into the backend.
class Observer {
  public:
    virtual ~Observer() = default;
    virtual void connectionTypeChanged(int connectionType) = 0;  // CONNECTION_TYPE_*
    virtual void addressChanged(const std::string& ipv4, const std::string& ipv6) = 0;
};

// Every call returns a code of the connection error table and writes its out argument only on success. Answers come on
// the main loop in a later iteration than the call, and every question ends by itself: the gateway's within 5 s, the
// online one within 10 s (unless a simulated scenario asks for silence).
class Backend {
  public:
    virtual ~Backend() = default;

    virtual int ethernetState(int& state) = 0;  // CONNECTION_ETHERNET_*
    virtual int macAddress(int connectionType, std::string& mac) = 0;

    // Stable identities of the profiles; which: CONNECTION_ITERATOR_*.
    virtual int profiles(int which, std::vector<std::string>& ids) = 0;
    // The profile as it is now; NO_CONNECTION once it is gone.
    virtual int profile(const std::string& id, Profile& profile) = 0;

    virtual int askGateway(const std::string& profileId, Answer answer, std::unique_ptr<Question>& question) = 0;
    virtual int askOnline(Answer answer, std::unique_ptr<Question>& question) = 0;

    // Stores the settings in the profile and applies them when it is connected. A static mode may come before its
    // values: the profile keeps the live ones until then.
    virtual int store(const std::string& /*id*/, const Ipv6Settings& /*settings*/) {
        return CONNECTION_ERROR_OPERATION_FAILED;
    }

    // The radio. Access points have stable identities, found ones are listed in the order of their finding. Without
    // a radio the calls fail with what is written here.
    virtual int wifiActivated(bool& activated) {
        activated = false;
        return CONNECTION_ERROR_NONE;
    }
    virtual int accessPoints(std::vector<std::string>& /*ids*/) { return CONNECTION_ERROR_INVALID_OPERATION; }
    // The access point as it is now; NO_CONNECTION once it is gone.
    virtual int accessPoint(const std::string& /*id*/, AccessPoint& /*found*/) {
        return CONNECTION_ERROR_NO_CONNECTION;
    }
    virtual int connectedAccessPoint(std::string& /*id*/) { return CONNECTION_ERROR_NO_CONNECTION; }
    // NOLINTBEGIN(performance-unnecessary-value-param): who answers keeps the Answer; only these refusals do not.
    // Ends within 30 s: INVALID_KEY for a wrong passphrase, NO_CONNECTION for a network that went away, NO_REPLY for
    // an association that never ends, DHCP_FAILED, or OPERATION_ABORTED. The passphrase goes to the network only.
    virtual int connectAccessPoint(const std::string& /*id*/, const std::string& /*passphrase*/, Answer /*answer*/,
                                   std::unique_ptr<Question>& /*question*/) {
        return CONNECTION_ERROR_INVALID_OPERATION;
    }
    virtual int disconnectAccessPoint(const std::string& /*id*/, Answer /*answer*/,
                                      std::unique_ptr<Question>& /*question*/) {
        return CONNECTION_ERROR_INVALID_OPERATION;
    }
    virtual int scan(Answer /*answer*/, std::unique_ptr<Question>& /*question*/) {
        return CONNECTION_ERROR_INVALID_OPERATION;
    }
    virtual int askAccessPointGateway(const std::string& /*id*/, Answer /*answer*/,
                                      std::unique_ptr<Question>& /*question*/) {
        return CONNECTION_ERROR_NO_CONNECTION;
    }
    virtual int askWifiOnline(Answer /*answer*/, std::unique_ptr<Question>& /*question*/) {
        return CONNECTION_ERROR_INVALID_OPERATION;
    }
    // NOLINTEND(performance-unnecessary-value-param)
    virtual int storeAccessPoint(const std::string& /*id*/, const Ipv6Settings& /*settings*/) {
        return CONNECTION_ERROR_OPERATION_FAILED;
    }

    // Whether stored settings are still on their way to the network.
    virtual bool isStoring() const { return false; }

    // At most one observer; null takes it away.
    virtual void observe(Observer* observer) = 0;

    // A failure that a scenario wants from the named boundary function, or 0. Asked once for each call.
    virtual int injectedFault(std::string_view /*function*/) { return 0; }

    // A script's "network …" command. Returns an empty text, or why it could not be carried out.
    virtual std::string command(std::span<const std::string> /*words*/) {
        return "this network cannot be changed by a script";
    }
};

}  // namespace network
