// Each platform call and each allocation of the gadget fails once, in journeys that go through all of its screens.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <regex>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "connection_manager.h"
#include "endurance_run.h"
#include "wifi_manager.h"

namespace {

// The check, the settings, a manual configuration typed and confirmed, the check over it.
constexpr const char* kThroughAllScreens = R"(try open
  try expect sane
  wait 1
  try expect sane
  try expect exactly "Close" within 25
  wait 0.2
  try expect sane
  dump checked-%.json
  try click exactly "IPv6 settings"
  wait 0.3
  try expect sane
  try key Return
  wait 0.2
  try key Down
  try key Return
  wait 0.2
  try expect sane
  try click "IP address"
  wait 0.3
  try expect sane
  try click exactly "Delete all"
  wait 0.1
  try key 2
  try key 0
  try key 0
  try key 1
  try key d
  try key b
  try key 8
  try key colon
  try key 1
  try key colon
  try key colon
  try key 4
  try key 2
  try click exactly "Done"
  wait 0.3
  try expect sane
  dump typed-%.json
  try click exactly "OK"
  wait 0.3
  try expect sane
  try expect exactly "Close" within 25
  wait 0.2
  try expect sane
  dump again-%.json
)";

// The gadget is closed while the gateway is asked (after 4 s wired, 6 s wireless); the answer comes to nobody.
constexpr const char* kClosedWhileAsking = R"(network gateway answer 5
  try open
  wait 4.3
  try expect sane
  try key Menu
  wait 10
  try open
  wait 6.3
  try expect sane
  try key Menu
  wait 0.1
  try key Menu
  wait 10
  network gateway answer 0.3
)";

constexpr int kConnectionErrors[] = {CONNECTION_ERROR_OUT_OF_MEMORY,
                                     CONNECTION_ERROR_INVALID_PARAMETER,
                                     CONNECTION_ERROR_INVALID_OPERATION,
                                     CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED,
                                     CONNECTION_ERROR_NOW_IN_PROGRESS,
                                     CONNECTION_ERROR_INVALID_GATEWAY,
                                     CONNECTION_ERROR_OFFLINE,
                                     CONNECTION_ERROR_TCP_SYN_TIMEOUT,
                                     CONNECTION_ERROR_RST_IN_TCP_RESPONSE,
                                     CONNECTION_ERROR_NO_KEYWORD,
                                     CONNECTION_ERROR_OPERATION_FAILED,
                                     CONNECTION_ERROR_ITERATOR_END,
                                     CONNECTION_ERROR_NO_CONNECTION,
                                     CONNECTION_ERROR_ALREADY_EXISTS,
                                     CONNECTION_ERROR_OPERATION_ABORTED,
                                     CONNECTION_ERROR_DHCP_FAILED,
                                     CONNECTION_ERROR_INVALID_KEY,
                                     CONNECTION_ERROR_NO_REPLY};
constexpr int kWifiErrors[] = {WIFI_ERROR_OUT_OF_MEMORY,     WIFI_ERROR_INVALID_PARAMETER,
                               WIFI_ERROR_INVALID_OPERATION, WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED,
                               WIFI_ERROR_NOW_IN_PROGRESS,   WIFI_ERROR_INVALID_GATEWAY,
                               WIFI_ERROR_OFFLINE,           WIFI_ERROR_WPS_WEP_PROHIBITED,
                               WIFI_ERROR_WPS_TIMEOUT,       WIFI_ERROR_WPS_OVERLAP,
                               WIFI_ERROR_OPERATION_FAILED,  WIFI_ERROR_NO_CONNECTION,
                               WIFI_ERROR_ALREADY_EXISTS,    WIFI_ERROR_OPERATION_ABORTED,
                               WIFI_ERROR_DHCP_FAILED,       WIFI_ERROR_INVALID_KEY,
                               WIFI_ERROR_NO_REPLY,          WIFI_ERROR_SECURITY_RESTRICTED};
constexpr int kOtherErrors[] = {-1};

// The error table of the function's manager.
std::vector<int> errorsOf(const std::string& function) {
    if (function.starts_with("wifi_")) return {std::begin(kWifiErrors), std::end(kWifiErrors)};
    const bool tellsNoMore = function == "connection_profile_iterator_has_next";  // false is its only failure
    if (function.starts_with("connection_") && !tellsNoMore) {
        return {std::begin(kConnectionErrors), std::end(kConnectionErrors)};
    }
    return {std::begin(kOtherErrors), std::end(kOtherErrors)};
}

// What fails in one journey: a kind of order, and its value.
struct Failure {
    const char* screens;
    std::string what;
    std::string order;
    std::string value;
};

