// The settings and their store: what the screen shows, its mode switches, where the focus goes, what OK writes.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "settings_screen.h"

namespace {

struct Use {
    Stored stored;
    std::string script;
    bool manual;  // the modes after the script
    bool manualDns;
    const char* sent;       // to the network at once
    const char* confirmed;  // by OK
    const char* prefix = "56";
};

const std::string kDnsToManual = std::string("key Down\n") + kToManual;
const std::string kTypeSixty = kOpenPrefix + "key 6\nkey 0\nkey Return\nwait 0.2\n";
constexpr const char* kChooseTheCurrent = "key Return\nwait 0.2\nkey Return\nwait 0.2\n";

// A mode is sent when it changes, the values when they are confirmed.
constexpr const char* kDnsSent = "- -/0 - - 2001:db8:9::53,2001:db8:9::53";
constexpr const char* kDnsModeSent = "- -/0 - static -";
constexpr const char* kDnsAllSent = "- -/0 - static 2001:db8:9::53,2001:db8:9::53";
constexpr const char* kValuesSent = "- 2001:db8:9::9/56 2001:db8:9::1 - 2001:db8:9::53,2001:db8:9::53";
constexpr const char* kModesSent = "static -/0 - static -";
constexpr const char* kAllSent = "static 2001:db8:9::9/60 2001:db8:9::1 static 2001:db8:9::53,2001:db8:9::53";
constexpr const char* kAutomatic = "automatic -/0 - dynamic -";
constexpr const char* kDynamic = "- -/0 - dynamic -";

const Use kUses[] = {
    {{}, "", false, false, kUntouched, kUntouched},
    {{kAuto, kManual}, "", false, true, kUntouched, kDnsSent},
    {{kManual, kManual}, "", true, true, kUntouched, kValuesSent},
    {{kManual, kAuto}, "", true, false, kUntouched, kUntouched},  // which is no configuration
    // Another program's modes, one of them longer than any field.
    {{"COM_ENTER_MANUALLY_" + std::string(400, 'x'), "com_enter_manually"}, "", false, false, kUntouched, kUntouched},
    {{}, kToManual + kTypeSixty, true, true, kModesSent, kAllSent, "60"},
    {{kManual, kManual}, kToAutomatic, false, false, kAutomatic, kAutomatic},
    {{}, kDnsToManual, false, true, kDnsModeSent, kDnsAllSent},
    {{}, kDnsToManual + kToAutomatic, false, false, kDynamic, kDynamic},
    {{kManual, kManual}, kChooseTheCurrent, true, true, kUntouched, kValuesSent},
};

// A manual configuration shows what is stored, an automatic one what is live.
Texts shownBy(const Use& use, const SettingsCase& network) {
    const std::vector<std::string>& stored = use.stored.values;
    const std::string dnsMode = use.manualDns ? kManualText : kAutoText;
    if (use.manual) return {kManualText, stored[0], use.prefix, stored[2], dnsMode, stored[3]};
    return {kAutoText, network.address, "64", "fe80::1", dnsMode, use.manualDns ? stored[3] : network.server};
}

Texts storedBy(const Use& use) {
    const std::vector<std::string>& stored = use.stored.values;
    return {use.manual ? kManual : kAuto, use.manualDns ? kManual : kAuto, stored[0], use.prefix, stored[2], stored[3]};
}

TEST(Settings, ShowTheConfigurationAndOkWritesItAndChecksAnew) {
    for (const SettingsCase& network : kBothCases) {
        for (const Use& use : kUses) {
            SCOPED_TRACE(std::string(network.type) + use.stored.ipMode + use.stored.dnsMode + use.script);
            const HostRun run(onSettings(network, use.stored, use.script + R"(
                dump shown.json
                network save sent.json
                click "OK"
                wait 0.2
                dump closed.json
                network save confirmed.json
                expect "network and the internet are ready to use." within 20
                dump verdict.json
                quit
            )"));
            ASSERT_TRUE(run.succeeded()) << run;
            const nlohmann::json shown = run.dump("shown.json");
            EXPECT_EQ(valuesIn(shown), shownBy(use, network));
            EXPECT_EQ(enabledIn(shown), use.manual ? "111101" : use.manualDns ? "100011" : "100010");
            EXPECT_EQ(popupsIn(shown), Texts{"c_popup_l_bottom"});
            EXPECT_EQ(buttonsIn(shown), (Texts{"OK", "Cancel"}));
            EXPECT_EQ(configuredIn(run.dump("sent.json")), use.sent);
            EXPECT_EQ(configuredIn(run.dump("confirmed.json")), use.confirmed);
            EXPECT_EQ(storedAfter(run, network), storedBy(use));
            const nlohmann::json closed = run.dump("closed.json");
            EXPECT_EQ(popupsIn(closed), Texts{});
            EXPECT_EQ(focusIn(closed), "Cancel");
            EXPECT_EQ(panelIn(closed), kBlankPanel);
            EXPECT_EQ(pictureIn(run.dump("verdict.json"), kSignalPart),
                      isWireless(network.scenario) ? kSignalPicture : "");
        }
    }
}

TEST(Settings, FollowTheUserAndAreStoredThoughTheNetworkRefusesThem) {
    const HostRun run(onSettings(kWiredCase, {},
                                 std::string("network fault connection_update_profile OPERATION_FAILED always\n") +
                                     kToManual + "dump manual.json\nclick \"OK\"\nwait 0.2\nquit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(enabledIn(run.dump("manual.json")), "111101");
    EXPECT_EQ(storedAfter(run, kWiredCase)[0], kManual);
}

const Texts kDefaults{kAuto, kAuto, "::", "0", "::", "::"};

TEST(StoreSeeding, FillsWhatIsMissingOrNullAndKeepsWhatIsThere) {
    const std::pair<std::string, std::string> others[] = {
        {"network_type", "Wired"}, {"ap_name", "No network"}, {"is_stop", "FALSE"}, {"ap_pass", "73019462"}};
    for (const char* before : {"(nothing)", "NULL", "", "kept"}) {
        const bool seeded = std::string(before) == "(nothing)" || std::string(before) == "NULL";
        std::map<std::string, std::string> expected;
        for (const SettingsCase& network : kBothCases) {
            for (std::size_t i = 0; i < kDefaults.size(); ++i)
                expected[keyOf(network, kKeyNames[i])] = seeded ? kDefaults[i] : before;
        }
        // The network type stays wired so that a whole check runs over what is kept.
        for (const auto& [name, value] : others)
            expected["db/menu/network/" + name] = seeded || value == "Wired" ? value : before;
        HostSetup setup{.script = "wait 5\nquit\n"};
        for (const auto& [key, value] : expected) {
            if (before != std::string("(nothing)")) setup.store.emplace_back(key, seeded ? before : value);
        }
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        for (const auto& [key, value] : expected)
            EXPECT_EQ(run.storedText(key), value) << key << " after " << before;
    }
}

TEST(Settings, SeedTheirOwnKeysOnly) {
    for (const auto& [opened, other] : {std::pair{kWiredCase, kWirelessCase}, {kWirelessCase, kWiredCase}}) {
        HostSetup setup = onNetwork(opened.scenario, kToVerdict);
        for (const SettingsCase& network : kBothCases) {
            for (const char* name : kKeyNames)
                setup.script += "set-store " + keyOf(network, name) + " \"NULL\"\n";
        }
        setup.script += std::string(kOpenSettings) + "quit\n";
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(storedAfter(run, opened), kDefaults) << opened.type;
        EXPECT_EQ(storedAfter(run, other), Texts(6, "NULL")) << opened.type;
    }
}

TEST(Settings, TheFocusSkipsRowsThatCannotBeSelected) {
    const std::pair<Stored, const char*> cases[] = {
        {{},
         "Left IP settings Obtain automatically|Right IP settings Obtain automatically|"
         "Down DNS settings Obtain automatically|Down OK|Right Cancel|Right OK|Left Cancel|"
         "Up DNS settings Obtain automatically|Up IP settings Obtain automatically|Up OK|"
         "Down IP settings Obtain automatically"},
        {{kManual, kManual},
         "Down IP address 2001:db8:9::9|Down Prefix length 56|Down Gateway 2001:db8:9::1|"
         "Down DNS server 2001:db8:9::53|Up Gateway 2001:db8:9::1|Down DNS server 2001:db8:9::53|Down OK|"
         "Up DNS server 2001:db8:9::53|Down OK|Left Cancel|Down IP settings Enter manually"},
    };
    for (const auto& [stored, steps] : cases) {
        const HostRun run(onSettings(kWiredCase, stored, walk(steps) + "quit\n"));
        EXPECT_TRUE(run.succeeded()) << run;
    }
}

TEST(Settings, ANewAddressIsShownWhileTheModeIsAutomatic) {
    for (const auto& [stored, address, server] : {std::tuple{Stored{}, "2001:db8:7::7", "2001:db8:7::53"},
                                                  {Stored{kAuto, kManual}, "2001:db8:7::7", "2001:db8:9::53"},
                                                  {Stored{kManual, kManual}, "2001:db8:9::9", "2001:db8:9::53"}}) {
        HostSetup setup = onSettings(
            kWiredCase, stored,
            "network dns 2001:db8:7::53\nnetwork address 2001:db8:7::7/48\nwait 0.1\nexpect focus \"IP settings\"\n"
            "dump changed.json\nkey XF86Back\nwait 0.1\nnetwork address 2001:db8:6::6/48\nwait 1\nquit\n");
        setup.arguments = {"--log", "debug"};
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_NE(run.errors().find("ip_changed_callback deregistered Success"), std::string::npos);
        EXPECT_EQ(valuesIn(run.dump("changed.json"))[1], address);
        EXPECT_EQ(valuesIn(run.dump("changed.json"))[5], server);
    }
}

TEST(Settings, RefuseAWirelessNetworkWithoutAName) {
    // The status screen stays empty then, and still closes by key.
    const HostRun run(onNetwork(
        "wifi-success",
        kToVerdict + ("network wifi lose\nset-store db/menu/network/ap_name \"NULL\"\n" + std::string(kOpenSettings)) +
            "expect-gone \"IP settings\"\nexpect sane\nkey XF86Back\n"
            "expect closed within 1\n"));
    EXPECT_TRUE(run.succeeded()) << run;
}

}  // namespace
