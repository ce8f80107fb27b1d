#include "wired_network.h"

#include "connection_manager.h"
#include "ipv6_change.h"
#include "live_values.h"

namespace network {
namespace {

bool isWired(NMConnection* profile) {
    return nm_connection_is_type(profile, NM_SETTING_WIRED_SETTING_NAME);
}

bool isWired(NMActiveConnection* active) {
    return textOf(nm_active_connection_get_connection_type(active)) == NM_SETTING_WIRED_SETTING_NAME;
}

// A veth becomes wired by the profile that runs on it.
bool isWired(NMDevice* device) {
    const NMDeviceType type = nm_device_get_device_type(device);
    return type == NM_DEVICE_TYPE_ETHERNET || type == NM_DEVICE_TYPE_VETH;
}

bool hasLink(NMDevice* device) {
    return (nm_device_get_interface_flags(device) & NM_DEVICE_INTERFACE_FLAG_CARRIER) != 0;
}

bool isManaged(NMDevice* device) {
    return nm_device_get_state(device) > NM_DEVICE_STATE_UNMANAGED;
}

// The most advanced activation of a profile, or null.
NMActiveConnection* activationOf(NMClient* client, const std::string& id) {
    NMActiveConnection* best = nullptr;
    for (auto* active : itemsOf<NMActiveConnection>(nm_client_get_active_connections(client))) {
        if (!isWired(active) || id != textOf(nm_active_connection_get_uuid(active))) continue;
        if (nm_active_connection_get_state(active) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED) return active;
        best = active;
    }
    return best;
}

// The daemon keeps a profile active for some seconds after its cable is pulled; it is not connected all the same.
int profileState(NMActiveConnection* active) {
    NMDevice* device = active == nullptr ? nullptr : deviceOf(active);
    if (device == nullptr || !hasLink(device)) return CONNECTION_PROFILE_STATE_DISCONNECTED;
    switch (nm_active_connection_get_state(active)) {
        case NM_ACTIVE_CONNECTION_STATE_ACTIVATED:
            return CONNECTION_PROFILE_STATE_CONNECTED;
        case NM_ACTIVE_CONNECTION_STATE_ACTIVATING:
            return CONNECTION_PROFILE_STATE_CONFIGURATION;
        default:
            return CONNECTION_PROFILE_STATE_DISCONNECTED;
    }
}

bool isConnected(NMDevice* device) {
    NMActiveConnection* active = nm_device_get_active_connection(device);
    return active != nullptr && isWired(active) && profileState(active) == CONNECTION_PROFILE_STATE_CONNECTED;
}

int rankOf(NMDevice* device) {
    if (!isManaged(device)) return 0;
    if (isConnected(device)) return 3;
    return hasLink(device) ? 2 : 1;
}

}  // namespace

std::vector<std::string> wiredProfiles(NMClient* client, int which) {
    std::vector<std::string> ids;
    for (auto* profile : itemsOf<NMConnection>(nm_client_get_connections(client))) {
        if (!isWired(profile)) continue;
        const std::string id = textOf(nm_connection_get_uuid(profile));
        const bool connected = profileState(activationOf(client, id)) == CONNECTION_PROFILE_STATE_CONNECTED;
        if (which == CONNECTION_ITERATOR_REGISTERED || connected) ids.push_back(id);
    }
    return ids;
}

std::optional<Profile> readProfile(NMClient* client, const std::string& id) {
    NMRemoteConnection* stored = nm_client_get_connection_by_uuid(client, id.c_str());
    if (stored == nullptr || !isWired(NM_CONNECTION(stored))) return std::nullopt;
    NMActiveConnection* active = activationOf(client, id);
    Profile profile{CONNECTION_PROFILE_TYPE_ETHERNET, profileState(active), {}};
    profile.ipv6.dnsIsStatic = dnsIsStatic(NM_CONNECTION(stored));
    if (profile.state != CONNECTION_PROFILE_STATE_DISCONNECTED) readLiveValues(active, profile.ipv6);
    return profile;
}

std::optional<int> linkState(NMClient* client) {
    bool managed = false;
    for (auto* device : itemsOf<NMDevice>(nm_client_get_devices(client))) {
        if (!isWired(device) || !isManaged(device)) continue;
        if (hasLink(device)) return CONNECTION_ETHERNET_CONNECTED;
        managed = true;
    }
    if (managed) return CONNECTION_ETHERNET_DISCONNECTED;
    if (nm_client_get_startup(client)) return std::nullopt;
    return CONNECTION_ETHERNET_DEACTIVATED;
}

NMDevice* wiredDevice(NMClient* client) {
    NMDevice* best = nullptr;
    for (auto* device : itemsOf<NMDevice>(nm_client_get_devices(client))) {
        if (isWired(device) && (best == nullptr || rankOf(device) > rankOf(best))) best = device;
    }
    return best;
}

ShownAddresses shownAddresses(NMClient* client) {
    NMDevice* device = wiredDevice(client);
    return device == nullptr || !isConnected(device) ? ShownAddresses{} : shownAddressesOf(device);
}

std::optional<Neighbour> gatewayOf(NMClient* client, const std::string& id) {
    return gatewayOf(activationOf(client, id));
}

}  // namespace network
