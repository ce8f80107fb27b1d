#include "endurance_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "settings_screen.h"

namespace {

constexpr std::string_view kReport = "endurance {";
constexpr std::string_view kComplaint = "endurance complaint";
constexpr std::string_view kMustHold[] = {"try expect sane", "try expect closed"};

HostSetup setup(const Network& network, const std::string& script, const std::string& module,
                const std::vector<std::string>& allowed) {
    return {.network = network.scenario,
            // Read line by line: a script in memory would shrink as it is played, and hide what the gadget loses.
            .input = "key Menu\nexpect closed within 1\n" + script,
            // Frames that come from the heap save a third of the time.
            .environment = {{"LD_PRELOAD", ENDURANCE_PRELOAD},
                            {"BENCH_CONTROL_TICKS", "8"},
                            // Our malloc stands between the sanitizer's and who calls it.
                            {"ASAN_OPTIONS", "malloc_context_size=3"},
                            {"MALLOC_MMAP_THRESHOLD_", "1000000000"},
                            {"MALLOC_TRIM_THRESHOLD_", "2000000000"}},
            .module = module,
            .arguments = {"--script", "-", "--size", "640x360"},
            .allowed = allowed,
            .timeout = 3600};
}

std::string stored(const SettingsCase& kind) {
    std::string script = std::string("set-store db/menu/network/network_type \"") + kind.type + "\"\n";
    const char* const values[][2] = {{"ip_mode", kAuto}, {"dns_mode", kAuto},          {"ip", "2001:db8:9::9"},
                                     {"prefix", "56"},   {"gateway", "2001:db8:9::1"}, {"dns", "2001:db8:9::53"}};
    for (const auto& [name, value] : values)
        script += "set-store " + keyOf(kind, name) + " \"" + value + "\"\n";
    return script;
}

Texts truths(const SettingsCase& kind) {
    return {"::",
            "0",
            "00:00:00:00:00:00",
            kAutoText,
            kManualText,
            "2001:db8:9::9",
            "56",
            "64",
            "2001:db8:9::1",
            "2001:db8:9::53",
            "fe80::1",
            "2001:db8:1::42",
            "02:00:5E:10:00:01",
            "02:00:5E:20:00:01",
            "02:00:5E:20:00:AA",
            kind.address,
            kind.server};
}

constexpr const char* kStopFlag = "set-store db/menu/network/is_stop ";
constexpr const char* kLostNetwork =
    "set-store db/menu/network/ap_name \"Maple Street 12\"\nset-store db/menu/network/ap_pass \"73019462\"\n"
    "network wifi lose\n";

bool startsWithAny(std::string_view text) {
    return std::ranges::any_of(kMustHold, [text](std::string_view start) { return text.starts_with(start); });
}

}  // namespace

std::size_t everyNth(std::size_t usually) {
    const char* const wanted = std::getenv("ENDURANCE_EVERY");
    return wanted == nullptr ? usually : std::max(1UL, std::strtoul(wanted, nullptr, 10));
}

const std::vector<Network>& networks() {
    static const std::vector<Network> all{
        {"Wired", scenario("success"), stored(kWiredCase), truths(kWiredCase)},
        {"Wireless", scenario("wifi-success"),
         stored(kWirelessCase) + kStopFlag + "\"FALSE\"\nnetwork wifi associate \"Maple Street 12\"\n",
         truths(kWirelessCase)},
        {"Reconnecting", scenario("wifi-reconnect"), stored(kWirelessCase) + kStopFlag + "\"TRUE\"\n" + kLostNetwork,
         truths(kWirelessCase)},
    };
    return all;
}

std::string order(const std::string& name, const std::string& value) {
    return "set-store endurance/" + name + " \"" + value + "\"\n";
}

std::string beginJourney(const Network& network, const std::string& name) {
    return "log \"" + name + "\"\n" + network.before + order("journey", name);
}

std::string endJourney(const std::string& name) {
    return "try key XF86Close\nwait 0.1\ntry key Menu\nwait 0.1\ntry key Menu\ntry expect closed within 1\n" +
           order("report", name);
}

EnduranceRun::EnduranceRun(const Network& network, const std::string& script, const std::string& module,
                           const std::vector<std::string>& allowed)
    : network_(network.name), run_(setup(network, script, module, allowed)) {
    std::istringstream lines(run_.errors());
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kReport)) reports_.push_back(nlohmann::json::parse(line.substr(kReport.size() - 1)));
        if (line.starts_with(kComplaint)) ADD_FAILURE() << line;
    }
    judgeJourneys();
}

void EnduranceRun::judgeJourneys() const {
    constexpr std::size_t kTimeColumns = 13;  // "[    1.234] "
    std::istringstream lines(run_.transcript());
    std::string journey = "no journey";
    for (std::string line; std::getline(lines, line);) {
        const std::string_view said = std::string_view(line).substr(std::min(line.size(), kTimeColumns - 1));
        if (said.starts_with("log ")) journey = said;
        if (startsWithAny(said) && said.find("not done") != std::string_view::npos) {
            ADD_FAILURE() << network_ << ", " << journey << ": " << said;
        }
    }
    EXPECT_TRUE(run_.succeeded()) << "exit code " << run_.exitCode() << " in " << network_ << ", " << journey << '\n'
                                  << run_.errors().substr(run_.errors().size() -
                                                          std::min<std::size_t>(run_.errors().size(), 6000));
}

void expectTruth(const nlohmann::json& dump, const Network& network, const std::string& journey) {
    const auto isTrue = [&network](const std::string& text) {
        return text.empty() || std::ranges::find(network.truths, text) != network.truths.end();
    };
    for (const std::string& text : panelIn(dump))
        EXPECT_TRUE(isTrue(text)) << network.name << ", " << journey << ": the panel shows " << text;
    for (const std::string& text : valuesIn(dump))
        EXPECT_TRUE(isTrue(text)) << network.name << ", " << journey << ": a row shows " << text;
    const std::string message = textIn(dump, kMessagePart);
    if (message.find("ready") == std::string::npos) return;
    EXPECT_EQ(panelIn(dump), kBlankPanel) << network.name << ", " << journey;
    EXPECT_EQ(pictureIn(dump, kErrorMarkPart), "") << network.name << ", " << journey;
}
