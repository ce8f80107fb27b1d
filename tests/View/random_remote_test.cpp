// A remote in random hands: keys, clicks and answers of the network drawn with a seed, over all screens. Nothing may
// crash, complain or lose the focus, and the close keys always work.
//
// RANDOM_REMOTE_SEED=7 RANDOM_REMOTE_ACTIONS=5000 random-remote-test runs that one seed, that long.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "status_screen.h"

namespace {

constexpr std::uint64_t kSeeds = 20;
// Each build of the tests plays them; the sanitizers are whom they are for.
#ifdef __SANITIZE_ADDRESS__
constexpr int kActions = 1000;
#else
constexpr int kActions = 100;
#endif
constexpr int kActionsBetweenClosings = 50;

const Texts kWiredScenarios = listed(
    "success|gateway-down|gateway-retry|gateway-silent|internet-down|internet-silent|late-address|mac-all-zero|"
    "no-address|no-profile|no-service|cable-down|address-invalid|pulled-in-stage-two|prefix-129|two-profiles");
const Texts kWirelessScenarios = listed(
    "wifi-success|wifi-gateway-down|wifi-internet-silent|wifi-never-associates|wifi-not-found|wifi-dhcp-failed|"
    "wifi-markup-name|wifi-hostile-names|wifi-late-address|wifi-wrong-passphrase|wifi-off|wifi-no-address|"
    "wifi-home-5g-first|wifi-reconnect|wifi-raw-name");

const Texts kMoves = listed("Up|Down|Left|Right");
const Texts kTyping = listed(
    "0|1|2|3|4|5|6|7|8|9|a|b|c|d|e|f|colon|KP_0|KP_5|KP_9|g|A|Tab|space|slash|BackSpace|BackSpace|KP_2|KP_Enter");
const Texts kCloseKeys = listed("XF86Back|XF86Back|XF86Close|Menu");
const Texts kLabels = listed(
    "IPv6 settings|IPv6 settings|IPv6 settings|Retry|Cancel|Close|OK|OK|Done|Delete all|Gateway|IP address|"
    "Prefix length|IP settings|DNS settings|DNS server|A|:|<|>|Obtain automatically|Enter manually|Enter manually");

const Texts kModes = listed("COM_OBTAIN_AUTOMATICALLY|COM_ENTER_MANUALLY|COM_ENTER_MANUALLY||Manual|<b>&amp;|NULL");
const Texts kValues = listed(
    "2001:db8:9::9|::|NULL||64|129|-1|99999999999999999999|fe80::1%eth0|<b>&lt;</b><br/>|%s%n%d|tab\ttab\x1b[31m|"
    "2001:0db8:0000:0000:0000:0000:0000:0001|"
    "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff|📺אבג");
const Texts kNames = listed("ip_mode|dns_mode|ip|prefix|gateway|dns");
constexpr std::size_t kModeNames = 2;

const Texts kResults = listed(
    "OPERATION_FAILED|NO_CONNECTION|OFFLINE|INVALID_GATEWAY|INVALID_PARAMETER|NO_REPLY|OPERATION_ABORTED|"
    "OUT_OF_MEMORY");
const Texts kCalls = listed(
    "connection_profile_check_gateway6_async|connection_get_is_online_ipv6_async|connection_update_profile|"
    "connection_get_profile_iterator|connection_profile_get_ip_address|connection_profile_get_prefix_length|"
    "connection_profile_get_dns_address|connection_profile_set_ip_address|connection_profile_clone|"
    "connection_profile_set_ip_config_type|connection_create|connection_get_mac_address|"
    "connection_get_ethernet_state|connection_set_type_changed_cb|connection_profile_get_gateway_address|"
    "wifi_ap_check_gateway6_async|wifi_get_is_online_ipv6_async|wifi_get_connected_ap|wifi_ap_get_essid|"
    "wifi_ap_get_ip_address|wifi_ap_set_ip_config_type|wifi_ap_set_ip_address|wifi_connect|wifi_initialize|"
    "wifi_scan|wifi_foreach_found_aps|wifi_is_activated|wifi_ap_get_rssi|wifi_ap_clone");
// What stands after "network"; a * is a random result.
const Texts kWiredHappenings = listed(
    "unplug|plug|plug|ethernet disconnected|ethernet deactivated|ethernet connected|mac none|"
    "mac 02:00:5E:10:00:01|address 2001:db8:1::11/64|address none|router fe80::2|router none|"
    "dns 2001:db8:1::53 2001:db8:1::54|dns none|profile disconnect wired|profile connect wired|"
    "profile remove wired");
const Texts kWirelessHappenings = listed(
    "wifi on|wifi on|wifi off|wifi associate \"Maple Street 12\"|wifi lose|wifi appear \"Maple Street 12\"|"
    "wifi vanish \"Maple Street 12\"|wifi rssi \"Maple Street 12\" -90|"
    "wifi address \"Maple Street 12\" 2001:db8:2::21/64|wifi address \"Maple Street 12\" none|"
    "wifi router \"Maple Street 12\" none|wifi dns \"Maple Street 12\" none|"
    "wifi connect \"Maple Street 12\" success 2|wifi connect \"Maple Street 12\" silent|"
    "wifi connect \"Maple Street 12\" DHCP_FAILED 1|wifi mac none");
const Texts kAnswers = listed(
    "gateway answer 0.3|gateway answer 0|gateway silent|gateway * 1|internet online 0.4|internet online 0|"
    "internet offline 2|internet silent|internet * 1|no-faults");

class Dice {
  public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}
    std::size_t below(std::size_t limit) { return engine_() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    std::string pick(const Texts& words) { return words[below(words.size())]; }

  private:
    std::mt19937_64 engine_;  // draws the same with every library
};

std::string happening(Dice& dice, bool wireless) {
    if (dice.oneIn(3)) return "try network fault " + dice.pick(kCalls) + " " + dice.pick(kResults);
    std::string command = dice.pick(kAnswers);
    if (dice.oneIn(2)) command = wireless ? dice.pick(kWirelessHappenings) : dice.pick(kWiredHappenings);
    if (const std::size_t star = command.find('*'); star != std::string::npos)
        command.replace(star, 1, dice.pick(kResults));
    return "try network " + command;
}

// Mostly moments, sometimes a whole check, rarely more than the minute that closes the gadget.
std::string pause(Dice& dice) {
    const std::size_t longest = dice.oneIn(20) ? 70000 : dice.oneIn(3) ? 7000 : 600;
    return "wait " + std::to_string(static_cast<double>(dice.below(longest)) / 1000);
}

std::string click(Dice& dice) {
    if (dice.oneIn(2)) return "try click exactly \"" + dice.pick(kLabels) + '"';
    return "try click at " + std::to_string(dice.below(640)) + ' ' + std::to_string(dice.below(360));
}

std::string action(Dice& dice, bool wireless) {
    const std::size_t kind = dice.below(100);
    if (kind < 32) return "try key " + dice.pick(kMoves);
    if (kind < 44) return "try key Return";
    if (kind < 60) return "try key " + dice.pick(kTyping);
    if (kind < 62) return "try key " + dice.pick(kCloseKeys);
    if (kind < 80) return click(dice);
    if (kind < 82) return dice.oneIn(2) ? "try pause" : "try resume";
    return kind < 88 ? happening(dice, wireless) : pause(dice);
}

// Menu closes everything at once, except over the mode choice, which only XF86Close and XF86Back close. Back takes one
// step after the other; its question on the keyboard wants an answer.
std::string closing(Dice& dice) {
    std::string script = "open\n";
    if (dice.oneIn(2)) {
        script += "try key XF86Close\nwait 0.1\ntry key Menu\n";
    } else {
        for (int step = 0; step < 5; ++step)
            script += "try key XF86Back\ntry click part button1\n";
    }
    return script + "expect closed within 1\n";
}

// A screen takes a moment to give its focus on, in which the next key may already come.
std::string randomScript(Dice& dice, bool wireless, int actions) {
    std::string script;
    for (int i = 1; i <= actions; ++i) {
        script += "open\n" + action(dice, wireless) + "\n";
        if (dice.oneIn(2)) script += "wait 0.1\nexpect sane\n";
        if (i % kActionsBetweenClosings == 0) script += closing(dice);
    }
    return script;
}

// A script of its own stores the configuration, so that it replays anywhere, and opens the gadget anew on it.
std::string randomStore(Dice& dice, bool wireless) {
    const std::string start = "set-store db/menu/network/";
    std::string script = start + "network_type " + (wireless ? "Wireless\n" : "Wired\n");
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (dice.oneIn(4)) continue;
        const std::string value = i < kModeNames ? dice.pick(kModes) : dice.pick(kValues);
        script += start + (wireless ? "wireless_" : "wired_") + kNames[i] + "_V6 \"" + value + "\"\n";
    }
    return script + "key Menu\nexpect closed within 1\n";
}

