// Against a real NetworkManager, in the namespaces of tests/end_to_end/real_network/tv_network.py.
#include <glib.h>

#include <cstdlib>
#include <string>

#include "../connection_contract.h"
#include "network/backend.h"

namespace {

constexpr int kNoAnswer = 1;
constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr const char* kWired = "f3b1c1c2-8f0e-4e57-9b53-2f5d4a7e0c11";
constexpr const char* kServer = "2001:db8:7:1::53";
constexpr const char* kManual = "2001:db8:7:1::77/72 2001:db8:7:1::1 2001:db8:7:1::53 static";

void shell(const std::string& command) {
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

std::string outputOf(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    std::string text;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        text += static_cast<char>(c);
    pclose(pipe);
    return text;
}

void onRouter(const std::string& command) {
    const char* const router = std::getenv("TV_ROUTER_PID");
    ASSERT_NE(router, nullptr);
    shell("nsenter -t " + std::string(router) + " -n " + command);
}

void routerHasIpv6(bool has) {
    onRouter(std::string("sh -c 'echo ") + (has ? "0" : "1") + " >/proc/sys/net/ipv6/conf/lan0/disable_ipv6'");
    if (has) onRouter("ip -6 address replace 2001:db8:7:1::1/64 dev lan0 nodad");
}

void allowPings(bool allowed) {
    shell(std::string("echo ") + (allowed ? "0 2147483647" : "1 0") + " >/proc/sys/net/ipv4/ping_group_range");
}

std::string openNetwork(const std::string& onlineUrl = "") {
    if (std::getenv("TV_ROUTER_PID") == nullptr) return "not in the test network";
    shell("nm-online -q -t 30");
    const auto selection = network::select("auto", {onlineUrl});
    EXPECT_TRUE(selection.selected);
    EXPECT_EQ(selection.text, "this machine's network through NetworkManager");
    return "";
}

// Among profiles of other kinds, which are not ours to show.
std::string openNetworkAmongOthers() {
    if (std::getenv("TV_ROUTER_PID") != nullptr) {
        shell(
            "nmcli connection show other >/dev/null 2>&1 || "
            "nmcli connection add type bridge ifname other0 con-name other autoconnect no >/dev/null");
    }
    return openNetwork();
}

// The profile as the daemon has it, without its time of use and the settings that begin as the pattern says.
std::string stored(const std::string& id, const std::string& without = "nothing") {
    return outputOf("nmcli -t --show-secrets connection show uuid " + id +
                    " | grep -vE '^([A-Z]|connection.timestamp:|" + without + ")'");
}

class NetworkManager : public testing::Test {
  protected:
    void SetUp() override {
        if (const std::string obstacle = openNetwork(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
        connectClient();
        // Parts of what the router gives come one after the other.
        ASSERT_TRUE(MainLoop::runUntil([] {
            return live().starts_with("2001:db8:7:1:") && live().find(" fe80:") != std::string::npos &&
                   live().ends_with("::1 dynamic");
        })) << live();
    }
    void TearDown() override { network::release(); }

    void connectClient() {
        ASSERT_EQ(connection_create(&client), 0);
        connection_profile_iterator iterator = nullptr;
        ASSERT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_CONNECTED, &iterator), 0);
        ASSERT_EQ(connection_profile_iterator_next(iterator, &profile), 0);
    }

    template <typename Ask, typename Handle>
    static int answerOf(Ask ask, Handle handle) {
        contract::Results results;
        if (const int error = ask(handle, contract::record, &results)) return error;
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }
    int gateway() const { return answerOf(connection_profile_check_gateway6_async, profile); }

    int update() const { return connection_update_profile(client, profile); }
    // The way of the settings screen: the modes first, the values later and apart from each other.
    void setModes(int ip, int dns) const {
        ASSERT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, ip), 0);
        ASSERT_EQ(update(), 0);
        ASSERT_EQ(connection_profile_set_dns_config_type(profile, kIpv6, dns), 0);
        ASSERT_EQ(update(), 0);
    }
    void makeManual() const {
        setModes(CONNECTION_IP_CONFIG_STATIC, CONNECTION_DNS_CONFIG_STATIC);
        ASSERT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, kServer), 0);
        ASSERT_EQ(update(), 0);
        ASSERT_EQ(connection_profile_set_ip_address(profile, kIpv6, "2001:db8:7:1::77"), 0);
        ASSERT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 72), 0);
        ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, "2001:db8:7:1::1"), 0);
        ASSERT_EQ(update(), 0);
    }
    void makeAutomatic() const {
        for (const int order : {1, 2})
            ASSERT_EQ(connection_profile_set_dns_address(profile, order, kIpv6, "::"), 0);
        setModes(CONNECTION_IP_CONFIG_AUTOMATIC, CONNECTION_DNS_CONFIG_DYNAMIC);
    }
    // "address/length gateway dns" as the manager shows them.
    static std::string live() {
        network::Profile values;
        if (network::backend()->profile(kWired, values) != 0) return "gone";
        const auto& ipv6 = values.ipv6;
        return ipv6.address + "/" + std::to_string(ipv6.prefixLength.value_or(0)) + " " + ipv6.gateway + " " +
               (ipv6.dns.empty() ? "-" : ipv6.dns.front()) + (ipv6.dnsIsStatic ? " static" : " dynamic");
    }
    static bool becomes(const std::string& wanted) {
        return MainLoop::runUntil([&] { return live() == wanted; });
    }

    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Real, ConnectionContract,
                         testing::Values(NetworkUnderTest{"networkmanager", openNetworkAmongOthers,
                                                          [] { onRouter("ip link set lan0 down"); },
                                                          [] {
                                                              onRouter("ip link set lan0 up");
                                                              routerHasIpv6(true);
                                                          }}),
                         [](const auto& instance) { return instance.param.name; });

