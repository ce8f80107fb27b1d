// Connecting to an access point.
#include <algorithm>
#include <optional>

#include "radio_request.h"
#include "wifi_manager.h"
#include "wifi_network.h"
#include "wifi_passphrase.h"
#include "wifi_question.h"

namespace network {
namespace {

constexpr double kConnectLimit = 28;     // seconds; the answer comes within 30
constexpr double kTidyingLimit = 2;      // for what is left of an attempt that failed
constexpr double kReasonSettling = 0.2;  // the device's reason may follow the end of its activation

struct ReasonRow {
    NMDeviceStateReason reason;
    int result;
};

// NetworkManager has no reason for a wrong passphrase: it asks for a new one, and nobody has any.
constexpr ReasonRow kReasons[] = {
    {NM_DEVICE_STATE_REASON_NO_SECRETS, CONNECTION_ERROR_INVALID_KEY},
    {NM_DEVICE_STATE_REASON_IP_CONFIG_UNAVAILABLE, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_IP_CONFIG_EXPIRED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_START_FAILED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_ERROR, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_DHCP_FAILED, CONNECTION_ERROR_DHCP_FAILED},
    {NM_DEVICE_STATE_REASON_SSID_NOT_FOUND, CONNECTION_ERROR_NO_CONNECTION},
    {NM_DEVICE_STATE_REASON_SUPPLICANT_TIMEOUT, CONNECTION_ERROR_NO_REPLY},
    {NM_DEVICE_STATE_REASON_USER_REQUESTED, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_NEW_ACTIVATION, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_CONNECTION_REMOVED, CONNECTION_ERROR_OPERATION_ABORTED},
    {NM_DEVICE_STATE_REASON_SLEEPING, CONNECTION_ERROR_OPERATION_ABORTED},
};

int resultOf(NMDeviceStateReason reason) {
    const auto* row = std::ranges::find(kReasons, reason, &ReasonRow::reason);
    return row == std::end(kReasons) ? CONNECTION_ERROR_OPERATION_FAILED : row->result;
}

// Fails only after what it began has been taken back: the activation, a new profile, another passphrase.
class Connecting final : public RadioRequest {
  public:
    Connecting(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint, Answer answer)
        : RadioRequest(device, std::move(answer)),
          client_(NM_CLIENT(g_object_ref(client))),
          path_(nm_object_get_path(NM_OBJECT(accessPoint))) {}

    void start(NMAccessPoint* accessPoint, const std::string& passphrase) {
        limitTo(kConnectLimit);
        const int security = securityOf(accessPoint);
        const bool hasPassphrase = takesPassphrase(security) && !passphrase.empty();
        if (hasPassphrase && !canBePassphrase(security, passphrase)) return finishLater(CONNECTION_ERROR_INVALID_KEY);
        NMRemoteConnection* profile = profileFor(client_.get(), accessPoint);
        if (profile == nullptr) return connectAnew(security, passphrase);
        profile_.reset(NM_REMOTE_CONNECTION(g_object_ref(profile)));
        if (!hasPassphrase) return activate();
        trial_.emplace(profile);
        trial_->start(security, passphrase, [this](GError* failure) {
            if (failure != nullptr) return conclude(codeOf("storing the passphrase", failure));
            activate();
        });
    }

    // The answer to be: the attempt ends when the daemon has told what it made of it. The first result counts.
    void conclude(int result) {
        if (result_ || isFinished()) return;
        result_ = result;
        settle_.stop();
        limitTo(kTidyingLimit);
        if (!isStarting_) tidyUp();
    }

  private:
    void connectAnew(int security, const std::string& passphrase) {
        if (security == WIFI_SECURITY_EAP) return finishLater(WIFI_ERROR_SECURITY_RESTRICTED);
        if (takesPassphrase(security) && passphrase.empty()) return finishLater(CONNECTION_ERROR_INVALID_KEY);
        isNew_ = isStarting_ = true;
        const Object<NMConnection> profile(nm_simple_connection_new());
        if (takesPassphrase(security)) setPassphrase(profile.get(), security, passphrase);
        nm_client_add_and_activate_connection_async(client_.get(), profile.get(), device_.get(), path_.c_str(),
                                                    cancellable_.get(), &Connecting::onActivating, weak());
    }

    void activate() {
        isStarting_ = true;
        nm_client_activate_connection_async(client_.get(), NM_CONNECTION(profile_.get()), device_.get(), path_.c_str(),
                                            cancellable_.get(), &Connecting::onActivating, weak());
    }

