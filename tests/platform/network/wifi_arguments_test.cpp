// Every boundary function of the Wi-Fi manager before and after its time, against null, foreign and stale handles, null
// outs, and failures that a scenario wants.
#include <gtest/gtest.h>

#include "argument_rows.h"
#include "connection_manager.h"
#include "main_loop.h"
#include "temporary_scenario.h"
#include "wifi_manager.h"

namespace {

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr int kInvalidParameter = WIFI_ERROR_INVALID_PARAMETER;
constexpr int kInvalidOperation = WIFI_ERROR_INVALID_OPERATION;

void onResult(int, void*) {}

enum class Kind { Manager, AccessPoint };
using Row = ArgumentRow<Kind>;

template <typename Call>
Row textSetter(const char* name, Call call) {
    return {name, Kind::AccessPoint, [call](void* ap) { return call(ap, "2001:db8::7"); },
            [call](void* ap) { return call(ap, nullptr); }};
}

const Row kRows[] = {
    getter<bool>("wifi_is_activated", Kind::Manager, [](void*, bool* out) { return wifi_is_activated(out); }),
    textGetter("wifi_get_mac_address", Kind::Manager, [](void*, char** out) { return wifi_get_mac_address(out); }),
    registration(
        "wifi_foreach_found_aps", Kind::Manager, [](void*, void*) { return true; },
        [](void*, wifi_found_ap_cb cb, void* data) { return wifi_foreach_found_aps(cb, data); }),
    getter<void*>("wifi_get_connected_ap", Kind::Manager, [](void*, void** out) { return wifi_get_connected_ap(out); }),
    registration("wifi_scan", Kind::Manager, onResult,
                 [](void*, wifi_result_cb cb, void* data) { return wifi_scan(cb, data); }),
    registration("wifi_get_is_online_ipv6_async", Kind::Manager, onResult,
                 [](void*, wifi_result_cb cb, void* data) { return wifi_get_is_online_ipv6_async(cb, data); }),
    getter<void*>("wifi_ap_clone", Kind::AccessPoint, [](void* ap, void** out) { return wifi_ap_clone(out, ap); }),
    textGetter("wifi_ap_get_essid", Kind::AccessPoint, wifi_ap_get_essid),
    textGetter("wifi_ap_get_bssid", Kind::AccessPoint, wifi_ap_get_bssid),
    getter<int>("wifi_ap_get_rssi", Kind::AccessPoint, wifi_ap_get_rssi),
    getter<int>("wifi_ap_get_security_type", Kind::AccessPoint, wifi_ap_get_security_type),
    getter<bool>("wifi_ap_is_passphrase_required", Kind::AccessPoint, wifi_ap_is_passphrase_required),
    textGetter("wifi_ap_get_ip_address", Kind::AccessPoint,
               [](void* ap, char** out) { return wifi_ap_get_ip_address(ap, kIpv6, out); }),
    getter<uint8_t>("wifi_ap_get_prefix_length", Kind::AccessPoint, wifi_ap_get_prefix_length),
    textGetter("wifi_ap_get_gateway_address", Kind::AccessPoint,
               [](void* ap, char** out) { return wifi_ap_get_gateway_address(ap, kIpv6, out); }),
    textGetter("wifi_ap_get_dns_address", Kind::AccessPoint,
               [](void* ap, char** out) { return wifi_ap_get_dns_address(ap, 1, kIpv6, out); }),
    getter<int>("wifi_ap_get_dns_config_type", Kind::AccessPoint,
                [](void* ap, int* out) { return wifi_ap_get_dns_config_type(ap, kIpv6, out); }),
    textSetter("wifi_ap_set_passphrase", wifi_ap_set_passphrase),
    textSetter("wifi_ap_set_ip_address",
               [](void* ap, const char* text) { return wifi_ap_set_ip_address(ap, kIpv6, text); }),
    textSetter("wifi_ap_set_gateway_address",
               [](void* ap, const char* text) { return wifi_ap_set_gateway_address(ap, kIpv6, text); }),
    textSetter("wifi_ap_set_dns_address",
               [](void* ap, const char* text) { return wifi_ap_set_dns_address(ap, 2, kIpv6, text); }),
    {"wifi_ap_set_prefix_length", Kind::AccessPoint, [](void* ap) { return wifi_ap_set_prefix_length(ap, 48); }, {}},
    {"wifi_ap_set_ip_config_type",
     Kind::AccessPoint,
     [](void* ap) { return wifi_ap_set_ip_config_type(ap, kIpv6, CONNECTION_IP_CONFIG_STATIC); },
     {}},
    {"wifi_ap_set_dns_config_type",
     Kind::AccessPoint,
     [](void* ap) { return wifi_ap_set_dns_config_type(ap, kIpv6, CONNECTION_DNS_CONFIG_STATIC); },
     {}},
    registration("wifi_ap_check_gateway6_async", Kind::AccessPoint, onResult, wifi_ap_check_gateway6_async),
    {"wifi_ap_unset_async_cb", Kind::AccessPoint, wifi_ap_unset_async_cb, {}},
    registration("wifi_disconnect", Kind::AccessPoint, onResult, wifi_disconnect),
    registration("wifi_connect", Kind::AccessPoint, onResult, wifi_connect),
    {"wifi_ap_destroy", Kind::AccessPoint, wifi_ap_destroy, {}},
    {"wifi_deinitialize", Kind::Manager, [](void*) { return wifi_deinitialize(); }, {}},
};

class WifiArguments : public testing::Test {
  protected:
    // A fresh radio for each row: connecting and releasing change it.
    wifi_ap_handle open() {
        const auto selection = network::select(TemporaryScenario(kPromptRadio).choice(), {});
        EXPECT_TRUE(selection.selected) << selection.text;
        EXPECT_EQ(wifi_initialize(), 0);
        wifi_ap_handle ap = nullptr;
        EXPECT_EQ(wifi_get_connected_ap(&ap), 0);
        return ap;
    }

