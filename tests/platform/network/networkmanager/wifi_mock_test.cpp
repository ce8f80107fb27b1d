// The Wi-Fi manager against the played NetworkManager of wifi_daemon.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "../main_loop.h"
#include "../results.h"
#include "network/network.h"
#include "wifi_manager.h"

namespace {

constexpr const char* kPassphrase = "correct horse";
constexpr int kNoAnswer = 1;

class WifiOverNetworkManager : public testing::Test {
  protected:
    void SetUp() override {
        if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") == nullptr) GTEST_SKIP() << "not on a bus of its own";
        const auto selection = network::select("networkmanager", {});
        ASSERT_TRUE(selection.selected) << selection.text;
        ASSERT_EQ(wifi_initialize(), 0);
    }
    void TearDown() override {
        wifi_ap_handle ap = nullptr;
        if (wifi_get_connected_ap(&ap) == 0) answerOf(wifi_disconnect, ap);
        network::release();
    }

    static std::map<std::string, wifi_ap_handle> found() {
        std::map<std::string, wifi_ap_handle> all;
        const auto add = [](wifi_ap_handle ap, void* data) {
            char* name = nullptr;
            EXPECT_EQ(wifi_ap_get_essid(ap, &name), 0);
            (*static_cast<std::map<std::string, wifi_ap_handle>*>(data))[contract::take(name)] = ap;
            return true;
        };
        EXPECT_EQ(wifi_foreach_found_aps(add, &all), 0);
        return all;
    }
    static int await(const contract::Results& results) {
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }
    static int answerOf(int (*ask)(wifi_ap_handle, wifi_result_cb, void*), wifi_ap_handle ap) {
        contract::Results results;
        const int error = ask(ap, contract::record, &results);
        EXPECT_TRUE(results.codes.empty()) << "answered from inside the call";
        return error == 0 ? await(results) : error;
    }
    static int connect(const std::string& name, const char* passphrase = nullptr) {
        wifi_ap_handle ap = found().at(name);
        if (passphrase != nullptr) wifi_ap_set_passphrase(ap, passphrase);
        return answerOf(wifi_connect, ap);
    }

    MainLoop loop;
};

struct Seen {
    std::string name;
    int rssi, security;
    bool passphraseRequired;
};

struct Outcome {
    std::string name;
    const char* passphrase;
    int result;
};

}  // namespace

TEST_F(WifiOverNetworkManager, TellsWhatTheAccessPointsAnnounce) {
    const Seen kSeen[] = {
        {"home", -60, WIFI_SECURITY_WPA2_PSK, true},   {"open", -70, WIFI_SECURITY_NONE, false},
        {"old", -90, WIFI_SECURITY_WEP, true},         {"wpa", -85, WIFI_SECURITY_WPA_PSK, true},
        {"new", -50, WIFI_SECURITY_SAE, true},         {"both", -80, WIFI_SECURITY_WPA2_PSK, true},
        {"office", -75, WIFI_SECURITY_EAP, true},      {"\xff\x01raw", -100, WIFI_SECURITY_NONE, false},
        {"known", -75, WIFI_SECURITY_WPA2_PSK, false},
    };
    auto all = found();
    for (const auto& [name, rssi, security, required] : kSeen) {
        int strength = 0, type = -1;
        bool asks = !required;
        EXPECT_EQ(wifi_ap_get_rssi(all[name], &strength), 0) << name;
        EXPECT_EQ(wifi_ap_get_security_type(all[name], &type), 0) << name;
        EXPECT_EQ(wifi_ap_is_passphrase_required(all[name], &asks), 0) << name;
        EXPECT_EQ(strength, rssi) << name;
        EXPECT_EQ(type, security) << name;
        EXPECT_EQ(asks, required) << name;
    }
    char *bssid = nullptr, *mac = nullptr;
    bool on = false;
    EXPECT_EQ(wifi_ap_get_bssid(all["home"], &bssid), 0);
    EXPECT_EQ(contract::take(bssid), "02:00:5E:10:00:01");
    EXPECT_EQ(wifi_get_mac_address(&mac), 0);
    EXPECT_EQ(contract::take(mac), "11:22:33:44:55:66");
    EXPECT_EQ(wifi_is_activated(&on), 0);
    EXPECT_TRUE(on);
}

TEST_F(WifiOverNetworkManager, NamesWhatBecomesOfAConnection) {
    const Outcome kOutcomes[] = {
        {"home", "wrong horse", WIFI_ERROR_INVALID_KEY}, {"home", "short", WIFI_ERROR_INVALID_KEY},
        {"wpa", nullptr, WIFI_ERROR_INVALID_KEY},        {"office", nullptr, WIFI_ERROR_SECURITY_RESTRICTED},
        {"no-dhcp", nullptr, WIFI_ERROR_DHCP_FAILED},    {"known", nullptr, WIFI_ERROR_NONE},
        {"home", kPassphrase, WIFI_ERROR_NONE},
    };
    for (const auto& [name, passphrase, result] : kOutcomes)
        EXPECT_EQ(connect(name, passphrase), result) << name;
}

TEST_F(WifiOverNetworkManager, TellsTheValuesOfTheConnectedAccessPoint) {
    ASSERT_EQ(connect("open"), 0);
    wifi_ap_handle ap = nullptr;
    ASSERT_TRUE(MainLoop::runUntil([&] { return wifi_get_connected_ap(&ap) == 0; }));
    char *address = nullptr, *gateway = nullptr, *server = nullptr, *name = nullptr;
    constexpr int kIpv6 = 1;
    EXPECT_EQ(wifi_ap_get_essid(ap, &name), 0);
    EXPECT_EQ(contract::take(name), "open");
    EXPECT_TRUE(MainLoop::runUntil([&] { return wifi_ap_get_ip_address(ap, kIpv6, &address) == 0; }));
    EXPECT_EQ(contract::take(address), "2001:db8:9::5");
    EXPECT_EQ(wifi_ap_get_gateway_address(ap, kIpv6, &gateway), 0);
    EXPECT_EQ(contract::take(gateway), "fe80::9");
    EXPECT_EQ(wifi_ap_get_dns_address(ap, 1, kIpv6, &server), 0);
    EXPECT_EQ(contract::take(server), "2001:db8:9::53");
    EXPECT_EQ(answerOf(wifi_disconnect, ap), 0);
    EXPECT_EQ(wifi_get_connected_ap(&ap), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(answerOf(wifi_disconnect, found().at("open")), WIFI_ERROR_NO_CONNECTION);
}

TEST_F(WifiOverNetworkManager, AnswersAConnectionThatIsEndedMeanwhile) {
    contract::Results connecting;
    const auto ap = found().at("silent");
    ASSERT_EQ(wifi_connect(ap, contract::record, &connecting), 0);
    EXPECT_EQ(connect("open"), WIFI_ERROR_NOW_IN_PROGRESS);
    EXPECT_EQ(answerOf(wifi_disconnect, ap), 0);
    EXPECT_EQ(await(connecting), WIFI_ERROR_OPERATION_ABORTED);
    EXPECT_EQ(connect("open"), WIFI_ERROR_NONE);
}

TEST_F(WifiOverNetworkManager, ScansAnew) {
    contract::Results scanned;
    ASSERT_EQ(wifi_scan(contract::record, &scanned), 0);
    EXPECT_EQ(await(scanned), WIFI_ERROR_NONE);
}
