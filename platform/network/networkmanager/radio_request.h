// What the requests to the radio share: one answer, a limit, and callbacks that outlive the request.
#pragma once

#include <NetworkManager.h>

#include <memory>
#include <utility>

#include "connection_manager.h"
#include "daemon_client.h"
#include "daemon_error.h"
#include "handles.h"
#include "network/backend.h"
#include "network/timer.h"
#include "weak_self.h"

namespace network {

class RadioRequest : public Question {
  public:
    RadioRequest(NMDeviceWifi* device, Answer answer)
        : device_(NM_DEVICE(g_object_ref(device))), answer_(std::move(answer)) {}
    ~RadioRequest() override { g_cancellable_cancel(cancellable_.get()); }
    RadioRequest(const RadioRequest&) = delete;
    RadioRequest& operator=(const RadioRequest&) = delete;

  protected:
    // The data of an asynchronous call, and back: null once the request is withdrawn.
    gpointer weak() const { return self_.data(); }
    template <typename Request>
    static Request* take(gpointer data) {
        return static_cast<Request*>(WeakSelf<RadioRequest>::take(data));
    }

    void limitTo(double seconds) {
        limit_.start(seconds, [this] { timeOut(); });
    }
    virtual void timeOut() { finish(CONNECTION_ERROR_NO_REPLY); }

    // The answer may destroy this request.
    void finish(int result) {
        isFinished_ = true;
        const Answer answer = std::move(answer_);
        answer(result);
    }

    // Out of GLib's dispatching, which takes no new main loop inside. The first result counts.
    void finishLater(int result) {
        if (isFinished_) return;
        isFinished_ = true;
        signals_.clear();
        limit_.start(0.0, [this, result] { finish(result); });
    }

    bool isFinished() const { return isFinished_; }

    // The code of a failure, which goes into the log and is freed.
    static int codeOf(const char* what, GError* error) {
        const std::unique_ptr<GError, decltype(&g_error_free)> failure(error, &g_error_free);
        logDaemonError(what, failure.get());
        return daemonErrorOf(failure.get()).code;
    }

    Object<NMDevice> device_;
    Object<GCancellable> cancellable_{g_cancellable_new()};
    SignalConnections signals_;

  private:
    Answer answer_;
    WeakSelf<RadioRequest> self_{this};
    bool isFinished_ = false;
    Timer limit_;
};

}  // namespace network
