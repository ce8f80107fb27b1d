// The connection to the NetworkManager daemon, and word of its changes.
#pragma once

#include <NetworkManager.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "glib_bridge.h"
#include "handles.h"

namespace network {

// Signal connections that end with their owner.
class SignalConnections {
  public:
    using Handler = void (*)(gpointer owner);

    SignalConnections() = default;
    ~SignalConnections() { clear(); }
    SignalConnections(const SignalConnections&) = delete;
    SignalConnections& operator=(const SignalConnections&) = delete;

    // Calls handler(owner), whatever the signal's own arguments are. A null object is passed over.
    void add(gpointer object, const char* signal, Handler handler, gpointer owner);
    void clear();

  private:
    struct Connection {
        Object<GObject> object;
        gulong id;
    };
    std::vector<Connection> connections_;
};

// Keeps one NMClient. Calls `changed` in a job of its own after anything of interest has changed, many changes at once.
class DaemonClient {
  public:
    explicit DaemonClient(std::function<void()> changed);
    ~DaemonClient();
    DaemonClient(const DaemonClient&) = delete;
    DaemonClient& operator=(const DaemonClient&) = delete;

    // Waits for the first picture of the network. False, with one line that says why, when the bus cannot be reached;
    // true also when the picture is late and will come by itself.
    bool open(std::chrono::milliseconds limit, std::string& error);

    // The client while the daemon runs and its picture is complete, else null. Borrowed.
    NMClient* running() const;

  private:
    struct Opening;
    void adopt(NMClient* client);
    void watch();
    void changeSeen();

    GlibBridge bridge_;
    std::function<void()> changed_;
    std::shared_ptr<Opening> opening_;
    Object<NMClient> client_;
    SignalConnections signals_;
    EcoreJob job_;
};

}  // namespace network