    static void onActivating(GObject* client, GAsyncResult* result, gpointer data) {
        auto* const self = take<Connecting>(data);
        if (self == nullptr) return;
        const auto end =
            self->isNew_ ? &nm_client_add_and_activate_connection_finish : &nm_client_activate_connection_finish;
        GError* failure = nullptr;
        self->active_.reset(end(NM_CLIENT(client), result, &failure));
        self->isStarting_ = false;
        const int error = failure == nullptr ? CONNECTION_ERROR_NONE : codeOf("connecting", failure);
        if (self->result_) return self->tidyUp();
        if (error != CONNECTION_ERROR_NONE) return self->conclude(error);
        self->watch();
    }

    void watch() {
        const auto look = [](gpointer self) { static_cast<Connecting*>(self)->look(); };
        signals_.add(active_.get(), "notify::" NM_ACTIVE_CONNECTION_STATE, look, this);
        signals_.add(device_.get(), "notify::" NM_DEVICE_STATE, look, this);
        signals_.add(device_.get(), "notify::" NM_DEVICE_ACTIVE_CONNECTION, look, this);
        signals_.add(client_.get(), "notify::" NM_CLIENT_NM_RUNNING, look, this);
        this->look();
    }

    bool isCurrent() const { return nm_device_get_active_connection(device_.get()) == active_.get(); }

    bool isOver() const {
        return nm_active_connection_get_state(active_.get()) == NM_ACTIVE_CONNECTION_STATE_DEACTIVATED ||
               (wasCurrent_ && !isCurrent());
    }

    // The device ends what it did before first, so only a failure of its own activation counts.
    void look() {
        wasCurrent_ = wasCurrent_ || isCurrent();
        if (!nm_client_get_nm_running(client_.get())) return conclude(CONNECTION_ERROR_OPERATION_FAILED);
        if (nm_active_connection_get_state(active_.get()) == NM_ACTIVE_CONNECTION_STATE_ACTIVATED) return succeed();
        if (isCurrent() && nm_device_get_state(device_.get()) == NM_DEVICE_STATE_FAILED) return fail();
        if (isOver()) settle_.start(kReasonSettling, [this] { fail(); });
    }

    void succeed() {
        settle_.stop();
        if (trial_) trial_->keep();
        finishLater(CONNECTION_ERROR_NONE);
    }

    void fail() { conclude(resultOf(nm_device_get_state_reason(device_.get()))); }

    // NetworkManager waits longer for addresses than this does.
    void timeOut() override {
        if (result_) return finish(*result_);
        const NMDeviceState state = nm_device_get_state(device_.get());
        const bool isAssociated = active_ != nullptr && isCurrent() && state >= NM_DEVICE_STATE_IP_CONFIG &&
                                  state <= NM_DEVICE_STATE_SECONDARIES;
        conclude(isAssociated ? CONNECTION_ERROR_DHCP_FAILED : CONNECTION_ERROR_NO_REPLY);
    }

    void tidyUp() {
        signals_.clear();
        if (trial_) trial_->undo();
        if (active_ == nullptr) return finishLater(*result_);
        if (nm_active_connection_get_state(active_.get()) < NM_ACTIVE_CONNECTION_STATE_DEACTIVATING) {
            nm_client_deactivate_connection_async(client_.get(), active_.get(), nullptr, nullptr, nullptr);
        }
        NMRemoteConnection* made = isNew_ ? nm_active_connection_get_connection(active_.get()) : nullptr;
        if (made == nullptr) return finishLater(*result_);
        nm_remote_connection_delete_async(made, cancellable_.get(), &Connecting::onForgotten, weak());
    }

    // Who hears of the failure may connect again at once, and is not to meet the profile that goes.
    static void onForgotten(GObject* profile, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        nm_remote_connection_delete_finish(NM_REMOTE_CONNECTION(profile), result, &failure);
        auto* const self = take<Connecting>(data);
        if (self != nullptr && failure != nullptr) logDaemonError("forgetting the network", failure);
        g_clear_error(&failure);
        if (self != nullptr) self->finishLater(*self->result_);
    }

    Object<NMClient> client_;
    const std::string path_;
    Object<NMRemoteConnection> profile_;
    std::optional<PassphraseTrial> trial_;
    Object<NMActiveConnection> active_;
    std::optional<int> result_;  // of an attempt that fails
    bool isNew_ = false;
    bool isStarting_ = false;  // the daemon is asked and has not told of the activation
    bool wasCurrent_ = false;
    Timer settle_;
};

}  // namespace

std::unique_ptr<Question> connectWifi(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint,
                                      const std::string& passphrase, Answer answer) {
    auto request = std::make_unique<Connecting>(client, device, accessPoint, std::move(answer));
    request->start(accessPoint, passphrase);
    return request;
}

void abortConnecting(Question& connecting) {
    static_cast<Connecting&>(connecting).conclude(CONNECTION_ERROR_OPERATION_ABORTED);
}

}  // namespace network
