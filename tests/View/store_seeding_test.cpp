// The settings store after the gadget has opened: missing keys and "NULL" get their defaults, all else is kept.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "status_screen.h"

namespace {

constexpr const char* kSeeds[][2] = {
    {"wireless_ip_mode_V6", "COM_OBTAIN_AUTOMATICALLY"},
    {"wireless_dns_mode_V6", "COM_OBTAIN_AUTOMATICALLY"},
    {"wireless_ip_V6", "::"},
    {"wireless_prefix_V6", "0"},
    {"wireless_gateway_V6", "::"},
    {"wireless_dns_V6", "::"},
    {"wired_ip_V6", "::"},
    {"wired_prefix_V6", "0"},
    {"wired_gateway_V6", "::"},
    {"wired_dns_V6", "::"},
    {"wired_ip_mode_V6", "COM_OBTAIN_AUTOMATICALLY"},
    {"wired_dns_mode_V6", "COM_OBTAIN_AUTOMATICALLY"},
    {"network_type", "Wired"},
    {"ap_name", "No network"},
    {"is_stop", "FALSE"},
    {"ap_pass", "73019462"},
};

std::string keyOf(const std::string& name) {
    return "db/menu/network/" + name;
}

TEST(StoreSeeding, FillsWhatIsMissingOrNullAndKeepsWhatIsThere) {
    for (const std::optional<std::string>& before : {std::optional<std::string>(), {"NULL"}, {""}, {"kept"}}) {
        const bool seeded = !before || *before == "NULL";
        // The network type stays wired so that a whole check runs over what is kept.
        const auto isKept = [seeded](const std::string& key) { return !seeded && key != "network_type"; };
        HostSetup setup{.script = "wait 5\nquit\n"};
        for (const auto& [key, value] : kSeeds) {
            if (before && (seeded || isKept(key))) setup.store.emplace_back(keyOf(key), *before);
        }
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        for (const auto& [key, value] : kSeeds)
            EXPECT_EQ(run.storedText(keyOf(key)), isKept(key) ? *before : value) << key;
    }
}

}  // namespace
