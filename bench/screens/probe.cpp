// Preloaded into gadget-host: writes down what it costs to open the gadget and to draw it. The host and the gadget stay
// as they are shipped. Stands between them and a few functions of the toolkit and the linker.
#include <Elementary.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#define INTERPOSED extern "C" __attribute__((visibility("default")))

namespace {

// One line of the record: what happened, when, and what the process had used by then.
struct Event {
    std::string what;
    double wall = 0;       // seconds of CLOCK_MONOTONIC
    double processor = 0;  // seconds of all threads together
    long residentPages = 0;
    Eina_Rectangle area{};      // of a frame: the rectangle around all that it drew
    int pixels = 0;             // of a frame: all that it drew
    std::uint64_t picture = 0;  // of a frame: what stands on the screen beside the spinner, as a hash
};

constexpr const char* kMarkStart = "mark-";

constexpr Eina_Rectangle kSpinner{1540, 160, 136, 120};
constexpr std::uint32_t kColour = 0xFFFFFF;  // the fourth byte of a pixel is not defined
constexpr std::uint64_t kHashFactor = 0x100000001B3;

std::vector<Event> events;
Evas_Object* screen = nullptr;

double secondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

long residentPages() {
    long all = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident;
}

Event eventNow(const std::string& what) {
    return {what, secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_PROCESS_CPUTIME_ID)};
}

// Marks and openings only: reading the memory costs more than the clocks do.
void mark(const std::string& what) {
    Event event = eventNow(what);
    event.residentPages = residentPages();
    events.push_back(event);
}

// With $BENCH_PICTURES only: it takes time of its own.
std::uint64_t hashOfPicture() {
    Ecore_Evas* const canvas = ecore_evas_ecore_evas_get(evas_object_evas_get(screen));
    const auto* const pixels = static_cast<const std::uint32_t*>(ecore_evas_buffer_pixels_get(canvas));
    int width = 0;
    int height = 0;
    evas_output_size_get(evas_object_evas_get(screen), &width, &height);
    std::uint64_t hash = 0;
    for (int y = 0; pixels != nullptr && y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool spinner = eina_rectangle_coords_inside(&kSpinner, x, y) != EINA_FALSE;
            if (!spinner) hash = (hash ^ (pixels[y * width + x] & kColour)) * kHashFactor;
        }
    }
    return hash;
}

void noteFrame(void* /*data*/, Evas* /*canvas*/, void* drawn) {
    const auto* const frame = static_cast<const Evas_Event_Render_Post*>(drawn);
    if (frame == nullptr || frame->updated_area == nullptr) return;
    Event event = eventNow("frame");
    const Eina_List* node = nullptr;
    void* found = nullptr;
    EINA_LIST_FOREACH(frame->updated_area, node, found) {
        const auto& part = *static_cast<const Eina_Rectangle*>(found);
        event.pixels += part.w * part.h;
        if (event.area.w == 0) {
            event.area = part;
        } else {
            eina_rectangle_union(&event.area, &part);
        }
    }
    if (std::getenv("BENCH_PICTURES") != nullptr) event.picture = hashOfPicture();
    events.push_back(event);
}

// The process ends by exit(), which runs this.
struct Writer {
    Writer() { events.reserve(4096); }
    ~Writer() {
        const char* const file = std::getenv("BENCH_RECORD");
        std::FILE* const output = file == nullptr ? nullptr : std::fopen(file, "w");
        if (output == nullptr) return;
        const long pageSize = sysconf(_SC_PAGESIZE);
        for (const Event& event : events) {
            std::fprintf(output, "%s %.6f %.6f %ld %d %d %d %d %d %016" PRIx64 "\n", event.what.c_str(), event.wall,
                         event.processor, event.residentPages * pageSize, event.pixels, event.area.x, event.area.y,
                         event.area.w, event.area.h, event.picture);
        }
        std::fclose(output);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
};
Writer writer;  // NOLINT(cert-err58-cpp): without memory there is nothing to measure

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isMeasuredModule(const char* file) {
    const char* const module = std::getenv("BENCH_MODULE");
    return file != nullptr && module != nullptr && std::strcmp(file, module) == 0;
}

void drawNow() {
    next<decltype(ecore_evas_manual_render)>("ecore_evas_manual_render")(
        ecore_evas_ecore_evas_get(evas_object_evas_get(screen)));
}

bool isOfHost(const void* code) {
    Dl_info found{};
    return dladdr(code, &found) != 0 && std::string_view(found.dli_fname).ends_with("/gadget-host");
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming): the names of the functions that are stood in for
INTERPOSED Evas_Object* elm_win_util_standard_add(const char* name, const char* title) {
    screen = next<decltype(elm_win_util_standard_add)>("elm_win_util_standard_add")(name, title);
    if (screen != nullptr) {
        evas_event_callback_add(evas_object_evas_get(screen), EVAS_CALLBACK_RENDER_POST, noteFrame, nullptr);
    }
    return screen;
}

// The gadget's opening begins with the loading of its module.
INTERPOSED void* dlopen(const char* file, int mode) {
    if (isMeasuredModule(file)) {
        // The host's own first frame is no part of the opening.
        if (std::getenv("BENCH_WINDOW_FIRST") != nullptr) drawNow();
        mark("open");
    }
    return next<decltype(dlopen)>("dlopen")(file, mode);
}

// A script draws before each of its commands; a user's keys come without that, and each frame comes at its time.
INTERPOSED void ecore_evas_manual_render(Ecore_Evas* canvas) {
    if (isOfHost(__builtin_return_address(0))) return;
    next<decltype(ecore_evas_manual_render)>("ecore_evas_manual_render")(canvas);
}

// A key of this name is a mark in a script and reaches nobody.
INTERPOSED void evas_event_feed_key_down(Evas* canvas, const char* keyname, const char* key, const char* text,
                                         const char* compose, unsigned int timestamp, const void* data) {
    if (std::strncmp(keyname, kMarkStart, std::strlen(kMarkStart)) == 0) return mark(keyname);
    mark(std::string("key-") + keyname);
    next<decltype(evas_event_feed_key_down)>("evas_event_feed_key_down")(canvas, keyname, key, text, compose, timestamp,
                                                                         data);
}

INTERPOSED void evas_event_feed_key_up(Evas* canvas, const char* keyname, const char* key, const char* text,
                                       const char* compose, unsigned int timestamp, const void* data) {
    if (std::strncmp(keyname, kMarkStart, std::strlen(kMarkStart)) == 0) return;
    next<decltype(evas_event_feed_key_up)>("evas_event_feed_key_up")(canvas, keyname, key, text, compose, timestamp,
                                                                     data);
}

// NOLINTEND(readability-identifier-naming)
