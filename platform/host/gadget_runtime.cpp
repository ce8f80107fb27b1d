#include "host/gadget_runtime.h"

#include <Ecore.h>
#include <Evas.h>
#include <dlfcn.h>
#include <unistd.h>

#include <memory>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define HOST_KEEPS_MODULES_LOADED 1
#else
#define HOST_KEEPS_MODULES_LOADED 0
#endif

namespace {

using Init = decltype(&UG_MODULE_INIT);
using Exit = decltype(&UG_MODULE_EXIT);

constexpr int kInvalidParameter = -22;
constexpr int kFullView = 0;  // the mode of a gadget that has the window to itself

// A leak report names functions only while their module is mapped.
constexpr bool kKeepModulesLoaded = HOST_KEEPS_MODULES_LOADED != 0;

struct CloseLibrary {
    void operator()(void* library) const {
        if (!kKeepModulesLoaded) dlclose(library);
    }
};

using Library = std::unique_ptr<void, CloseLibrary>;

}  // namespace

struct ug_gadget {
    Library library;
    Exit exit = nullptr;
    ug_operations operations{};
    Evas_Object* view = nullptr;
    Ecore_Timer* ending = nullptr;
    std::function<void()> onClosed;
    bool paused = false;
};

namespace {

constinit void* window = nullptr;
std::unique_ptr<ug_gadget> gadget;
std::vector<Library> closedLibraries;

ug_handle handle() {
    return gadget.get();
}

// Calls one lifecycle callback, with the gadget's handle first and its private data last, if the gadget filled it in.
template <typename Callback, typename... Arguments>
void call(Callback callback, Arguments... arguments) {
    if (callback != nullptr) callback(handle(), arguments..., gadget->operations.priv);
}

void forgetView(void* data, Evas* /*canvas*/, Evas_Object* /*view*/, void* /*event*/) {
    static_cast<ug_gadget*>(data)->view = nullptr;
}

// The gadget's callbacks hang on its view, so the view goes while the module is still there.
void deleteView() {
    if (gadget->view == nullptr) return;
    evas_object_event_callback_del_full(gadget->view, EVAS_CALLBACK_DEL, forgetView, handle());
    evas_object_del(std::exchange(gadget->view, nullptr));
}

void endGadget() {
    if (gadget->ending != nullptr) ecore_timer_del(std::exchange(gadget->ending, nullptr));
    call(gadget->operations.destroy, ug_data{});
    deleteView();
    gadget->exit(&gadget->operations);
    closedLibraries.push_back(std::move(gadget->library));
    gadget.reset();
}

Eina_Bool endOnTimer(void* /*data*/) {
    gadget->ending = nullptr;
    host::closeGadgetNow();
    return ECORE_CALLBACK_CANCEL;
}

host::OpenResult fail(host::OpenFailure failure, std::string message) {
    gadget.reset();
    return {failure, std::move(message)};
}

host::OpenResult load(const std::string& file, Init& init) {
    using enum host::OpenFailure;
    if (access(file.c_str(), R_OK) != 0) return fail(kModuleMissing, "there is no module at " + file);
    // Without a slash the linker would search its own folders.
    const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
    gadget->library.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!gadget->library) return fail(kModuleNotLoadable, std::string("the module cannot be loaded: ") + dlerror());
    init = reinterpret_cast<Init>(dlsym(gadget->library.get(), "UG_MODULE_INIT"));
    gadget->exit = reinterpret_cast<Exit>(dlsym(gadget->library.get(), "UG_MODULE_EXIT"));
    if (init == nullptr) return fail(kEntryMissing, file + " does not export UG_MODULE_INIT");
    if (gadget->exit == nullptr) return fail(kEntryMissing, file + " does not export UG_MODULE_EXIT");
    return {};
}

Evas_Object* createView() {
    const ug_operations& operations = gadget->operations;
    if (operations.create == nullptr) return nullptr;
    return static_cast<Evas_Object*>(operations.create(handle(), kFullView, nullptr, operations.priv));
}

}  // namespace

namespace host {

void setWindow(void* newWindow) {
    window = newWindow;
    if (window == nullptr) closedLibraries.clear();
}

OpenResult openGadget(const std::string& file, std::function<void()> onClosed) {
    if (gadget) return {OpenFailure::kInitRefused, "a gadget is open already"};
    gadget = std::make_unique<ug_gadget>();
    Init init = nullptr;
    if (OpenResult loaded = load(file, init); loaded.failure != OpenFailure::kNone) return loaded;
    if (const int result = init(&gadget->operations); result != 0) {
        return fail(OpenFailure::kInitRefused, "UG_MODULE_INIT of " + file + " returned " + std::to_string(result));
    }
    gadget->view = createView();
    if (gadget->view == nullptr) {
        endGadget();
        return {OpenFailure::kNoView, "the gadget in " + file + " created no view"};
    }
    evas_object_event_callback_add(gadget->view, EVAS_CALLBACK_DEL, forgetView, handle());
    gadget->onClosed = std::move(onClosed);
    call(gadget->operations.start, ug_data{});
    return {};
}

bool isGadgetOpen() {
    return gadget != nullptr;
}

void closeGadgetLater() {
    if (gadget && gadget->ending == nullptr) gadget->ending = ecore_timer_add(0.0, endOnTimer, nullptr);
}

void closeGadgetNow() {
    if (!gadget) return;
    const std::function<void()> onClosed = std::move(gadget->onClosed);
    endGadget();
    if (onClosed) onClosed();
}

void pauseGadget() {
    if (!gadget || std::exchange(gadget->paused, true)) return;
    call(gadget->operations.pause, ug_data{});
}

void resumeGadget() {
    if (!gadget || !std::exchange(gadget->paused, false)) return;
    call(gadget->operations.resume, ug_data{});
}

void sendMessage(ug_data message) {
    if (gadget) call(gadget->operations.message, message, ug_data{});
}

void sendEvent(int event) {
    if (gadget) call(gadget->operations.event, event, ug_data{});
}

}  // namespace host

void* ug_get_window(void) {
    return window;
}

int ug_destroy_me(ug_handle ug) {
    if (ug == nullptr || ug != handle()) return kInvalidParameter;
    host::closeGadgetLater();
    return 0;
}