// The kernel still believes in a neighbour that has just confirmed itself; the check must not.
TEST_F(NetworkManager, ReachesTheGatewayWhateverItAnswersUntilItVanishes) {
    for (const bool allowed : {false, true}) {
        allowPings(allowed);
        EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE) << allowed;
    }
    routerHasIpv6(false);
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NO_REPLY);
    routerHasIpv6(true);
    // A router whose firewall drops everything but neighbour discovery.
    allowPings(false);
    onRouter("sh -c 'ip -6 rule add pref 100 lookup local && ip -6 rule del pref 0'");
    onRouter("ip -6 rule add pref 1 iif lan0 ipproto 17 blackhole");
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE);
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE) << "verified anew";
    onRouter("ip -6 rule del pref 1");
}

TEST_F(NetworkManager, AsksAUrlWhenTheDaemonDoesNotCheck) {
    const auto check = [](const std::string& enabled) {
        shell(
            "dbus-send --system --print-reply --dest=org.freedesktop.NetworkManager /org/freedesktop/NetworkManager "
            "org.freedesktop.DBus.Properties.Set string:org.freedesktop.NetworkManager "
            "string:ConnectivityCheckEnabled variant:boolean:" +
            enabled + " >/dev/null");
    };
    const std::pair<const char*, int> kCases[] = {
        {"http://internet.tv-test/online", CONNECTION_ERROR_NONE},
        {"http://internet.tv-test/portal", CONNECTION_ERROR_OFFLINE},
        {"http://internet.tv-test:81/", CONNECTION_ERROR_OFFLINE},
        {"http://nowhere.tv-test/", CONNECTION_ERROR_OFFLINE},
        {"http://127.0.0.1/", CONNECTION_ERROR_OFFLINE},
        {"file:///etc/hosts", CONNECTION_ERROR_INVALID_PARAMETER},
        {"", CONNECTION_ERROR_INVALID_OPERATION},
    };
    check("false");
    for (const auto& [url, result] : kCases) {
        network::release();
        openNetwork(url);
        connectClient();
        contract::Results withdrawn;
        connection_get_is_online_ipv6_async(client, contract::record, &withdrawn);
        connection_unset_async_cb(client);
        EXPECT_EQ(answerOf(connection_get_is_online_ipv6_async, client), result) << url;
        EXPECT_TRUE(withdrawn.codes.empty()) << url;
    }
    check("true");
}

