// gadget-host: opens a window, chooses the network, and runs the gadget until it closes.
#include <Ecore_Getopt.h>
#include <Efreet.h>
#include <Elementary.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "host/appearance.h"
#include "host/exit_codes.h"
#include "host/gadget_runtime.h"
#include "host/language.h"
#include "host/options.h"
#include "host/remote_keys.h"
#include "host/script_runner.h"
#include "host/window.h"
#include "log/log.h"
#include "network/network.h"
#include "settings_store.h"
#include "store/store.h"

namespace {

// A gadget that closes may just have put the network back to what was stored.
constexpr double kStoringLimit = 5;  // seconds

constexpr const char* kNetworkTypeKey = "db/menu/network/network_type";
constexpr const char* kHighContrastKey = "db/menu/system/accessibility/highcontrast";

int complain(int exitCode, const std::string& message) {
    std::cerr << "gadget-host: " << message << '\n';
    return exitCode;
}

int exitCodeOf(host::OpenFailure failure) {
    switch (failure) {
        case host::OpenFailure::kNone:
            return host::kExitClosed;
        case host::OpenFailure::kModuleMissing:
            return host::kExitModuleMissing;
        case host::OpenFailure::kModuleNotLoadable:
            return host::kExitModuleNotLoadable;
        case host::OpenFailure::kEntryMissing:
            return host::kExitEntryMissing;
        case host::OpenFailure::kInitRefused:
            return host::kExitInitRefused;
        case host::OpenFailure::kNoView:
            return host::kExitNoView;
    }
    return host::kExitInternal;
}

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// Asked first: the toolkit answers a missing display with hundreds of lines.
bool hasDisplay() {
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("ELM_DISPLAY") || isSet("ELM_ENGINE");
}

// Everything the services need before a gadget may call them. 0, or the exit code.
int startServices(const host::HostOptions& options) {
    std::string message;
    if (!options.logLevel.empty() && !logging::setLevel(options.logLevel, message)) {
        return complain(host::kExitUsage, message);
    }
    if (!options.store.empty() && !store::open(options.store, message)) return complain(host::kExitStore, message);
    if (!options.networkType.empty() && vconf_set_str(kNetworkTypeKey, options.networkType.c_str()) != 0) {
        return complain(host::kExitStore, "the network type cannot be stored");
    }
    const bool wireless = options.networkType == "Wireless";
    const network::Selection selection = network::select(options.network, {options.onlineUrl, wireless});
    if (!selection.selected) return complain(host::kExitNetwork, selection.text);
    std::cout << "network: " << selection.text << std::endl;
    return 0;
}

Evas_Object* openScreen(const host::HostOptions& options) {
    host::applyTheme();
    int highContrast = 0;
    vconf_get_int(kHighContrastKey, &highContrast);
    host::applyContrast(highContrast != 0);
    Evas_Object* const window = host::openWindow(options.size, options.fullscreen);
    if (window == nullptr) return nullptr;
    host::addBackdrop(window);
    host::setWindow(window);
    return window;
}

Eina_Bool endOnSignal(void* /*data*/, int /*type*/, void* /*event*/) {
    elm_exit();
    return ECORE_CALLBACK_PASS_ON;
}

int runGadget(const host::HostOptions& options, Evas_Object* window, host::ScriptRunner* script) {
    const auto onClosed = [script] {
        if (script == nullptr || script->isDone()) elm_exit();
    };
    const auto open = [&options, onClosed] { return host::openGadget(options.module, onClosed); };
    const host::OpenResult opened = open();
    if (opened.failure != host::OpenFailure::kNone) return complain(exitCodeOf(opened.failure), opened.message);
    host::followWindow(window);
    ecore_event_handler_add(ECORE_EVENT_SIGNAL_EXIT, endOnSignal, nullptr);
    if (script != nullptr) script->start(window, open);
    elm_run();
    const int exitCode = script == nullptr ? host::kExitClosed : script->exitCode();
    host::closeGadgetNow();
    return exitCode;
}

int runOnScreen(const host::HostOptions& options, host::ScriptRunner* script) {
    if (!hasDisplay()) return complain(host::kExitNoDisplay, "no display: DISPLAY is not set");
    if (const int failure = startServices(options)) return failure;
    Evas_Object* const window = openScreen(options);
    if (window == nullptr) return complain(host::kExitNoDisplay, "the window cannot be opened on this display");
    const host::KeyboardMapping mapping;
    const int exitCode = runGadget(options, window, script);
    evas_object_del(window);
    host::setWindow(nullptr);
    network::finishStoring(kStoringLimit);
    network::release();
    return exitCode;
}

int run(const host::HostOptions& options, int argc, char** argv) {
    std::unique_ptr<host::ScriptRunner> script;
    if (!options.script.empty()) {
        script = std::make_unique<host::ScriptRunner>();
        if (const std::string error = script->load(options.script); !error.empty()) {
            return complain(host::kExitScript, error);
        }
    }
    host::chooseLanguage();
    // A closing screen does not wait for a slow frame of the toolkit's drawing threads, and takes away the pictures
    // that they read; drawing at once also costs half of what waking them does.
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 0);
    ecore_app_no_system_modules();
    efreet_cache_disable();
    if (elm_init(argc, argv) == 0) return complain(host::kExitInternal, "the toolkit does not start");
    elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_NONE);
    const int exitCode = runOnScreen(options, script.get());
    script.reset();
    elm_shutdown();
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    const host::ParsedOptions parsed = host::parseOptions(argc, argv);
    return parsed.end ? parsed.exitCode : run(parsed.options, argc, argv);
}
