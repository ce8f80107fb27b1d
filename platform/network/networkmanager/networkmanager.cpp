#include "networkmanager.h"

#include <chrono>
#include <optional>
#include <utility>

#include "connection_manager.h"
#include "daemon_client.h"
#include "gateway_probe.h"
#include "glib_bridge.h"
#include "network/backend.h"
#include "network/timer.h"
#include "online_question.h"
#include "platform_log.h"
#include "profile_store.h"
#include "radio.h"
#include "wifi_network.h"
#include "wired_network.h"

namespace network {
namespace {

constexpr std::chrono::milliseconds kOpenLimit{2000};
constexpr double kSettleSeconds = 0.5;

class NetworkManagerBackend final : public Backend {
  public:
    explicit NetworkManagerBackend(Options options) : options_(std::move(options)), daemon_([this] { compare(); }) {}

    bool open(std::string& error) {
        if (!daemon_.open(kOpenLimit, error)) return false;
        if (NMClient* client = daemon_.running()) {
            link_ = knownLink(client);
            overWifi_ = connectedOverWifi(client);
            addresses_ = currentAddresses(client);
        }
        return true;
    }

    int ethernetState(int& state) override {
        NMClient* client = daemon_.running();
        const auto found = client == nullptr ? std::nullopt : linkState(client);
        if (!found) return CONNECTION_ERROR_OPERATION_FAILED;
        state = *found;
        return CONNECTION_ERROR_NONE;
    }

    // A hardware address outlives the daemon: the last one is kept for the time without it.
    int macAddress(int connectionType, std::string& mac) override {
        if (connectionType == CONNECTION_TYPE_WIFI) return wifiMacAddress(mac);
        if (connectionType != CONNECTION_TYPE_ETHERNET) return CONNECTION_ERROR_NO_CONNECTION;
        if (NMClient* client = daemon_.running()) rememberMac(client);
        if (mac_.empty()) return CONNECTION_ERROR_NO_CONNECTION;
        mac = mac_;
        return CONNECTION_ERROR_NONE;
    }

