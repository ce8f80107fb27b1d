// The settings screen: what it shows, its mode switches, where the focus goes, and what a confirmation writes.
#include <gtest/gtest.h>

#include "settings_screen.h"

namespace {

struct Shown {
    const char* what;
    Stored stored;
    Texts (*values)(const SettingsCase& network);
    const char* enabled;
};

const Shown kShown[] = {
    {"automatic",
     {},
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kAutoText, network.server};
     },
     "100010"},
    {"automatic with a manual DNS server",
     {kAuto, kManual},
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kManualText, "2001:db8:9::53"};
     },
     "100011"},
    {"manual",
     {kManual, kManual},
     [](const SettingsCase&) {
         return Texts{kManualText, "2001:db8:9::9", "56", "2001:db8:9::1", kManualText, "2001:db8:9::53"};
     },
     "111101"},
    {"manual with an automatic DNS server",
     {kManual, kAuto},
     [](const SettingsCase&) {
         return Texts{kManualText, "2001:db8:9::9", "56", "2001:db8:9::1", kAutoText, "2001:db8:9::53"};
     },
     "111101"},
    {"a mode of another program, longer than any field",
     {"COM_ENTER_MANUALLY_" + std::string(400, 'x'), "com_enter_manually"},
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kAutoText, network.server};
     },
     "100010"},
    {"values longer than their fields, and markup",
     {kManual, kManual, {std::string(40, 'a') + "bcdef", "1234", "<b>&amp;</b>", "\xff\x01"}},
     [](const SettingsCase&) {
         return Texts{kManualText, std::string(39, 'a'), "123", "<b>&amp;</b>", kManualText, "��"};
     },
     "111101"},
};

TEST(Settings, ShowTheStoredOrTheLiveValues) {
    for (const SettingsCase& network : kBothCases) {
        for (const Shown& shown : kShown) {
            const HostRun run(onSettings(network, shown.stored, "dump open.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            const nlohmann::json dump = run.dump("open.json");
            EXPECT_EQ(valuesIn(dump), shown.values(network)) << network.type << ", " << shown.what;
            EXPECT_EQ(enabledIn(dump), shown.enabled) << network.type << ", " << shown.what;
            EXPECT_EQ(focusedRowIn(dump), "IP settings");
            EXPECT_EQ(buttonsIn(dump), (Texts{"OK", "Cancel"}));
        }
    }
}

TEST(Settings, SeedTheirOwnKeysOnly) {
    for (const SettingsCase& network : kBothCases) {
        HostSetup setup = onSettings(network, {"NULL", "NULL", {"NULL", "NULL", "Null", "NULLX"}}, "quit\n");
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(storedAfter(run, network), (Texts{kAuto, kAuto, "::", "0", "Null", "NULLX"})) << network.type;
    }
}

struct Switch {
    const char* what;
    Stored stored;
    std::string script;
    Texts (*values)(const SettingsCase& network);
    const char* enabled;
    const char* configured;
};

const Switch kSwitches[] = {
    {"to manual",
     {},
     kToManual,
     [](const SettingsCase&) {
         return Texts{kManualText, "2001:db8:9::9", "56", "2001:db8:9::1", kManualText, "2001:db8:9::53"};
     },
     "111101",
     "static -/0 - static -"},
    {"to manual and back",
     {},
     std::string(kToManual) + kToAutomatic,
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kAutoText, network.server};
     },
     "100010",
     "automatic -/0 - dynamic -"},
    {"the DNS server to manual",
     {},
     std::string("key Down\n") + kToManual,
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kManualText, "2001:db8:9::53"};
     },
     "100011",
     "- -/0 - static -"},
    {"the DNS server to manual and back",
     {},
     std::string("key Down\n") + kToManual + kToAutomatic,
     [](const SettingsCase& network) {
         return Texts{kAutoText, network.address, "64", "fe80::1", kAutoText, network.server};
     },
     "100010",
     "- -/0 - dynamic -"},
    {"the entry that is chosen already",
     {kManual, kManual},
     "key Return\nwait 0.2\nkey Return\nwait 0.2\n",
     [](const SettingsCase&) {
         return Texts{kManualText, "2001:db8:9::9", "56", "2001:db8:9::1", kManualText, "2001:db8:9::53"};
     },
     "111101",
     "- -/0 - - -"},
};

