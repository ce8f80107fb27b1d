// The one selected network of the process.
#include "network.h"

#include <memory>
#include <string>
#include <utility>

#include "backend.h"
#include "connection_service.h"
#include "gadget_paths.h"
#include "networkmanager/networkmanager.h"
#include "simulated/simulated.h"
#include "timer.h"
#include "wifi_service.h"

namespace network {
namespace {

constexpr std::string_view kSimulatedChoice = "simulated=";
constexpr const char* kSuccessScenario = GADGET_HOST_FOLDER "/networks/success.json";
constexpr const char* kWirelessScenario = GADGET_HOST_FOLDER "/networks/wifi-success.json";

constexpr double kLookAgain = 0.05;  // seconds

// Never destroyed by the process's end, when the toolkit under its timers is gone; release() does it.
constinit Backend* selected = nullptr;

Selection take(std::unique_ptr<Backend> opened, const std::string& name, const std::string& error) {
    if (opened == nullptr) return {false, error};
    release();
    selected = opened.release();
    return {true, name};
}

Selection selectSimulated(const std::string& file, const std::string& prefix) {
    std::string text;
    auto opened = openSimulated(file, text);
    return take(std::move(opened), prefix + "simulated network " + text, text);
}

Selection selectNetworkManager(const Options& options) {
    std::string error;
    auto opened = openNetworkManager(options, error);
    return take(std::move(opened), "this machine's network through NetworkManager", error);
}

}  // namespace

Selection select(const std::string& choice, const Options& options) {
    if (choice == "networkmanager") return selectNetworkManager(options);
    if (choice == "auto") {
        if (networkManagerAnswers()) return selectNetworkManager(options);
        const char* scenario = options.wireless ? kWirelessScenario : kSuccessScenario;
        return selectSimulated(scenario, "NetworkManager does not answer; ");
    }
    if (choice.starts_with(kSimulatedChoice) && choice.size() > kSimulatedChoice.size()) {
        return selectSimulated(choice.substr(kSimulatedChoice.size()), "");
    }
    return {false, "unknown network \"" + choice + "\": use auto, networkmanager or simulated=FILE"};
}

void finishStoring(double seconds) {
    const double end = ecore_time_get() + seconds;
    Timer look;  // so that each turn of the loop ends
    while (selected != nullptr && selected->isStoring() && ecore_time_get() < end) {
        look.start(kLookAgain, [] {});
        ecore_main_loop_iterate_may_block(1);
    }
}

void release() {
    releaseWifi();
    releaseConnections();
    delete std::exchange(selected, nullptr);
}

Backend* backend() {
    return selected;
}

std::string command(std::span<const std::string> words) {
    return selected == nullptr ? "no network is selected" : selected->command(words);
}

}  // namespace network
