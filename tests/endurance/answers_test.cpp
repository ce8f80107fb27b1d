// Each asynchronous answer late or absent, while the check runs, is cancelled or retried, or the gadget is closed.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "endurance_run.h"
#include "status_screen.h"

namespace {

// What keeps an answer from coming in time: the library that holds it back, or the network itself.
std::vector<std::string> delays() {
    std::vector<std::string> all{"network gateway answer 30\n", "network gateway silent\n",
                                 "network internet online 30\n", "network internet silent\n"};
    for (int answer = 1; answer <= 3; ++answer) {
        for (const char* seconds : {"0.4", "2", "20", "90", "-1"})
            all.push_back(order("hold", std::to_string(answer) + " " + seconds));
    }
    return all;
}

// What the user does meanwhile. The gateway is asked after 4 s (wired) or 6 s (wireless).
constexpr const char* kManners[] = {
    "wait 24\ntry expect sane\ndump end-%.json\nwait 100\n",
    "wait 4.3\ntry click exactly \"Cancel\"\nwait 0.3\ndump cancelled-%.json\nwait 100\n",
    "wait 6.3\ntry click exactly \"Cancel\"\nwait 0.3\ndump cancelled-%.json\nwait 0.1\ntry click exactly \"Retry\"\n"
    "wait 24\ntry expect sane\ndump end-%.json\n",
    "wait 6.3\ntry click exactly \"Cancel\"\nwait 0.3\ntry expect sane\ntry click exactly \"IPv6 settings\"\nwait 30\n"
    "try expect sane\ndump end-%.json\n",
    "wait 4.3\ntry key Menu\nwait 100\nopen\nwait 24\ntry expect sane\ndump end-%.json\n",
    "wait 6.3\ntry key Menu\nwait 0.1\nopen\nwait 24\ntry expect sane\ndump end-%.json\n",
};

constexpr const char* kSoundAgain = "network gateway answer 0.3\nnetwork internet online 0.4\n";

std::string journeyWith(const Network& network, const std::string& delay, std::string manner, std::size_t number) {
    for (std::size_t at = manner.find('%'); at != std::string::npos; at = manner.find('%'))
        manner.replace(at, 1, std::to_string(number));
    const std::string name = std::to_string(number);
    return beginJourney(network, name) + kSoundAgain + delay + "open\ntry expect sane\n" + manner +
           "try expect sane\n" + endJourney(name);
}

class Answers : public testing::TestWithParam<std::size_t> {};

TEST_P(Answers, MayComeLateOrNever) {
    const Network& network = networks()[GetParam()];
    std::string script;
    std::size_t played = 0;
    std::size_t number = 0;
    for (const std::string& delay : delays()) {
        for (const char* manner : kManners) {
            if (number++ % everyNth(57) != 0) continue;
            script += journeyWith(network, delay, manner, played++);
        }
    }
    const EnduranceRun run(network, script);
    ASSERT_EQ(run.reports().size(), played);
    for (std::size_t i = 0; i < played; ++i) {
        EXPECT_EQ(run.reports()[i]["timers"], 0) << i;
        for (const char* moment : {"cancelled", "end"}) {
            const std::string file = moment + ("-" + std::to_string(i)) + ".json";
            if (std::filesystem::exists(run.host().file(file))) expectTruth(run.host().dump(file), network, file);
        }
    }
    std::cout << played << " of " << number << " delays played\n";
}

INSTANTIATE_TEST_SUITE_P(Each, Answers, testing::Range<std::size_t>(0, 3),
                         [](const auto& test) { return networks()[test.param].name; });

}  // namespace