TEST(Settings, AModeTakesEffectOnTheNetworkAtOnce) {
    for (const SettingsCase& network : kBothCases) {
        for (const Switch& change : kSwitches) {
            const HostRun run(
                onSettings(network, change.stored, change.script + "dump after.json\nnetwork save net.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            const std::string what = std::string(network.type) + ", " + change.what;
            EXPECT_EQ(valuesIn(run.dump("after.json")), change.values(network)) << what;
            EXPECT_EQ(enabledIn(run.dump("after.json")), change.enabled) << what;
            EXPECT_EQ(configuredIn(run.dump("net.json")), change.configured) << what;
            EXPECT_EQ(storedAfter(run, network), asRow(change.stored)) << what;
            EXPECT_EQ(popupsIn(run.dump("after.json")), Texts{"c_popup_l_bottom"}) << what;
        }
    }
}

struct Move {
    const char* key;
    const char* focus;
};

TEST(Settings, TheFocusSkipsRowsThatCannotBeSelected) {
    const std::pair<Stored, std::vector<Move>> cases[] = {
        {{},
         {{"Left", "IP settings"},
          {"Right", "IP settings"},
          {"Down", "DNS settings"},
          {"Down", "OK"},
          {"Right", "Cancel"},
          {"Right", "OK"},
          {"Left", "Cancel"},
          {"Up", "DNS settings"},
          {"Up", "IP settings"},
          {"Up", "OK"},
          {"Down", "IP settings"}}},
        {{kManual, kManual},
         {{"Down", "IP address"},
          {"Down", "Prefix length"},
          {"Down", "Gateway"},
          {"Down", "DNS server"},
          {"Up", "Gateway"},
          {"Down", "DNS server"},
          {"Down", "OK"},
          {"Up", "DNS server"},
          {"Down", "OK"},
          {"Left", "Cancel"},
          {"Down", "IP settings"}}},
    };
    for (const auto& [stored, moves] : cases) {
        std::string script;
        for (std::size_t i = 0; i < moves.size(); ++i)
            script += "key " + std::string(moves[i].key) + "\nwait 0.1\ndump " + std::to_string(i) + ".json\n";
        const HostRun run(onSettings(kWiredCase, stored, script + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        for (std::size_t i = 0; i < moves.size(); ++i) {
            EXPECT_EQ(focusedRowIn(run.dump(std::to_string(i) + ".json")), moves[i].focus)
                << stored.ipMode << ", move " << i;
        }
    }
}

struct Confirmation {
    const char* what;
    Stored stored;
    std::string script;
    Stored after;
    const char* configured;
};

const Confirmation kConfirmations[] = {
    {"automatic", {kManual, kManual}, kToAutomatic, {kAuto, kAuto}, "automatic -/0 - dynamic -"},
    {"automatic with a manual DNS server",
     {},
     std::string("key Down\n") + kToManual,
     {kAuto, kManual},
     "- -/0 - static 2001:db8:9::53,2001:db8:9::53"},
    {"manual",
     {},
     std::string(kToManual) + "key Down\nkey Down\nkey Return\nwait 0.2\nkey 6\nkey 0\nkey Return\nwait 0.2\n",
     {kManual, kManual, {"2001:db8:9::9", "60", "2001:db8:9::1", "2001:db8:9::53"}},
     "static 2001:db8:9::9/60 2001:db8:9::1 static 2001:db8:9::53,2001:db8:9::53"},
    {"manual with an automatic DNS server, which is none", {kManual, kAuto}, "", {kManual, kAuto}, "- -/0 - - -"},
};

TEST(Settings, OkWritesThemAndStartsANewCheck) {
    for (const SettingsCase& network : kBothCases) {
        for (const Confirmation& confirmation : kConfirmations) {
            const HostRun run(onSettings(network, confirmation.stored, confirmation.script + R"(
                click "OK"
                wait 0.2
                dump closed.json
                network save net.json
                expect "network and the internet are ready to use." within 20
                quit
            )"));
            ASSERT_TRUE(run.succeeded()) << confirmation.what << run;
            const std::string what = std::string(network.type) + ", " + confirmation.what;
            EXPECT_EQ(storedAfter(run, network), asRow(confirmation.after)) << what;
            EXPECT_EQ(configuredIn(run.dump("net.json")), confirmation.configured) << what;
            const nlohmann::json closed = run.dump("closed.json");
            EXPECT_EQ(popupsIn(closed), Texts{}) << what;
            EXPECT_EQ(focusIn(closed), "Cancel") << what;
            EXPECT_EQ(panelIn(closed), kBlankPanel) << what;
        }
    }
}

TEST(Settings, ANewAddressIsShownWhileTheModeIsAutomatic) {
    const struct {
        Stored stored;
        const char* address;
        const char* server;
    } cases[] = {{{}, "2001:db8:7::7", "2001:db8:7::53"},
                 {{kAuto, kManual}, "2001:db8:7::7", "2001:db8:9::53"},
                 {{kManual, kManual}, "2001:db8:9::9", "2001:db8:9::53"}};
    for (const auto& [stored, address, server] : cases) {
        const HostRun run(onSettings(kWiredCase, stored, R"(
            network dns 2001:db8:7::53
            network address 2001:db8:7::7/48
            wait 0.1
            dump changed.json
            key XF86Back
            wait 0.1
            network address 2001:db8:6::6/48
            wait 1
            quit
        )"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json changed = run.dump("changed.json");
        EXPECT_EQ(valuesIn(changed)[1], address);
        EXPECT_EQ(valuesIn(changed)[5], server);
        EXPECT_EQ(focusedRowIn(changed), "IP settings");
    }
}

TEST(Settings, RefuseAWirelessNetworkWithoutAName) {
    // The status screen stays empty then, and still closes by key.
    HostSetup setup = onSettings(kWirelessCase, {}, "dump refused.json\nkey XF86Back\nexpect closed within 1\n");
    setup.script =
        "expect \"IPv6 settings\" within 20\nnetwork wifi lose\nset-store db/menu/network/ap_name \"NULL\"\n"
        "key Right\nkey Return\nwait 0.3\ndump refused.json\nkey XF86Back\nexpect closed within 1\n";
    const HostRun run(setup);
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(popupsIn(run.dump("refused.json")), Texts{});
    EXPECT_NE(focusIn(run.dump("refused.json")), "nobody");
}

const char* const kCalls[] = {
    "connection_set_ip_address_changed_cb",
    "connection_unset_ip_address_changed_cb",
    "connection_get_profile_iterator",
    "connection_profile_iterator_next",
    "connection_profile_get_type",
    "connection_profile_get_state",
    "connection_get_mac_address",
    "connection_profile_get_ip_address",
    "connection_profile_get_prefix_length",
    "connection_profile_get_gateway_address",
    "connection_profile_get_dns_address",
    "connection_profile_set_ip_config_type",
    "connection_profile_set_dns_config_type",
    "connection_profile_set_ip_address",
    "connection_profile_set_prefix_length",
    "connection_profile_set_gateway_address",
    "connection_profile_set_dns_address",
    "connection_update_profile",
};

TEST(Settings, EveryCallMayFail) {
    for (const char* call : kCalls) {
        const HostRun run(onSettings(kWiredCase, {},
                                     "network fault " + std::string(call) + " OPERATION_FAILED always\n" + kToManual +
                                         kToAutomatic + kToManual + R"(
                                         dump manual.json
                                         click "OK"
                                         wait 0.2
                                         expect "Cancel"
                                         network no-faults
                                         key Return
                                         wait 0.2
                                         key Left
                                         key Left
                                         key Return
                                         wait 0.2
                                         key XF86Back
                                         wait 0.2
                                         key XF86Back
                                         expect closed within 1
                                     )"));
        ASSERT_TRUE(run.succeeded()) << call << '\n' << run;
        EXPECT_EQ(enabledIn(run.dump("manual.json")), "111101") << call << ": the screen follows the user";
        EXPECT_EQ(storedAfter(run, kWiredCase)[0], kManual) << call << ": the store is written all the same";
    }
}

}  // namespace