TEST_F(NetworkManager, MakesManualValuesLiveAndComesBackWithoutATrace) {
    constexpr const char* kMayChange = "ipv6.(method|addresses|gateway|dns|ignore-auto-dns):";
    shell(std::string("nmcli connection modify ") + kWired +
          " ipv6.routes 2001:db8:55::/48 ipv6.route-metric 321 ipv6.dns-search tv.test ipv6.ip6-privacy 0"
          " ipv6.dhcp-duid ll");
    const std::string before = stored(kWired), liveBefore = live(), others = stored(kWired, kMayChange);
    std::string heard;
    const auto onAddress = [](const char*, const char* ipv6, void* data) { *static_cast<std::string*>(data) = ipv6; };
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, onAddress, &heard), 0);
    ASSERT_NE(others.find("2001:db8:55::/48"), std::string::npos) << others;
    makeManual();
    EXPECT_TRUE(becomes(kManual)) << live();
    EXPECT_TRUE(MainLoop::runUntil([&] { return heard == "2001:db8:7:1::77"; })) << heard;
    EXPECT_EQ(stored(kWired, kMayChange), others);
    EXPECT_EQ(outputOf("nmcli -t -f IP6.ADDRESS device show eth0 | grep -c 2001"), "1\n");
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE);

    for (const char* address : {"::", "ff02::1", "192.0.2.1"})
        EXPECT_EQ(connection_profile_set_ip_address(profile, kIpv6, address), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 0), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, "ff02::2"), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 80), 0);
    EXPECT_EQ(connection_profile_set_gateway_address(profile, kIpv6, "::"), 0);
    EXPECT_EQ(update(), 0);
    EXPECT_TRUE(becomes("2001:db8:7:1::77/80  2001:db8:7:1::53 static")) << live();

    makeAutomatic();
    EXPECT_TRUE(becomes(liveBefore)) << live();
    EXPECT_EQ(stored(kWired), before);
}

TEST_F(NetworkManager, KeepsTheProfileUntilAManualModeHasItsValues) {
    const std::string before = stored(kWired), liveBefore = live();
    ASSERT_EQ(connection_profile_set_ip_config_type(profile, kIpv6, CONNECTION_IP_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, "2001:db8:7:1::1"), 0);
    ASSERT_EQ(update(), 0);
    MainLoop::settle();
    // A change that can be written comes through behind those that cannot.
    network::Ipv6Settings server{};
    server.dnsIsStatic = true;
    server.dns[1] = kServer;
    ASSERT_EQ(network::backend()->store(kWired, server), 0);
    const std::string address = liveBefore.substr(0, liveBefore.find(' ') + 1);
    EXPECT_TRUE(MainLoop::runUntil([&] {
        return live().starts_with(address) && live().ends_with(std::string(kServer) + " static");
    })) << live();
    makeAutomatic();
    EXPECT_TRUE(becomes(liveBefore)) << live();
    EXPECT_EQ(stored(kWired), before);
}

// What is read from the daemon has no secrets; storing it again must not lose them. The end of a profile that goes
// meanwhile is quiet.
TEST_F(NetworkManager, KeepsThePassphraseOfAProfileUntilItIsDeleted) {
    const std::string id = "5c9a1d2e-7b34-4f0a-8e61-2a3b4c5d6e7f";
    shell(
        "nmcli connection add type wifi con-name air ssid air wifi-sec.key-mgmt wpa-psk wifi-sec.psk 'never told' "
        "connection.uuid " +
        id + " >/dev/null");
    network::Ipv6Settings settings{};
    settings.isStatic = true;
    settings.address = "2001:db8:7:1::77";
    ASSERT_TRUE(MainLoop::runUntil([&] { return network::backend()->store(id, settings) == 0; }));
    EXPECT_TRUE(MainLoop::runUntil([&] {
        return stored(id).find("ipv6.addresses:2001:db8:7:1::77/64") != std::string::npos;
    })) << stored(id);
    // nmcli itself leaves the secret out now and then.
    EXPECT_TRUE(MainLoop::runUntil([&] { return stored(id).find("psk:never told") != std::string::npos; }));
    shell("nmcli connection delete " + id + " >/dev/null");
    EXPECT_EQ(network::backend()->store(id, settings), 0) << "the deletion is not known yet";
    EXPECT_TRUE(
        MainLoop::runUntil([&] { return network::backend()->store(id, settings) == CONNECTION_ERROR_NO_CONNECTION; }));
    EXPECT_EQ(stored(id), "");
}
