#include "radio.h"

#include <utility>

#include "connection_manager.h"
#include "gateway_probe.h"
#include "live_values.h"
#include "network/attempt_question.h"
#include "online_question.h"
#include "wifi_network.h"
#include "wifi_question.h"

namespace network {
namespace {

struct Found {
    NMDeviceWifi* device = nullptr;
    NMAccessPoint* accessPoint = nullptr;
};

// The radio when it is on, and one of its access points.
int find(NMClient* client, const std::string& id, Found& found) {
    if (!wifiIsOn(client)) return CONNECTION_ERROR_INVALID_OPERATION;
    found.device = wifiDevice(client);
    found.accessPoint = findAccessPoint(found.device, id);
    return found.accessPoint == nullptr ? CONNECTION_ERROR_NO_CONNECTION : CONNECTION_ERROR_NONE;
}

bool isCurrent(const Found& found) {
    return nm_device_wifi_get_active_access_point(found.device) == found.accessPoint;
}

// The profile that an access point is or would be connected with; empty: none.
std::string profileOf(NMClient* client, const Found& found) {
    NMActiveConnection* active = wifiConnection(found.device);
    if (active != nullptr && isCurrent(found)) return textOf(nm_active_connection_get_uuid(active));
    NMRemoteConnection* profile = profileFor(client, found.accessPoint);
    return profile == nullptr ? "" : textOf(nm_connection_get_uuid(NM_CONNECTION(profile)));
}

}  // namespace

int Radio::accessPoints(NMClient* client, std::vector<std::string>& ids) const {
    if (!wifiIsOn(client)) return CONNECTION_ERROR_INVALID_OPERATION;
    ids = foundAccessPoints(wifiDevice(client));
    return CONNECTION_ERROR_NONE;
}

int Radio::accessPoint(NMClient* client, const std::string& id, AccessPoint& found) const {
    Found at;
    if (find(client, id, at) != CONNECTION_ERROR_NONE) return CONNECTION_ERROR_NO_CONNECTION;
    found = readAccessPoint(client, at.device, at.accessPoint);
    const auto asked = store_.askedDnsIsStatic(profileOf(client, at));
    found.ipv6.dnsIsStatic = asked.value_or(found.ipv6.dnsIsStatic);
    return CONNECTION_ERROR_NONE;
}

int Radio::connectedAccessPoint(NMClient* client, std::string& id) const {
    NMDeviceWifi* device = wifiDevice(client);
    if (device == nullptr || wifiConnection(device) == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    NMAccessPoint* accessPoint = nm_device_wifi_get_active_access_point(device);
    if (accessPoint == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    id = textOf(nm_access_point_get_bssid(accessPoint));
    return CONNECTION_ERROR_NONE;
}

int Radio::connect(NMClient* client, const std::string& id, const std::string& passphrase, Answer answer,
                   std::unique_ptr<Question>& question) {
    Found found;
    if (const int error = find(client, id, found); error != CONNECTION_ERROR_NONE) return error;
    if (attempt_ != nullptr) return CONNECTION_ERROR_NOW_IN_PROGRESS;
    auto told = std::make_shared<Answer>(std::move(answer));
    // The attempt is over before its answer is told, because who hears it may connect again.
    const auto end = [this, told](int result) {
        attempt_.reset();
        tell(told, result);
    };
    attempted_ = id;
    attempt_ = connectWifi(client, found.device, found.accessPoint, passphrase, end);
    question = std::make_unique<AttemptQuestion>(std::move(told));
    return CONNECTION_ERROR_NONE;
}

int Radio::disconnect(NMClient* client, const std::string& id, Answer answer, std::unique_ptr<Question>& question) {
    Found found;
    if (const int error = find(client, id, found); error != CONNECTION_ERROR_NONE) return error;
    const bool isAttempted = attempt_ != nullptr && attempted_ == id;
    if (!isAttempted && !isCurrent(found)) return CONNECTION_ERROR_NO_CONNECTION;
    if (isAttempted) abortConnecting(*attempt_);
    question = disconnectWifi(client, found.device, std::move(answer));
    return CONNECTION_ERROR_NONE;
}

int Radio::scan(NMClient* client, Answer answer, std::unique_ptr<Question>& question) const {
    if (!wifiIsOn(client)) return CONNECTION_ERROR_INVALID_OPERATION;
    question = scanWifi(wifiDevice(client), std::move(answer));
    return CONNECTION_ERROR_NONE;
}

int Radio::askGateway(NMClient* client, const std::string& id, Answer answer,
                      std::unique_ptr<Question>& question) const {
    Found found;
    if (find(client, id, found) != CONNECTION_ERROR_NONE || !isCurrent(found)) return CONNECTION_ERROR_NO_CONNECTION;
    NMActiveConnection* active = wifiConnection(found.device);
    if (active == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    return probeGateway(gatewayOf(active), std::move(answer), question);
}

int Radio::askOnline(NMClient* client, const std::string& url, Answer answer,
                     std::unique_ptr<Question>& question) const {
    NMDeviceWifi* device = wifiDevice(client);
    if (device == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
    return askOnlineOver(client, NM_DEVICE(device), url, std::move(answer), question);
}

int Radio::store(NMClient* client, const std::string& id, const Ipv6Settings& settings) const {
    Found found;
    if (const int error = find(client, id, found); error != CONNECTION_ERROR_NONE) return error;
    const std::string profile = profileOf(client, found);
    return profile.empty() ? CONNECTION_ERROR_NO_CONNECTION : store_.store(client, profile, settings);
}

}  // namespace network