    MainLoop loop;
};

TEST_F(WifiArguments, AreCheckedByEveryFunction) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        wifi_ap_handle ap = open();
        if (row.kind == Kind::AccessPoint) {
            int notAHandle = 0;
            EXPECT_EQ(row.call(nullptr), kInvalidParameter);
            EXPECT_EQ(row.call(&notAHandle), kInvalidOperation);
        }
        if (row.nullArgument) {
            EXPECT_EQ(row.nullArgument(ap), kInvalidParameter);
        }
        EXPECT_EQ(row.call(ap), 0);
    }
}

TEST_F(WifiArguments, AreRefusedBeforeInitialisationAfterReleaseAndOnceDestroyed) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        wifi_ap_handle ap = open();
        const std::vector<std::string> fault{"fault", row.name, "NOW_IN_PROGRESS", "1"};
        EXPECT_EQ(network::command(fault), "");
        EXPECT_EQ(row.call(ap), WIFI_ERROR_NOW_IN_PROGRESS);
        if (row.kind == Kind::AccessPoint) {
            EXPECT_EQ(wifi_ap_destroy(ap), 0);
            EXPECT_EQ(row.call(ap), kInvalidOperation);
            EXPECT_EQ(wifi_get_connected_ap(&ap), 0);
        }
        EXPECT_EQ(wifi_deinitialize(), 0);
        // The caller's own handle can be given back at any time.
        EXPECT_EQ(row.call(ap), std::string_view(row.name) == "wifi_ap_destroy" ? 0 : kInvalidOperation);
    }
}

