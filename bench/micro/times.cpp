// How long each piece takes, for Google Benchmark.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

#include "subjects.h"

namespace {

constexpr int kFewest = 1;
constexpr int kMost = 10'000;
constexpr int kWrites = 300;

void addressGadget(benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state)
        micro::checkAddresses();
}
BENCHMARK(addressGadget);

void addressControl(benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state)
        micro::convertAddresses();
}
BENCHMARK(addressControl);

void walkGadget(benchmark::State& state) {
    const micro::Radio radio(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto turn : state)
        radio.findAsGadget();
}
BENCHMARK(walkGadget)->RangeMultiplier(10)->Range(kFewest, kMost);

void walkControl(benchmark::State& state) {
    const micro::Radio radio(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto turn : state)
        radio.findBare();
}
BENCHMARK(walkControl)->RangeMultiplier(10)->Range(kFewest, kMost);

template <typename Write>
double microsecondsOf(Write write) {
    const auto start = std::chrono::steady_clock::now();
    write();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::ranges::nth_element(samples, middle);
    return *middle;
}

// Turn by turn, since a disk has good and bad moments; and medians, since its bad moments last long.
void durableWrites(benchmark::State& state) {
    micro::Settings settings;
    micro::RawFile overwritten(micro::RawFile::Place::Same);
    micro::RawFile growing(micro::RawFile::Place::End);
    std::vector<double> stored, inPlace, appended;
    for ([[maybe_unused]] auto turn : state) {
        stored.push_back(microsecondsOf([&] { settings.write(); }));
        inPlace.push_back(microsecondsOf([&] { overwritten.write(); }));
        appended.push_back(microsecondsOf([&] { growing.write(); }));
    }
    state.counters["stored"] = medianOf(stored);
    state.counters["inPlace"] = medianOf(inPlace);
    state.counters["appended"] = medianOf(appended);
}
BENCHMARK(durableWrites)->Iterations(kWrites);

void storeRead(benchmark::State& state) {
    const micro::Settings settings;
    for ([[maybe_unused]] auto turn : state)
        settings.read();
}
BENCHMARK(storeRead);

void logSilent(benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(micro::logLine());
}
BENCHMARK(logSilent);

}  // namespace

BENCHMARK_MAIN();