std::string journeyWith(const Network& network, const Failure& failure, std::size_t number) {
    std::string screens = failure.screens;
    for (std::size_t at = screens.find('%'); at != std::string::npos; at = screens.find('%'))
        screens.replace(at, 1, std::to_string(number));
    return beginJourney(network, failure.what) + order(failure.order, failure.value) + screens +
           endJourney(failure.what);
}

// What a journey does when nothing fails.
const nlohmann::json& soundJourney(const Network& network, const char* screens) {
    static std::map<std::string, nlohmann::json> known;
    const std::string name = network.name + std::string(screens);
    const auto found = known.find(name);
    if (found != known.end()) return found->second;
    const EnduranceRun run(network, journeyWith(network, {screens, "traced", "fail-call", "0 0"}, 0));
    if (run.reports().size() != 1) throw std::runtime_error("the journey without a failure did not end");
    EXPECT_FALSE(std::regex_search(run.host().transcript(), std::regex("try (click|expect exactly).*not done")))
        << run.host().transcript();
    return known[name] = run.reports().front();
}

std::vector<Failure> failingCalls(const nlohmann::json& sound, const char* screens) {
    std::vector<Failure> all;
    std::istringstream calls(sound["trace"].get<std::string>());
    int number = 0;
    for (std::string function; calls >> function;) {
        ++number;
        for (const int error : errorsOf(function)) {
            const std::string value = std::to_string(number) + " " + std::to_string(error);
            all.push_back({screens, "call " + value + " " + function, "fail-call", value});
        }
    }
    return all;
}

std::vector<Failure> failingAllocations(const nlohmann::json& sound, const char* screens) {
    std::vector<Failure> all;
    for (int number = 1; number <= sound["allocations"].get<int>(); ++number) {
        for (const char* how : {"", " always"}) {
            const std::string value = std::to_string(number) + how;
            all.push_back({screens, "allocation " + value, "fail-allocation", value});
        }
    }
    return all;
}

// Fails once in each journey of one run of the host, and looks at what was shown.
void sweep(const Network& network, std::span<const Failure> failures) {
    std::string script;
    for (std::size_t i = 0; i < failures.size(); ++i)
        script += journeyWith(network, failures[i], i);
    const EnduranceRun run(network, script);
    ASSERT_EQ(run.reports().size(), failures.size());
    for (std::size_t i = 0; i < failures.size(); ++i) {
        const nlohmann::json& report = run.reports()[i];
        EXPECT_GE(report["failures"], 1) << failures[i].what;
        EXPECT_EQ(report["timers"], 0) << failures[i].what;
        for (const char* moment : {"checked", "typed", "again"}) {
            const std::string file = moment + ("-" + std::to_string(i)) + ".json";
            if (std::string_view(failures[i].screens).find(moment) == std::string_view::npos) continue;
            expectTruth(run.host().dump(file), network, failures[i].what);
        }
    }
}

struct Sweep {
    const char* name;
    const char* screens;
    std::vector<Failure> (*failures)(const nlohmann::json& sound, const char* screens);
    std::size_t sampled;  // the short form plays each so-and-so-many-th
};
constexpr Sweep kSweeps[] = {{"Calls", kThroughAllScreens, failingCalls, 701},
                             {"ClosingCalls", kClosedWhileAsking, failingCalls, 601},
                             {"Allocations", kThroughAllScreens, failingAllocations, 29}};

constexpr std::size_t kJourneysInARun = 60;

// A long run is cut into so many tests, which its shards take turns in.
std::size_t slices() {
    return std::getenv("ENDURANCE_EVERY") == nullptr ? 1 : 6;
}

class Failures : public testing::TestWithParam<std::tuple<std::size_t, Sweep, std::size_t>> {};

TEST_P(Failures, LeaveATrueScreenAndAClosedGadget) {
    const auto& [number, kind, slice] = GetParam();
    const Network& network = networks()[number];
    const std::vector<Failure> all = kind.failures(soundJourney(network, kind.screens), kind.screens);
    std::vector<Failure> played;
    const std::size_t every = everyNth(kind.sampled);
    for (std::size_t i = slice * every; i < all.size(); i += slices() * every)
        played.push_back(all[i]);
    for (std::size_t first = 0; first < played.size(); first += kJourneysInARun)
        sweep(network, std::span(played).subspan(first, std::min(kJourneysInARun, played.size() - first)));
    std::cout << played.size() << " of " << all.size() << " failures played\n";
}

std::string nameOf(const testing::TestParamInfo<Failures::ParamType>& test) {
    const auto& [number, kind, slice] = test.param;
    return networks()[number].name + std::string(kind.name) + std::to_string(slice);
}

INSTANTIATE_TEST_SUITE_P(Each, Failures,
                         testing::Combine(testing::Range<std::size_t>(0, 3), testing::ValuesIn(kSweeps),
                                          testing::Range<std::size_t>(0, slices())),
                         nameOf);

}  // namespace
