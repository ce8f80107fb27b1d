// Runs GLib's default main context, on which libnm lives, inside the Ecore main loop.
#pragma once

#include <glib.h>

#include <chrono>
#include <functional>

namespace network {

// The bridge stands while at least one of these lives. Needs an initialised Ecore; main thread only.
class GlibBridge {
  public:
    GlibBridge();
    ~GlibBridge();
    GlibBridge(const GlibBridge&) = delete;
    GlibBridge& operator=(const GlibBridge&) = delete;
};

// Runs a GLib context until `done`, at most for `limit`. Returns whether it was done. For short waits at start and end.
bool iterateUntil(GMainContext* context, const std::function<bool()>& done, std::chrono::milliseconds limit);

}  // namespace network
