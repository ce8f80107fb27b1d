#include "glib_bridge.h"

#include <Ecore.h>
#include <sys/select.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <vector>

namespace network {
namespace {

// select(2) cannot wait for descriptors beyond its sets; with such ones the wait is cut into pieces of this length.
constexpr int kLargeDescriptorWaitMs = 50;

constinit int bridges = 0;
constinit bool integrated = false;  // this Ecore runs GLib itself
constinit Ecore_Select_Function previousSelect = nullptr;

// An Ecore without GLib says so as an error in the log, though it is an answer here.
bool integrateQuietly() {
    const int level = eina_log_domain_level_get("ecore");
    eina_log_domain_level_set("ecore", EINA_LOG_LEVEL_CRITICAL);
    const bool done = ecore_main_loop_glib_integrate();
    eina_log_domain_level_set("ecore", level);
    return done;
}

struct Query {
    std::vector<GPollFD> descriptors;
    int timeoutMs = -1;
    int priority = 0;
};

Query query(GMainContext* context) {
    Query asked;
    g_main_context_prepare(context, &asked.priority);
    for (;;) {
        const int size = static_cast<int>(asked.descriptors.size());
        const int needed =
            g_main_context_query(context, asked.priority, &asked.timeoutMs, asked.descriptors.data(), size);
        asked.descriptors.resize(static_cast<std::size_t>(needed));
        if (needed <= size) return asked;
    }
}

// Adds GLib's descriptors to the sets; returns the new count for select(2).
int merge(Query& asked, int count, fd_set& readable, fd_set& writable) {
    for (const GPollFD& descriptor : asked.descriptors) {
        if (descriptor.fd >= FD_SETSIZE) {
            asked.timeoutMs =
                asked.timeoutMs < 0 ? kLargeDescriptorWaitMs : std::min(asked.timeoutMs, kLargeDescriptorWaitMs);
            continue;
        }
        if (descriptor.events & (G_IO_IN | G_IO_HUP | G_IO_ERR)) FD_SET(descriptor.fd, &readable);
        if (descriptor.events & G_IO_OUT) FD_SET(descriptor.fd, &writable);
        count = std::max(count, descriptor.fd + 1);
    }
    return count;
}

timeval toTimeval(int milliseconds) {
    return {milliseconds / 1000, (milliseconds % 1000) * 1000L};
}

timeval* earlier(timeval* ecore, timeval* glib) {
    if (ecore == nullptr || timercmp(glib, ecore, <)) return glib;
    return ecore;
}

// Leaves only what Ecore asked for in its sets, and counts it.
int keepAsked(int count, const fd_set& asked, const fd_set& ready, fd_set* out) {
    int kept = 0;
    if (out == nullptr) return kept;
    FD_ZERO(out);
    for (int descriptor = 0; descriptor < count; ++descriptor) {
        if (!FD_ISSET(descriptor, &asked) || !FD_ISSET(descriptor, &ready)) continue;
        FD_SET(descriptor, out);
        ++kept;
    }
    return kept;
}

fd_set copyOf(const fd_set* set) {
    fd_set copy;
    FD_ZERO(&copy);
    return set == nullptr ? copy : *set;
}

int selectWithGlib(GMainContext* context, int count, fd_set* readable, fd_set* writable, fd_set* failed,
                   timeval* timeout) {
    Query asked = query(context);
    const fd_set askedReadable = copyOf(readable), askedWritable = copyOf(writable);
    fd_set allReadable = askedReadable, allWritable = askedWritable;
    const int allCount = merge(asked, count, allReadable, allWritable);
    timeval glibTimeout = toTimeval(std::max(asked.timeoutMs, 0));
    timeval* wait = asked.timeoutMs < 0 ? timeout : earlier(timeout, &glibTimeout);

    int ready = previousSelect(allCount, &allReadable, &allWritable, failed, wait);
    const int error = errno;
    if (ready >= 0) {
        ready = keepAsked(count, askedReadable, allReadable, readable) +
                keepAsked(count, askedWritable, allWritable, writable);
        for (int descriptor = 0; failed != nullptr && descriptor < count; ++descriptor) {
            if (FD_ISSET(descriptor, failed)) ++ready;
        }
    }
    // Asking again without waiting fills the events in GLib's own form, large descriptors included.
    g_poll(asked.descriptors.data(), static_cast<guint>(asked.descriptors.size()), 0);
    if (g_main_context_check(context, asked.priority, asked.descriptors.data(),
                             static_cast<int>(asked.descriptors.size()))) {
        g_main_context_dispatch(context);
    }
    errno = error;
    return ready;
}

int bridgedSelect(int count, fd_set* readable, fd_set* writable, fd_set* failed, timeval* timeout) {
    GMainContext* context = g_main_context_default();
    if (!g_main_context_acquire(context)) return previousSelect(count, readable, writable, failed, timeout);
    const int ready = selectWithGlib(context, count, readable, writable, failed, timeout);
    g_main_context_release(context);
    return ready;
}

}  // namespace

GlibBridge::GlibBridge() {
    if (bridges++ > 0) return;
    integrated = integrateQuietly();
    if (integrated) return;
    previousSelect = ecore_main_loop_select_func_get();
    if (previousSelect == nullptr) previousSelect = &select;
    ecore_main_loop_select_func_set(&bridgedSelect);
}

GlibBridge::~GlibBridge() {
    if (--bridges > 0 || integrated) return;
    if (ecore_main_loop_select_func_get() == &bridgedSelect) ecore_main_loop_select_func_set(previousSelect);
}

bool iterateUntil(GMainContext* context, const std::function<bool()>& done, std::chrono::milliseconds limit) {
    bool expired = false;
    GSource* timer = g_timeout_source_new(static_cast<guint>(limit.count()));
    g_source_set_callback(
        timer,
        [](gpointer data) -> gboolean {
            *static_cast<bool*>(data) = true;
            return G_SOURCE_REMOVE;
        },
        &expired, nullptr);
    g_source_attach(timer, context);
    while (!done() && !expired) {
        g_main_context_iteration(context, TRUE);
    }
    g_source_destroy(timer);
    g_source_unref(timer);
    return done();
}

}  // namespace network
