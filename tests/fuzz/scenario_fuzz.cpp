// The scenario reader: a file is refused with one line, or read into a network that can be looked at, saved and read
// again.
#include <fstream>

#include "fuzz.h"
#include "network/simulated/scenario.h"
#include "network/simulated/snapshot.h"

namespace {

using network::simulated::State;

void require(bool holds, const char* what, const std::string& about) {
    fuzz::require(holds, what, about);
}

std::optional<State> read(const std::string& file) {
    std::string error;
    std::optional<State> state = network::simulated::loadScenario(file, error);
    require(state.has_value() == error.empty(), "a network or a reason", error);
    require(state || error.starts_with(file + ": "), "the reason names the file", error);
    require(error.find('\n') == std::string::npos, "the reason is one line", error);
    return state;
}

void lookAt(const State& state) {
    network::simulated::connectionType(state);
    network::simulated::ethernetState(state);
    for (const auto& record : state.profiles)
        network::simulated::seenProfile(state, record);
    if (!state.radio) return;
    for (const auto& record : state.radio->accessPoints)
        network::simulated::seenAccessPoint(state, record);
}

void saveAndReadAgain(const State& state, const std::string& file) {
    require(network::simulated::saveState(state, file).empty(), "it can be saved", file);
    std::string error;
    const auto again = network::simulated::loadScenario(file, error);
    require(again.has_value(), "what was saved can be read", error);
    require(again->profiles.size() == state.profiles.size(), "with as many profiles", file);
    require(again->radio.has_value() == state.radio.has_value(), "with its radio", file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Folder folder;
    const std::string file = folder / "scenario.json";
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<long>(size));
    auto state = read(file);
    if (!state) return 0;
    lookAt(*state);
    for (const auto& event : state->events)
        require(network::simulated::applyCommand(*state, event.words).empty(), "an accepted event happens", file);
    lookAt(*state);
    if (!state->radio || state->radio->accessPoints.size() < 1000) saveAndReadAgain(*state, folder / "saved.json");
    return 0;
}