HostSetup randomRun(std::uint64_t seed, int actions) {
    Dice dice(seed);
    const bool wireless = seed % 2 == 1;
    HostSetup setup{.network = scenario(wireless ? dice.pick(kWirelessScenarios) : dice.pick(kWiredScenarios)),
                    // Frames that come from the heap save a third of the time.
                    .environment = {{"MALLOC_MMAP_THRESHOLD_", "1000000000"}, {"MALLOC_TRIM_THRESHOLD_", "2000000000"}},
                    .arguments = {"--size", "640x360"},
                    .timeout = 280 + actions / 20};
    setup.store.emplace_back("db/menu/system/accessibility/highcontrast", static_cast<int>(dice.below(2)));
    setup.store.emplace_back("db/menu/system/accessibility/focuszoom", static_cast<int>(dice.below(2)));
    setup.script = randomStore(dice, wireless) + randomScript(dice, wireless, actions);
    return setup;
}

std::uint64_t numberIn(const char* variable, std::uint64_t otherwise) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

class RandomRemote : public testing::TestWithParam<std::uint64_t> {};

TEST_P(RandomRemote, LeavesTheGadgetSane) {
    const int actions = static_cast<int>(numberIn("RANDOM_REMOTE_ACTIONS", kActions));
    const HostSetup setup = randomRun(GetParam(), actions);
    const HostRun run(setup);
    EXPECT_TRUE(run.succeeded()) << run;
    if (!HasFailure()) return;
    const std::string kept = "random-remote-" + std::to_string(GetParam()) + ".tour";
    std::ofstream(kept) << setup.script;
    ADD_FAILURE() << "RANDOM_REMOTE_SEED=" << GetParam() << " RANDOM_REMOTE_ACTIONS=" << actions
                  << " replays this; its script is in " << std::filesystem::absolute(kept) << ", its network "
                  << setup.network;
}

const std::uint64_t kFirst = numberIn("RANDOM_REMOTE_SEED", 0);
const std::uint64_t kLast = numberIn("RANDOM_REMOTE_SEED", kSeeds - 1);

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRemote, testing::Range(kFirst, kLast + 1),
                         [](const auto& seed) { return std::to_string(seed.param); });

}  // namespace
