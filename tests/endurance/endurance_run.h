// Many journeys through the gadget in one run of the real host, with the library preloaded that makes things fail.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "host_run.h"

// A test plays each so-and-so-many-th of its cases; ENDURANCE_EVERY says of how many, 1 is the long form.
std::size_t everyNth(std::size_t usually);

// A kind of network with what every screen may show of it, and the script lines that a journey begins with.
struct Network {
    const char* name;
    std::string scenario;
    std::string before;
    std::vector<std::string> truths;  // values that are so, or were typed, or stand for nothing
};
const std::vector<Network>& networks();

class EnduranceRun {
  public:
    // What the host opens is closed before the script begins: each journey opens its own. Without a module it is the
    // gadget.
    EnduranceRun(const Network& network, const std::string& script, const std::string& module = {},
                 const std::vector<std::string>& allowed = {});

    const HostRun& host() const { return run_; }
    // What `set-store endurance/report` wrote, in order.
    const std::vector<nlohmann::json>& reports() const { return reports_; }

  private:
    void judgeJourneys() const;

    std::string network_;
    HostRun run_;
    std::vector<nlohmann::json> reports_;
};

// Script lines: steers the preloaded library.
std::string order(const std::string& name, const std::string& value);
// Begins a journey of that name on that network; its orders and screens follow.
std::string beginJourney(const Network& network, const std::string& name);
// Whatever is open, the close keys close it. Then the counts are reported.
std::string endJourney(const std::string& name);

// Whether a dump shows nothing but what is so: a verdict with its panel, rows with their values.
void expectTruth(const nlohmann::json& dump, const Network& network, const std::string& journey);
