// A clock that jumps, for runs of the real gadget-host: preloaded, it stands before the toolkit's clock and before the
// wait of its main loop. When nothing is ready, time moves on at once to the end of the wait, so a minute of timers
// passes in a blink and every run sees the same times.
#include <Ecore.h>
#include <Elementary.h>
#include <dlfcn.h>
#include <sys/select.h>
#include <unistd.h>

#include <atomic>
#include <optional>

#define INTERPOSED extern "C" __attribute__((visibility("default")))

namespace {

constexpr double kStart = 1000.0;           // any fixed time, so that sums of it round alike in every run
constexpr double kPastTheTimer = 1e-6;      // a wait is cut to whole microseconds; the timer must be over after it
constexpr int kEmptyPolls = 64;             // polls without a wait before time creeps on
constexpr double kFrameSeconds = 0.1;       // animations need no more
constexpr suseconds_t kWorkerSlice = 2000;  // microseconds of real time between looks at the worker threads
constexpr int kWorkerSlices = 1000;         // a worker that takes longer is no longer waited for

std::atomic<double> now{kStart};
int emptyPolls = 0;
Ecore_Timer* frames = nullptr;

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// What select is asked to watch, kept because each call overwrites it.
class Watch {
  public:
    Watch(int count, fd_set* read, fd_set* write, fd_set* except)
        : count_(count), live_{read, write, except}, saved_{save(read), save(write), save(except)} {}

    int wait(timeval* timeout) {
        static auto* const real = next<decltype(select)>("select");
        for (int i = 0; i < 3; ++i) {
            if (live_[i] != nullptr) *live_[i] = *saved_[i];
        }
        return real(count_, live_[0], live_[1], live_[2], timeout);
    }

    int poll(suseconds_t microseconds) {
        timeval timeout{0, microseconds};
        return wait(&timeout);
    }

  private:
    static std::optional<fd_set> save(const fd_set* set) {
        return set == nullptr ? std::nullopt : std::optional<fd_set>(*set);
    }

    int count_;
    fd_set* live_[3];
    std::optional<fd_set> saved_[3];
};

bool isMainThread() {
    return gettid() == getpid();
}

bool workersBusy() {
    return ecore_thread_active_get() + ecore_thread_pending_get() > 0;
}

// Work on other threads takes no time of ours: what it reports comes before time moves on. 0 when it reported nothing.
int waitForWorkers(Watch& watch) {
    for (int slice = 0; slice < kWorkerSlices && workersBusy(); ++slice) {
        if (const int ready = watch.poll(kWorkerSlice); ready != 0) return ready;
    }
    return 0;
}

void advance(double seconds) {
    now.store(now.load() + seconds + kPastTheTimer);
}

Eina_Bool tickFrame(void* /*data*/) {
    ecore_animator_custom_tick();
    return ECORE_CALLBACK_RENEW;
}

void beginFrames(void* /*data*/) {
    if (frames == nullptr) frames = ecore_timer_add(kFrameSeconds, tickFrame, nullptr);
}

void endFrames(void* /*data*/) {
    if (frames != nullptr) ecore_timer_del(frames);
    frames = nullptr;
}

}  // namespace

INTERPOSED double ecore_time_get(void) {
    return now.load();
}

INTERPOSED int select(int count, fd_set* read, fd_set* write, fd_set* except, timeval* timeout) {
    Watch watch(count, read, write, except);
    if (timeout == nullptr || !isMainThread()) return watch.wait(timeout);
    const int ready = watch.poll(0);
    if (ready != 0) {
        emptyPolls = 0;
        return ready;
    }
    const double seconds = static_cast<double>(timeout->tv_sec) + static_cast<double>(timeout->tv_usec) * 1e-6;
    if (seconds <= 0 && ++emptyPolls < kEmptyPolls) return 0;
    emptyPolls = 0;
    if (const int reported = waitForWorkers(watch); reported != 0) return reported;
    advance(seconds);
    return 0;
}

// The toolkit's frames come from a thread of its own, by the real clock. Here they come from a timer of the loop,
// whichever source its windows ask for.
INTERPOSED int elm_init(int argc, char** argv) {
    const int users = next<decltype(elm_init)>("elm_init")(argc, argv);
    using Set = decltype(ecore_animator_custom_source_tick_begin_callback_set);
    next<Set>("ecore_animator_custom_source_tick_begin_callback_set")(beginFrames, nullptr);
    next<Set>("ecore_animator_custom_source_tick_end_callback_set")(endFrames, nullptr);
    next<decltype(ecore_animator_source_set)>("ecore_animator_source_set")(ECORE_ANIMATOR_SOURCE_CUSTOM);
    return users;
}

INTERPOSED void ecore_animator_source_set(Ecore_Animator_Source /*source*/) {}
INTERPOSED void ecore_animator_custom_source_tick_begin_callback_set(Ecore_Cb /*begin*/, const void* /*data*/) {}
INTERPOSED void ecore_animator_custom_source_tick_end_callback_set(Ecore_Cb /*end*/, const void* /*data*/) {}

// Pictures are decoded at once: the toolkit's own threads for it tell nobody when they are done.
INTERPOSED Evas_Object* elm_image_add(Evas_Object* parent) {
    Evas_Object* const image = next<decltype(elm_image_add)>("elm_image_add")(parent);
    elm_image_preload_disabled_set(image, EINA_TRUE);
    return image;
}
