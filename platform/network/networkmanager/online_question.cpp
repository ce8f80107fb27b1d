#include "online_question.h"

#include <Ecore.h>

#include <utility>

#include "connection_manager.h"
#include "handles.h"
#include "http_probe.h"
#include "network/timer.h"
#include "platform_log.h"
#include "weak_self.h"
#include "wired_network.h"

namespace network {
namespace {

constexpr double kLimitSeconds = 9.5;

class OnlineQuestion final : public Question {
  public:
    OnlineQuestion(NMClient* client, NMDevice* device, std::string url, Answer answer)
        : device_(NM_DEVICE(g_object_ref(device))),
          url_(std::move(url)),
          answer_(std::move(answer)),
          started_(ecore_time_get()) {
        daemonChecks_ =
            nm_client_connectivity_check_get_available(client) && nm_client_connectivity_check_get_enabled(client);
    }

    ~OnlineQuestion() override { g_cancellable_cancel(cancellable_.get()); }

    int start(NMClient* client) {
        if (!limit_.start(kLimitSeconds, [this] { finish(CONNECTION_ERROR_NO_REPLY); })) {
            return CONNECTION_ERROR_OUT_OF_MEMORY;
        }
        if (!daemonChecks_) return startHttp();
        nm_client_check_connectivity_async(client, cancellable_.get(), &OnlineQuestion::onChecked, self_.data());
        return CONNECTION_ERROR_NONE;
    }

  private:
    static void onChecked(GObject* client, GAsyncResult* result, gpointer data) {
        auto* const self = WeakSelf<OnlineQuestion>::take(data);
        GError* failure = nullptr;
        nm_client_check_connectivity_finish(NM_CLIENT(client), result, &failure);
        if (self != nullptr) self->onChecked(failure);
        g_clear_error(&failure);
    }

    // The daemon told the device's own states before it answered; its overall state may stand for IPv4.
    void onChecked(const GError* failure) {
        if (failure != nullptr) {
            __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK", "connectivity check: %s", failure->message);
            return finishLater(CONNECTION_ERROR_OPERATION_FAILED);
        }
        switch (nm_device_get_connectivity(device_.get(), AF_INET6)) {
            case NM_CONNECTIVITY_FULL:
                return finishLater(CONNECTION_ERROR_NONE);
            case NM_CONNECTIVITY_UNKNOWN:
                if (const int error = startHttp(); error != CONNECTION_ERROR_NONE) finishLater(error);
                return;
            default:
                return finishLater(CONNECTION_ERROR_OFFLINE);
        }
    }

    int startHttp() {
        if (url_.empty()) {
            __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK",
                         "NetworkManager's connectivity check is switched off and there is no URL to ask instead");
            return CONNECTION_ERROR_INVALID_OPERATION;
        }
        const double left = kLimitSeconds - (ecore_time_get() - started_);
        http_ = probeHttp({url_, interfaceOf(device_.get()), left}, [this](int result) { finish(result); });
        return http_ == nullptr ? CONNECTION_ERROR_OPERATION_FAILED : CONNECTION_ERROR_NONE;
    }

    // Out of GLib's dispatching, which takes no new main loop inside.
    void finishLater(int result) {
        limit_.start(0.0, [this, result] { finish(result); });
    }

    // The answer may destroy this question.
    void finish(int result) {
        limit_.stop();
        const Answer answer = std::move(answer_);
        answer(result);
    }

    Object<NMDevice> device_;
    const std::string url_;
    Answer answer_;
    WeakSelf<OnlineQuestion> self_{this};
    const double started_;
    bool daemonChecks_ = false;
    Object<GCancellable> cancellable_{g_cancellable_new()};
    std::unique_ptr<Question> http_;
    Timer limit_;
};

}  // namespace

int askOnlineOver(NMClient* client, NMDevice* device, const std::string& url, Answer answer,
                  std::unique_ptr<Question>& question) {
    auto asked = std::make_unique<OnlineQuestion>(client, device, url, std::move(answer));
    const int error = asked->start(client);
    if (error == CONNECTION_ERROR_NONE) question = std::move(asked);
    return error;
}

}  // namespace network