    int profiles(int which, std::vector<std::string>& ids) override {
        NMClient* client = daemon_.running();
        if (client == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        ids = wiredProfiles(client, which);
        return CONNECTION_ERROR_NONE;
    }

    int profile(const std::string& id, Profile& profile) override {
        NMClient* client = daemon_.running();
        auto found = client == nullptr ? std::nullopt : readProfile(client, id);
        if (!found) return CONNECTION_ERROR_NO_CONNECTION;
        profile = std::move(*found);
        profile.ipv6.dnsIsStatic = store_.askedDnsIsStatic(id).value_or(profile.ipv6.dnsIsStatic);
        return CONNECTION_ERROR_NONE;
    }

    int store(const std::string& id, const Ipv6Settings& settings) override {
        NMClient* client = daemon_.running();
        return client == nullptr ? CONNECTION_ERROR_OPERATION_FAILED : store_.store(client, id, settings);
    }

    bool isStoring() const override { return store_.isWriting(); }

    int askGateway(const std::string& profileId, Answer answer, std::unique_ptr<Question>& question) override {
        Profile asked;
        if (const int error = profile(profileId, asked); error != CONNECTION_ERROR_NONE) return error;
        if (asked.state != CONNECTION_PROFILE_STATE_CONNECTED) return CONNECTION_ERROR_NO_CONNECTION;
        return probeGateway(gatewayOf(daemon_.running(), profileId), std::move(answer), question);
    }

    int askOnline(Answer answer, std::unique_ptr<Question>& question) override {
        NMClient* client = daemon_.running();
        if (client == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        NMDevice* device = wiredDevice(client);
        if (device == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
        return askOnlineOver(client, device, options_.onlineUrl, std::move(answer), question);
    }

    int wifiActivated(bool& activated) override {
        NMClient* client = daemon_.running();
        if (client == nullptr) return CONNECTION_ERROR_OPERATION_FAILED;
        activated = wifiIsOn(client);
        return CONNECTION_ERROR_NONE;
    }
    int accessPoints(std::vector<std::string>& ids) override { return onRadio(&Radio::accessPoints, ids); }
    int accessPoint(const std::string& id, AccessPoint& found) override {
        return onRadio(&Radio::accessPoint, id, found);
    }
    int connectedAccessPoint(std::string& id) override { return onRadio(&Radio::connectedAccessPoint, id); }
    int connectAccessPoint(const std::string& id, const std::string& passphrase, Answer answer,
                           std::unique_ptr<Question>& question) override {
        return onRadio(&Radio::connect, id, passphrase, std::move(answer), question);
    }
    int disconnectAccessPoint(const std::string& id, Answer answer, std::unique_ptr<Question>& question) override {
        return onRadio(&Radio::disconnect, id, std::move(answer), question);
    }
    int scan(Answer answer, std::unique_ptr<Question>& question) override {
        return onRadio(&Radio::scan, std::move(answer), question);
    }
    int askAccessPointGateway(const std::string& id, Answer answer, std::unique_ptr<Question>& question) override {
        return onRadio(&Radio::askGateway, id, std::move(answer), question);
    }
    int askWifiOnline(Answer answer, std::unique_ptr<Question>& question) override {
        return onRadio(&Radio::askOnline, options_.onlineUrl, std::move(answer), question);
    }
    int storeAccessPoint(const std::string& id, const Ipv6Settings& settings) override {
        return onRadio(&Radio::store, id, settings);
    }

    void observe(Observer* observer) override { observer_ = observer; }

  private:
    template <typename Call, typename... Arguments>
    int onRadio(Call call, Arguments&&... arguments) {
        NMClient* client = daemon_.running();
        return client == nullptr ? static_cast<int>(CONNECTION_ERROR_OPERATION_FAILED)
                                 : (radio_.*call)(client, std::forward<Arguments>(arguments)...);
    }

    int wifiMacAddress(std::string& mac) const {
        NMClient* client = daemon_.running();
        NMDeviceWifi* device = client == nullptr ? nullptr : wifiDevice(client);
        const char* found = device == nullptr ? nullptr : nm_device_get_hw_address(NM_DEVICE(device));
        if (found == nullptr) return CONNECTION_ERROR_NO_CONNECTION;
        mac = found;
        return CONNECTION_ERROR_NONE;
    }

    void rememberMac(NMClient* client) {
        NMDevice* device = wiredDevice(client);
        const char* found = device == nullptr ? nullptr : nm_device_get_hw_address(device);
        if (found != nullptr) mac_ = found;
    }

    // What is told of the cable. An unmanaged device says nothing about it, and neither do devices that go just before
    // the daemon itself does.
    std::optional<int> knownLink(NMClient* client) {
        const auto link = linkState(client);
        if (link != CONNECTION_ETHERNET_DEACTIVATED) {
            withoutDeviceSince_.reset();
            return link;
        }
        if (wiredDevice(client) != nullptr) return std::nullopt;
        const double now = ecore_time_get();
        if (!withoutDeviceSince_) withoutDeviceSince_ = now;
        if (now - *withoutDeviceSince_ >= kSettleSeconds) return link;
        settle_.start(kSettleSeconds, [this] { compare(); });
        return std::nullopt;
    }

    // What is unknown while the daemon is away is no change; that it is known again is one.
    void compare() {
        NMClient* client = daemon_.running();
        if (client != nullptr) rememberMac(client);
        const auto link = client == nullptr ? std::nullopt : knownLink(client);
        const bool overWifi = client == nullptr ? overWifi_ : connectedOverWifi(client);
        const bool linkChanged = (link && link != link_) || overWifi != overWifi_;
        link_ = link;
        overWifi_ = overWifi;
        const ShownAddresses addresses = client == nullptr ? addresses_ : currentAddresses(client);
        const bool addressesChanged = !(addresses == addresses_);
        addresses_ = addresses;
        if (!addresses.settled) settle_.start(kSettleSeconds, [this] { compare(); });
        notify(linkChanged, addressesChanged);
    }

    // The cable comes before the radio, as it does in the routes.
    int connectionType() const {
        if (link_ == CONNECTION_ETHERNET_CONNECTED) return CONNECTION_TYPE_ETHERNET;
        return overWifi_ ? CONNECTION_TYPE_WIFI : CONNECTION_TYPE_DISCONNECTED;
    }

    static bool connectedOverWifi(NMClient* client) {
        NMDeviceWifi* device = wifiDevice(client);
        return device != nullptr && wifiConnection(device) != nullptr;
    }

    static ShownAddresses currentAddresses(NMClient* client) {
        const bool overWifi = linkState(client) != CONNECTION_ETHERNET_CONNECTED && connectedOverWifi(client);
        return overWifi ? shownAddressesOf(NM_DEVICE(wifiDevice(client))) : shownAddresses(client);
    }

    // An observer may take this backend away from inside its callback.
    void notify(bool linkChanged, bool addressesChanged) {
        const std::weak_ptr<bool> alive = alive_;
        if (linkChanged && observer_ != nullptr) {
            observer_->connectionTypeChanged(connectionType());
        }
        if (addressesChanged && !alive.expired() && observer_ != nullptr) {
            observer_->addressChanged(addresses_.ipv4, addresses_.ipv6);
        }
    }

    const Options options_;
    Observer* observer_ = nullptr;
    std::optional<int> link_;  // nullopt: unknown
    bool overWifi_ = false;
    std::optional<double> withoutDeviceSince_;
    ShownAddresses addresses_;
    std::string mac_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Timer settle_;
    DaemonClient daemon_;
    ProfileStore store_;
    Radio radio_{store_};
};

}  // namespace

std::unique_ptr<Backend> openNetworkManager(const Options& options, std::string& error) {
    auto backend = std::make_unique<NetworkManagerBackend>(options);
    if (!backend->open(error)) return nullptr;
    return backend;
}

}  // namespace network
