// The Wi-Fi manager against the played NetworkManager of wifi_daemon.py.
#include <glib.h>

#include <chrono>
#include <cstdlib>
#include <map>

#include "../main_loop.h"
#include "../results.h"
#include "connection_manager.h"
#include "network/network.h"
#include "wifi_manager.h"

namespace {

using contract::number, contract::text;

constexpr const char* kPassphrase = "correct horse";
constexpr int kNoAnswer = 1;
constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
double skippedSeconds = 0;

class WifiOverNetworkManager : public testing::Test {
  protected:
    void SetUp() override {
        if (std::getenv("TV_ROUTER_PID") == nullptr) GTEST_SKIP() << "not in the test network";
        g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
        tellDaemon("Reset");
        const auto selection = network::select("networkmanager", {});
        ASSERT_TRUE(selection.selected) << selection.text;
        ASSERT_EQ(wifi_initialize(), 0);
    }
    void TearDown() override { network::release(); }

    static std::map<std::string, wifi_ap_handle> found() {
        std::map<std::string, wifi_ap_handle> all;
        const auto add = [](wifi_ap_handle ap, void* data) {
            (*static_cast<std::map<std::string, wifi_ap_handle>*>(data))[text(wifi_ap_get_essid, ap)] = ap;
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

    static bool asksForPassphrase(const std::string& name) {
        return number<bool>(wifi_ap_is_passphrase_required, found().at(name)) == 1;
    }
    static bool getsAddress(const std::string& name, const std::string& address) {
        return MainLoop::runUntil([&] { return text(wifi_ap_get_ip_address, found().at(name), kIpv6) == address; });
    }
    static void tellDaemon(const std::string& method) {
        const std::string command =
            "dbus-send --system --print-reply --dest=org.freedesktop.NetworkManager "
            "/org/freedesktop/NetworkManager org.freedesktop.DBus.Mock." +
            method;
        ASSERT_EQ(std::system((command + " >/dev/null").c_str()), 0) << command;
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

// The toolkit's clock, which a test may put forward.
extern "C" __attribute__((visibility("default"))) double ecore_time_get(void) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count() + skippedSeconds;
}

TEST_F(WifiOverNetworkManager, TellsWhatTheAccessPointsAnnounce) {
    const Seen kSeen[] = {
        {"home", -60, WIFI_SECURITY_WPA2_PSK, true},   {"open", -70, WIFI_SECURITY_NONE, false},
        {"old", -90, WIFI_SECURITY_WEP, true},         {"wpa", -85, WIFI_SECURITY_WPA_PSK, true},
        {"new", -50, WIFI_SECURITY_SAE, true},         {"both", -80, WIFI_SECURITY_WPA2_PSK, true},
        {"office", -75, WIFI_SECURITY_EAP, true},      {"\xff\x01raw", -100, WIFI_SECURITY_NONE, false},
        {"known", -75, WIFI_SECURITY_WPA2_PSK, false},
    };
    auto all = found();
    for (const auto& [name, dbm, security, required] : kSeen) {
        EXPECT_EQ(number<int>(wifi_ap_get_security_type, all[name]), security) << name;
        EXPECT_EQ(number<int>(wifi_ap_get_rssi, all[name]), dbm) << name;
        EXPECT_EQ(asksForPassphrase(name), required) << name;
    }
    EXPECT_EQ(text(wifi_ap_get_bssid, all["home"]), "02:00:5E:10:00:01");
    EXPECT_EQ(text(wifi_get_mac_address), "11:22:33:44:55:66");
    EXPECT_EQ(number<bool>(wifi_is_activated), 1);
    contract::Results scanned;
    ASSERT_EQ(wifi_scan(contract::record, &scanned), 0);
    EXPECT_EQ(await(scanned), WIFI_ERROR_NONE);
}

TEST_F(WifiOverNetworkManager, NamesWhatBecomesOfAConnection) {
    const Outcome kOutcomes[] = {
        {"home", "wrong horse", WIFI_ERROR_INVALID_KEY},
        {"home", "short", WIFI_ERROR_INVALID_KEY},
        {"wpa", nullptr, WIFI_ERROR_INVALID_KEY},
        {"office", nullptr, WIFI_ERROR_SECURITY_RESTRICTED},
        {"no-dhcp", nullptr, WIFI_ERROR_DHCP_FAILED},
        {"leaving", nullptr, WIFI_ERROR_NO_CONNECTION},
        {"left", nullptr, WIFI_ERROR_NO_CONNECTION},
        {"guarded", "other horse", WIFI_ERROR_OPERATION_FAILED},
        {"known", nullptr, WIFI_ERROR_NONE},
        {"home", kPassphrase, WIFI_ERROR_NONE},
    };
    for (const auto& [name, passphrase, result] : kOutcomes)
        EXPECT_EQ(connect(name, passphrase), result) << name;
}

TEST_F(WifiOverNetworkManager, EndsAnAttemptThatNeverEndsWithinHalfAMinute) {
    for (const auto& [name, result] :
         {std::pair{"silent", WIFI_ERROR_NO_REPLY}, {"slow-dhcp", WIFI_ERROR_DHCP_FAILED}}) {
        contract::Results results;
        const auto ap = found().at(name);
        wifi_ap_set_passphrase(ap, kPassphrase);
        ASSERT_EQ(wifi_connect(ap, contract::record, &results), 0);
        // The new profile is what is known last of an attempt.
        ASSERT_TRUE(MainLoop::runUntil([wanted = name] { return !asksForPassphrase(wanted); })) << name;
        MainLoop::settle();
        skippedSeconds += 25;
        MainLoop::settle();
        EXPECT_TRUE(results.codes.empty()) << name;
        skippedSeconds += 5;
        EXPECT_EQ(await(results), result) << name;
        EXPECT_TRUE(asksForPassphrase(name)) << "the new profile is still there";
    }
}

TEST_F(WifiOverNetworkManager, KeepsTheStoredPassphraseUntilAnotherHasWorked) {
    EXPECT_EQ(connect("moved", ""), WIFI_ERROR_INVALID_KEY);
    EXPECT_EQ(connect("moved", kPassphrase), WIFI_ERROR_NONE);
    EXPECT_EQ(connect("known", "wrong horse"), WIFI_ERROR_INVALID_KEY);
    EXPECT_EQ(connect("known", ""), WIFI_ERROR_NONE);
    tellDaemon("ForgetMemory");
    EXPECT_EQ(connect("moved", ""), WIFI_ERROR_NONE) << "never written";
    EXPECT_EQ(connect("known", ""), WIFI_ERROR_NONE);
}

TEST_F(WifiOverNetworkManager, TellsTheValuesOfTheConnectedAccessPointAndChecksItsGateway) {
    EXPECT_EQ(answerOf(wifi_ap_check_gateway6_async, found().at("open")), WIFI_ERROR_NO_CONNECTION);
    for (const auto& [name, result] : {std::pair{"offline", WIFI_ERROR_OFFLINE}, {"near", WIFI_ERROR_NONE}}) {
        ASSERT_EQ(connect(name), 0);
        contract::Results results;
        ASSERT_EQ(wifi_get_is_online_ipv6_async(contract::record, &results), 0);
        EXPECT_EQ(await(results), result) << name;
    }
    EXPECT_EQ(answerOf(wifi_ap_check_gateway6_async, found().at("near")), WIFI_ERROR_NONE);
    ASSERT_EQ(connect("open"), 0);
    wifi_ap_handle ap = nullptr;
    ASSERT_TRUE(MainLoop::runUntil([&] { return wifi_get_connected_ap(&ap) == 0; }));
    EXPECT_EQ(text(wifi_ap_get_essid, ap), "open");
    EXPECT_TRUE(getsAddress("open", "2001:db8:9::5"));
    EXPECT_EQ(text(wifi_ap_get_ip_address, found().at("known"), kIpv6), "") << "another access point";
    EXPECT_EQ(text(wifi_ap_get_gateway_address, ap, kIpv6), "::1");
    EXPECT_EQ(text(wifi_ap_get_dns_address, ap, 1, kIpv6), "2001:db8:9::53");
    EXPECT_EQ(answerOf(wifi_disconnect, ap), 0);
    EXPECT_EQ(wifi_get_connected_ap(&ap), WIFI_ERROR_NO_CONNECTION);
    EXPECT_EQ(answerOf(wifi_disconnect, found().at("open")), WIFI_ERROR_NO_CONNECTION);
}

TEST_F(WifiOverNetworkManager, StoresSettingsWhereThatIsPermitted) {
    ASSERT_EQ(connect("known"), 0);
    const auto ap = found().at("known");
    EXPECT_EQ(wifi_ap_set_ip_config_type(ap, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
    EXPECT_EQ(wifi_ap_set_ip_address(ap, kIpv6, "2001:db8:9::77"), 0);
    EXPECT_TRUE(getsAddress("known", "2001:db8:9::77"));
    EXPECT_EQ(wifi_ap_set_ip_config_type(ap, kIpv6, CONNECTION_IP_CONFIG_AUTOMATIC), 0);
    EXPECT_TRUE(getsAddress("known", "2001:db8:9::5"));
    const std::pair<const char*, int> kRefused[] = {{"fixed", WIFI_ERROR_INVALID_OPERATION},
                                                    {"guarded", WIFI_ERROR_OPERATION_FAILED},
                                                    {"wpa", WIFI_ERROR_NO_CONNECTION}};
    for (const auto& [name, result] : kRefused)
        EXPECT_EQ(wifi_ap_set_ip_config_type(found().at(name), kIpv6, CONNECTION_IP_CONFIG_STATIC), result) << name;
}

TEST_F(WifiOverNetworkManager, GoesOnWhenNobodyListensAndStaysSilent) {
    contract::Results results;
    const auto ap = found().at("open");
    ASSERT_EQ(wifi_connect(ap, contract::record, &results), 0);
    ASSERT_EQ(wifi_ap_unset_async_cb(ap), 0);
    EXPECT_TRUE(getsAddress("open", "2001:db8:9::5"));
    MainLoop::settle();
    ASSERT_EQ(wifi_connect(found().at("known"), contract::record, &results), 0);
    network::release();
    MainLoop::settle();
    EXPECT_TRUE(results.codes.empty());
}

TEST_F(WifiOverNetworkManager, AnswersAConnectionThatIsEndedMeanwhile) {
    contract::Results connecting;
    const auto ap = found().at("silent");
    wifi_ap_set_passphrase(ap, kPassphrase);
    ASSERT_EQ(wifi_connect(ap, contract::record, &connecting), 0);
    EXPECT_EQ(connect("open"), WIFI_ERROR_NOW_IN_PROGRESS);
    EXPECT_EQ(answerOf(wifi_disconnect, ap), 0);
    EXPECT_EQ(await(connecting), WIFI_ERROR_OPERATION_ABORTED);
    EXPECT_EQ(connect("open"), WIFI_ERROR_NONE);
}
