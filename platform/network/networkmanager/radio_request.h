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

namespace network {

class RadioRequest : public Question {
  public:
    RadioRequest(NMDeviceWifi* device, Answer answer)
        : device_(NM_DEVICE(g_object_ref(device))),
          answer_(std::move(answer)),
          self_(std::make_shared<RadioRequest*>(this)) {}
    ~RadioRequest() override { g_cancellable_cancel(cancellable_.get()); }
    RadioRequest(const RadioRequest&) = delete;
    RadioRequest& operator=(const RadioRequest&) = delete;

  protected:
    using Weak = std::weak_ptr<RadioRequest*>;

    // The data of an asynchronous call, and back: null once the request is withdrawn.
    gpointer weak() const { return new Weak(self_); }
    template <typename Request>
    static Request* take(gpointer data) {
        const std::unique_ptr<Weak> weak(static_cast<Weak*>(data));
        const auto self = weak->lock();
        return self == nullptr ? nullptr : static_cast<Request*>(*self);
    }

    void limitTo(double seconds) {
        limit_.start(seconds, [this] {
            timeOut();
            finish(CONNECTION_ERROR_NO_REPLY);
        });
    }
    virtual void timeOut() {}

    // Out of GLib's dispatching, which takes no new main loop inside. The first result counts.
    void finishLater(int result) {
        if (isFinished_) return;
        isFinished_ = true;
        signals_.clear();
        limit_.start(0.0, [this, result] { finish(result); });
    }
    bool isFinished() const { return isFinished_; }

    void refuse(const char* what, GError* error) {
        logDaemonError(what, error);
        finishLater(daemonErrorOf(error).code);
        g_error_free(error);
    }

    Object<NMDevice> device_;
    Object<GCancellable> cancellable_{g_cancellable_new()};
    SignalConnections signals_;

  private:
    // The answer may destroy this request.
    void finish(int result) {
        isFinished_ = true;
        const Answer answer = std::move(answer_);
        answer(result);
    }

    Answer answer_;
    std::shared_ptr<RadioRequest*> self_;
    bool isFinished_ = false;
    Timer limit_;
};

}  // namespace network
