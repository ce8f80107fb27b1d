// Every verdict end to end: message, advice, pictures, panel, buttons and focus.
#include <gtest/gtest.h>

#include <string>

#include "status_screen.h"

namespace {

constexpr const char* kReadyAdvice =
    "If an online service still does not work, contact your internet service provider.";
constexpr const char* kNoInternetAdvice =
    "The TV is connected to the router, but the internet cannot be reached over IPv6. Restart the router or contact "
    "your internet service provider.";
constexpr const char* kMacAdvice = "The TV's network adapter has no valid MAC address. Contact customer service.";
constexpr const char* kCableAdvice = "Check that the network cable is connected to the TV and to the router.";
constexpr const char* kRouterAdvice =
    "The TV cannot reach the router. Check that the router is switched on and the IPv6 settings are right, then try "
    "again.";
constexpr const char* kWiredFailed = "Wired network connection failed.";

constexpr const char* kErrorMark = "wizard_popup_connect_error.png";
constexpr const char* kNoCablePicture = "network_connect_0.png";
constexpr const char* kWireMac = "02:00:5E:10:00:01";
constexpr const char* kAirMac = "02:00:5E:20:00:AA";
constexpr const char* kZeroMac = "00:00:00:00:00:00";
constexpr const char* kOnesMac = "FF:FF:FF:FF:FF:FF";

const Texts kRowWithoutSettings{"Retry", "Close"};

Texts wired(const char* mac = kWireMac) {
    return {mac, "2001:db8:1::10", "64", "fe80::1", "2001:db8:1::53"};
}

Texts wireless(const char* mac = kAirMac) {
    return {mac, "2001:db8:2::20", "64", "fe80::1", "2001:db8:2::53"};
}

Texts nothing(const char* mac = kWireMac) {
    return {mac, "::", "0", "::", "::"};
}

Texts with(Texts panel, std::size_t row, const char* value) {
    panel[row] = value;
    return panel;
}

struct Verdict {
    const char* network;
    const char* advice;
    const char* picture;
    const char* mark;
    Texts panel;  // blank when all is well
    Texts buttons = kFullRow;
};

const Verdict kVerdicts[] = {
    {"success", kReadyAdvice, "", "", kBlankPanel},
    {"two-profiles", kReadyAdvice, "", "", kBlankPanel},
    {"mac-all-zero", kMacAdvice, kNoGatewayPicture, kErrorMark, nothing(kZeroMac), kRowWithoutSettings},
    {"mac-all-ones", kMacAdvice, kNoInternetPicture, "", nothing(kOnesMac), kRowWithoutSettings},
    {"mac-unreadable", kMacAdvice, kNoGatewayPicture, kErrorMark, nothing(kZeroMac), kRowWithoutSettings},
    {"cable-down", kCableAdvice, kNoCablePicture, "", nothing()},
    {"ethernet-deactivated", kCableAdvice, kNoCablePicture, "", nothing()},
    {"pulled-in-stage-two", kCableAdvice, kNoCablePicture, "", wired()},
    {"no-address", kWiredFailed, kNoGatewayPicture, kErrorMark, nothing()},
    {"internet-down", kNoInternetAdvice, kNoInternetPicture, "", wired()},
    {"gateway-down", kWiredFailed, kNoGatewayPicture, kErrorMark, wired()},
    {"wifi-success", kReadyAdvice, "", "", kBlankPanel},
    {"wifi-apartment-block", kReadyAdvice, "", "", kBlankPanel},
    {"wifi-hidden", kReadyAdvice, "", "", kBlankPanel},
    {"wifi-gateway-down", kRouterAdvice, kNoGatewayPicture, kErrorMark, wireless()},
    {"wifi-internet-down", kNoInternetAdvice, kNoInternetPicture, "", wireless()},
    {"wifi-no-address", kRouterAdvice, kNoGatewayPicture, kErrorMark, with(nothing(kAirMac), 3, "fe80::1")},
    {"wifi-mac-all-zero", kMacAdvice, kNoGatewayPicture, kErrorMark, wireless(kZeroMac), kRowWithoutSettings},
    {"wifi-mac-all-ones", kMacAdvice, kNoInternetPicture, "", wireless(kOnesMac), kRowWithoutSettings},
};

// Name and signal stand at one place when all is well, and at another beside a failure.
void expectNetwork(const nlohmann::json& dump, bool shown, const char* namePart, const char* signalPart) {
    EXPECT_EQ(textIn(dump, namePart), shown ? kName : "");
    EXPECT_EQ(pictureIn(dump, signalPart), shown ? kSignalPicture : "");
}

TEST(Verdict, TellsWhatWentWrongOrThatAllIsWell) {
    for (const Verdict& verdict : kVerdicts) {
        SCOPED_TRACE(verdict.network);
        const bool well = verdict.panel == kBlankPanel;
        const bool named = isWireless(verdict.network);
        const nlohmann::json dump = endOf(onNetwork(verdict.network, kToVerdict));
        EXPECT_EQ(textIn(dump, kMessagePart), well ? ready(verdict.network) : failed(verdict.network));
        EXPECT_EQ(textIn(dump, kAdvicePart), verdict.advice);
        EXPECT_EQ(pictureIn(dump, kStatusPart), well ? "network_popup_connect_6.png" : "");
        EXPECT_EQ(pictureIn(dump, kVerdictPart), verdict.picture);
        EXPECT_EQ(pictureIn(dump, kErrorMarkPart), verdict.mark);
        EXPECT_EQ(panelIn(dump), verdict.panel);
        EXPECT_EQ(buttonsIn(dump), verdict.buttons);
        EXPECT_EQ(focusIn(dump), "Close");
        expectNetwork(dump, named && well, kNamePart, kSignalPart);
        expectNetwork(dump, named && !well, kVerdictNamePart, kVerdictSignalPart);
    }
}

struct FailingCalls {
    const char* network;
    Texts panel;  // blank when all is well nevertheless
    Texts calls;
};

const FailingCalls kFailingCalls[] = {
    {"success",
     kBlankPanel,
     {"connection_set_type_changed_cb", "connection_profile_clone", "connection_get_mac_address",
      "connection_profile_get_prefix_length", "connection_profile_get_gateway_address",
      "connection_profile_get_dns_address", "connection_unset_type_changed_cb", "connection_unset_async_cb",
      "connection_destroy", "connection_destroy_profile_iterator", "connection_profile_destroy"}},
    {"success",
     wired(),
     {"connection_get_ethernet_state", "connection_profile_check_gateway6_async",
      "connection_get_is_online_ipv6_async"}},
    {"success",
     nothing(),
     {"connection_get_profile_iterator", "connection_profile_iterator_next", "connection_profile_get_type"}},
    {"success", nothing(kZeroMac), {"connection_create"}},
    {"gateway-down", nothing(kZeroMac), {"connection_get_mac_address"}},
    {"gateway-down", with(wired(), 1, "::"), {"connection_profile_get_ip_address"}},
    {"gateway-down", with(wired(), 2, "0"), {"connection_profile_get_prefix_length"}},
    {"gateway-down", with(wired(), 3, "::"), {"connection_profile_get_gateway_address"}},
    {"gateway-down", with(wired(), 4, "::"), {"connection_profile_get_dns_address"}},
    {"wifi-success",
     kBlankPanel,
     {"wifi_get_mac_address", "wifi_ap_get_bssid", "wifi_ap_get_rssi", "wifi_ap_get_security_type",
      "wifi_ap_get_prefix_length", "wifi_ap_get_gateway_address", "wifi_ap_get_dns_address", "wifi_ap_unset_async_cb",
      "wifi_ap_destroy", "wifi_deinitialize", "connection_create", "connection_destroy"}},
    {"wifi-success", wireless(), {"wifi_ap_check_gateway6_async", "wifi_get_is_online_ipv6_async"}},
    {"wifi-success", with(wireless(), 1, "::"), {"wifi_ap_get_ip_address"}},
    {"wifi-success", nothing(kZeroMac), {"wifi_initialize"}},
    {"wifi-success",
     nothing(kAirMac),
     {"wifi_is_activated", "wifi_foreach_found_aps", "wifi_get_connected_ap", "wifi_ap_get_essid"}},
};

TEST(FailingCalls, LeaveADefaultOrAVerdict) {
    for (const FailingCalls& failing : kFailingCalls) {
        std::string script = "key Menu\nexpect closed within 1\n";
        for (const std::string& call : failing.calls) {
            script += "network fault " + call + " OPERATION_FAILED always\nopen\n" + kToVerdict + "dump " + call +
                      ".json\nkey Return\nexpect closed within 1\nnetwork no-faults\n";
        }
        const HostRun run(onNetwork(failing.network, script));
        ASSERT_TRUE(run.succeeded()) << run;
        const bool well = failing.panel == kBlankPanel;
        for (const std::string& call : failing.calls) {
            const nlohmann::json dump = run.dump(call + ".json");
            EXPECT_EQ(textIn(dump, kMessagePart), well ? ready(failing.network) : failed(failing.network)) << call;
            EXPECT_EQ(panelIn(dump), failing.panel) << call;
        }
    }
}

TEST(FailingCalls, AStoreThatCannotBeOpenedLeavesAWorkingGadget) {
    // The network type cannot be seeded either, so no check starts.
    const HostRun run({.script = "expect \"Cancel\" within 2\nwait 5\nkey XF86Back\nexpect closed within 1\n",
                       .environment = {{"XDG_STATE_HOME", "/proc/nowhere"}},
                       .arguments = {"--store="}});
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_NE(run.errors().find("/proc/nowhere"), std::string::npos) << run.errors();
}

TEST(Verdict, NormalisesWhatThePlatformSays) {
    constexpr const char* kUnchecked = R"({"description": "long forms", "unchecked": true,
      "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01", "link": "up"}],
      "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "live": {
        "address": "0000:0000:0000:0000:0000:0000:0000:0000", "prefixLength": 129,
        "gateway": "0000:0000:0000:0000:0000:0000:0000:0000", "dns": ["0000:0000:0000:0000:0000:0000:0000:0000"]}}],
      "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}})";
    EXPECT_EQ(panelIn(endOf(onNetwork(kUnchecked, kToVerdict))), nothing());
}

TEST(Verdict, WearsTheHighContrastLookAndFallsBackToEnglish) {
    HostSetup setup =
        onNetwork("internet-down", std::string(kToVerdict) + "expect \"" + kNoInternetAdvice + "\"\nquit\n");
    setup.store.emplace_back("db/menu/system/accessibility/highcontrast", 1);
    setup.environment = {{"LANGUAGE", "xx"}, {"LC_ALL", "C"}};
    setup.arguments = {"--log", "debug"};
    const HostRun run(setup);
    EXPECT_TRUE(run.succeeded()) << run;
    EXPECT_NE(run.errors().find("High Contrast mode enabled"), std::string::npos);
}

}  // namespace
