// The settings store after the gadget has opened: missing keys and "NULL" get their defaults, all else is kept.
#include <gtest/gtest.h>

#include <string>

#include "status_screen.h"

namespace {

struct Seed {
    const char* key;
    const char* value;
};

constexpr Seed kSeeds[] = {
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

std::string keyOf(const Seed& seed) {
    return std::string("db/menu/network/") + seed.key;
}

TEST(StoreSeeding, FillsMissingAndNullKeys) {
    for (const bool null : {false, true}) {
        HostSetup setup{.script = "wait 5\nquit\n"};
        for (const Seed& seed : kSeeds) {
            if (null) setup.store.emplace_back(keyOf(seed), "NULL");
        }
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        for (const Seed& seed : kSeeds)
            EXPECT_EQ(run.storedText(keyOf(seed)), seed.value) << seed.key;
    }
}

TEST(StoreSeeding, KeepsWhatIsThere) {
    // An empty text is a value; so is any other. The network type stays wired so that a whole check runs over them.
    for (const std::string value : {"", "kept"}) {
        HostSetup setup{.script = "wait 5\nquit\n"};
        for (const Seed& seed : kSeeds) {
            setup.store.emplace_back(keyOf(seed), std::string(seed.key) == "network_type" ? "Wired" : value);
        }
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        for (const Seed& seed : kSeeds) {
            const std::string kept = std::string(seed.key) == "network_type" ? "Wired" : value;
            EXPECT_EQ(run.storedText(keyOf(seed)), kept) << seed.key;
        }
    }
}

}  // namespace
