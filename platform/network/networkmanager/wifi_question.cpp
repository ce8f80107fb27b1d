#include "wifi_question.h"

#include "radio_request.h"

namespace network {
namespace {

constexpr double kDisconnectLimit = 10;  // seconds
constexpr double kScanLimit = 15;

class Disconnecting final : public RadioRequest {
  public:
    using RadioRequest::RadioRequest;

    void start(NMClient* client) {
        limitTo(kDisconnectLimit);
        NMActiveConnection* active = nm_device_get_active_connection(device_.get());
        if (active == nullptr) return finishLater(CONNECTION_ERROR_NONE);
        active_.reset(NM_ACTIVE_CONNECTION(g_object_ref(active)));
        const auto look = [](gpointer self) { static_cast<Disconnecting*>(self)->look(); };
        signals_.add(device_.get(), "notify::" NM_DEVICE_ACTIVE_CONNECTION, look, this);
        nm_client_deactivate_connection_async(client, active, cancellable_.get(), &Disconnecting::onAsked, weak());
    }

  private:
    static void onAsked(GObject* client, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        nm_client_deactivate_connection_finish(NM_CLIENT(client), result, &failure);
        auto* const self = take<Disconnecting>(data);
        const bool hasEnded = hasErrorName(failure, "NetworkManager.ConnectionNotActive");
        if (self != nullptr && hasEnded) self->finishLater(CONNECTION_ERROR_NONE);
        if (self != nullptr && failure != nullptr && !hasEnded) {
            return self->finishLater(codeOf("disconnecting", failure));
        }
        g_clear_error(&failure);
    }

    // The device lets go of its access point before it lets go of the activation.
    void look() {
        if (nm_device_get_active_connection(device_.get()) != active_.get()) finishLater(CONNECTION_ERROR_NONE);
    }

    Object<NMActiveConnection> active_;
};

class Scanning final : public RadioRequest {
  public:
    using RadioRequest::RadioRequest;

    void start() {
        limitTo(kScanLimit);
        const auto done = [](gpointer self) { static_cast<Scanning*>(self)->finishLater(CONNECTION_ERROR_NONE); };
        signals_.add(device_.get(), "notify::" NM_DEVICE_WIFI_LAST_SCAN, done, this);
        nm_device_wifi_request_scan_async(NM_DEVICE_WIFI(device_.get()), cancellable_.get(), &Scanning::onAsked,
                                          weak());
    }

  private:
    // A scan that runs already is refused another one, but its end is what is waited for.
    static void onAsked(GObject* device, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        nm_device_wifi_request_scan_finish(NM_DEVICE_WIFI(device), result, &failure);
        auto* const self = take<Scanning>(data);
        const bool runsAlready = hasErrorName(failure, "Device.NotAllowed");
        if (self != nullptr && failure != nullptr && !runsAlready) {
            return self->finishLater(codeOf("scanning", failure));
        }
        g_clear_error(&failure);
    }
};

}  // namespace

std::unique_ptr<Question> disconnectWifi(NMClient* client, NMDeviceWifi* device, Answer answer) {
    auto request = std::make_unique<Disconnecting>(device, std::move(answer));
    request->start(client);
    return request;
}

std::unique_ptr<Question> scanWifi(NMDeviceWifi* device, Answer answer) {
    auto request = std::make_unique<Scanning>(device, std::move(answer));
    request->start();
    return request;
}

}  // namespace network