TEST_F(WifiArguments, InitialisationFailsWhenAScenarioWantsItAndCanBeRepeated) {
    open();
    ASSERT_EQ(wifi_deinitialize(), 0);
    EXPECT_EQ(network::command(std::vector<std::string>{"fault", "wifi_initialize", "NO_REPLY", "1"}), "");
    EXPECT_EQ(wifi_initialize(), WIFI_ERROR_NO_REPLY);
    EXPECT_EQ(wifi_deinitialize(), kInvalidOperation);
    EXPECT_EQ(wifi_initialize(), 0);
}

TEST_F(WifiArguments, NameAFamilyAnOrderAndPossibleValues) {
    wifi_ap_handle ap = open();
    char* text = nullptr;
    int type = 77;
    constexpr int kNotSupported = WIFI_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED;
    for (const auto& [family, error] : {std::pair{0, kNotSupported}, std::pair{2, kInvalidParameter}}) {
        EXPECT_EQ(wifi_ap_get_ip_address(ap, family, &text), error);
        EXPECT_EQ(wifi_ap_get_gateway_address(ap, family, &text), error);
        EXPECT_EQ(wifi_ap_get_dns_address(ap, 1, family, &text), error);
        EXPECT_EQ(wifi_ap_get_dns_config_type(ap, family, &type), error);
        EXPECT_EQ(wifi_ap_set_ip_address(ap, family, "2001:db8::7"), error);
    }
    EXPECT_EQ(wifi_ap_get_dns_address(ap, 0, kIpv6, &text), kInvalidParameter);
    EXPECT_EQ(wifi_ap_get_dns_address(ap, 2, kIpv6, &text), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(type, 77);
    for (const char* address : {"", "ff02::1", "192.0.2.1", "2001:db8::1/64"}) {
        EXPECT_EQ(wifi_ap_set_ip_address(ap, kIpv6, address), kInvalidParameter) << address;
        EXPECT_EQ(wifi_ap_set_gateway_address(ap, kIpv6, address), kInvalidParameter) << address;
        EXPECT_EQ(wifi_ap_set_dns_address(ap, 1, kIpv6, address), kInvalidParameter) << address;
    }
    EXPECT_EQ(wifi_ap_set_ip_address(ap, kIpv6, "::"), kInvalidParameter);
    EXPECT_EQ(wifi_ap_set_dns_address(ap, 4, kIpv6, "::1"), kInvalidParameter);
    EXPECT_EQ(wifi_ap_set_prefix_length(ap, 129), kInvalidParameter);
    EXPECT_EQ(wifi_ap_set_ip_config_type(ap, kIpv6, 2), kInvalidParameter);
    EXPECT_EQ(wifi_ap_set_dns_config_type(ap, kIpv6, 3), kInvalidParameter);
}

// The two error tables have numbers of their own for the same names.
TEST_F(WifiArguments, FailWithTheWifiManagersOwnNumbers) {
    const std::pair<const char*, int> rows[] = {
        {"OUT_OF_MEMORY", -12},
        {"NOW_IN_PROGRESS", -115},
        {"INVALID_GATEWAY", -31986},
        {"OFFLINE", -31987},
        {"WPS_WEP_PROHIBITED", -31988},
        {"WPS_TIMEOUT", -31989},
        {"WPS_OVERLAP", -31990},
        {"OPERATION_FAILED", -29687039},
        {"NO_CONNECTION", -29687038},
        {"ALREADY_EXISTS", -29687037},
        {"OPERATION_ABORTED", -29687036},
        {"DHCP_FAILED", -29687034},
        {"INVALID_KEY", -29687033},
        {"NO_REPLY", -29687032},
        {"SECURITY_RESTRICTED", -29687031},
        {"TCP_SYN_TIMEOUT", -29687039},
        {"-29687031", -29687031},
    };
    open();
    for (const auto& [name, number] : rows) {
        bool activated = false;
        EXPECT_EQ(network::command(std::vector<std::string>{"fault", "wifi_is_activated", name}), "");
        EXPECT_EQ(wifi_is_activated(&activated), number) << name;
        EXPECT_FALSE(activated);
    }
}

}  // namespace
