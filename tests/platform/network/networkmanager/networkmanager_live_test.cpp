// Against a real NetworkManager, in the namespaces of tests/end_to_end/real_network/tv_network.py.
#include <cstdlib>
#include <string>

#include "../connection_contract.h"

namespace {

constexpr int kNoAnswer = 1;
constexpr const char* kOnlineUrl = "http://internet.tv-test/online";

void shell(const std::string& command) {
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

void onRouter(const std::string& command) {
    shell("nsenter -t " + std::string(std::getenv("TV_ROUTER_PID")) + " -n " + command);
}

void routerHasIpv6(bool has) {
    onRouter(std::string("sh -c 'echo ") + (has ? "0" : "1") + " >/proc/sys/net/ipv6/conf/lan0/disable_ipv6'");
}

void waitForConnection() {
    shell("nm-online -q -t 30");
}

std::string openNetwork(const std::string& onlineUrl = "") {
    if (std::getenv("TV_ROUTER_PID") == nullptr) return "not in the test network";
    waitForConnection();
    const auto selection = network::select("auto", {onlineUrl});
    EXPECT_TRUE(selection.selected);
    EXPECT_EQ(selection.text, "this machine's network through NetworkManager");
    return "";
}

NetworkUnderTest real() {
    return {"networkmanager", [] { return openNetwork(); }, [] { onRouter("ip link set lan0 down"); },
            [] {
                onRouter("ip link set lan0 up");
                onRouter("ip -6 address replace 2001:db8:7:1::1/64 dev lan0 nodad");
            }};
}

class NetworkManager : public testing::Test {
  protected:
    void SetUp() override {
        if (const std::string obstacle = openNetwork(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        connectClient();
    }
    void TearDown() override { network::release(); }

    void connectClient() {
        ASSERT_EQ(connection_create(&client), 0);
        connection_profile_iterator iterator = nullptr;
        ASSERT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_CONNECTED, &iterator), 0);
        ASSERT_EQ(connection_profile_iterator_next(iterator, &profile), 0);
    }

    bool hasGateway() const {
        char* address = nullptr;
        connection_profile_get_gateway_address(profile, CONNECTION_ADDRESS_FAMILY_IPV6, &address);
        return !contract::take(address).empty();
    }

    int gateway() {
        contract::Results results;
        if (const int error = connection_profile_check_gateway6_async(profile, contract::record, &results))
            return error;
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }

    int online() {
        contract::Results results;
        if (const int error = connection_get_is_online_ipv6_async(client, contract::record, &results)) return error;
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }

    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Real, ConnectionContract, testing::Values(real()),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(NetworkManager, TellsOfANewAddress) {
    std::string heard;
    const auto onAddress = [](const char*, const char* ipv6, void* data) { *static_cast<std::string*>(data) = ipv6; };
    ASSERT_EQ(connection_set_ip_address_changed_cb(client, onAddress, &heard), 0);
    shell("nmcli -w 0 device modify eth0 +ipv6.addresses 2001:db8:0:1::5/64 >/dev/null");
    EXPECT_TRUE(MainLoop::runUntil([&] { return heard == "2001:db8:0:1::5"; })) << heard;
    shell("nmcli -w 0 device modify eth0 -ipv6.addresses 2001:db8:0:1::5/64 >/dev/null");
    EXPECT_TRUE(MainLoop::runUntil([&] { return heard.starts_with("2001:db8:7:1:"); })) << heard;
    EXPECT_TRUE(MainLoop::runUntil([&] { return hasGateway(); }));
}

// The kernel still believes in a neighbour that has just confirmed itself; the check must not.
TEST_F(NetworkManager, DoesNotReachAGatewayThatHasJustVanished) {
    for (const char* pingGroups : {"1 0", "0 2147483647"}) {
        shell("echo " + std::string(pingGroups) + " >/proc/sys/net/ipv4/ping_group_range");
        EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE) << pingGroups;
        routerHasIpv6(false);
        EXPECT_EQ(gateway(), CONNECTION_ERROR_NO_REPLY) << pingGroups;
        routerHasIpv6(true);
        onRouter("ip -6 address replace 2001:db8:7:1::1/64 dev lan0 nodad");
    }
}

// A router whose firewall drops everything but neighbour discovery.
TEST_F(NetworkManager, ReachesAGatewayThatAnswersOnlyNeighbourDiscovery) {
    shell("echo 1 0 >/proc/sys/net/ipv4/ping_group_range");
    onRouter("sh -c 'ip -6 rule add pref 100 lookup local && ip -6 rule del pref 0'");
    onRouter("ip -6 rule add pref 1 iif lan0 ipproto udp blackhole");
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE);
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE) << "verified anew";
    onRouter("ip -6 rule del pref 1");
}

struct OnlineCase {
    const char* url;
    int result;
};

TEST_F(NetworkManager, AsksAUrlWhenTheDaemonDoesNotCheck) {
    const auto check = [](bool enabled) {
        shell(std::string("dbus-send --system --print-reply --dest=org.freedesktop.NetworkManager "
                          "/org/freedesktop/NetworkManager org.freedesktop.DBus.Properties.Set "
                          "string:org.freedesktop.NetworkManager string:ConnectivityCheckEnabled variant:boolean:") +
              (enabled ? "true" : "false") + " >/dev/null");
    };
    constexpr OnlineCase kCases[] = {
        {kOnlineUrl, CONNECTION_ERROR_NONE},
        {"http://internet.tv-test/portal", CONNECTION_ERROR_OFFLINE},
        {"http://internet.tv-test:81/", CONNECTION_ERROR_OFFLINE},
        {"http://nowhere.tv-test/", CONNECTION_ERROR_OFFLINE},
        {"http://127.0.0.1/", CONNECTION_ERROR_OFFLINE},
        {"file:///etc/hosts", CONNECTION_ERROR_INVALID_PARAMETER},
        {"", CONNECTION_ERROR_INVALID_OPERATION},
    };
    check(false);
    for (const auto& [url, result] : kCases) {
        network::release();
        openNetwork(url);
        connectClient();
        EXPECT_EQ(online(), result) << url;
    }
    check(true);
}
