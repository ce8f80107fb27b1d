// Against a real NetworkManager, in the namespaces of tests/end_to_end/real_network/tv_network.py.
#include <string>

#include "../connection_contract.h"
#include "real_network.h"

namespace {

using real_network::NetworkManager;
using real_network::onRouter;
using real_network::openNetwork;
using real_network::shell;

constexpr const char* kOnlineUrl = "http://internet.tv-test/online";

void routerHasIpv6(bool has) {
    onRouter(std::string("sh -c 'echo ") + (has ? "0" : "1") + " >/proc/sys/net/ipv6/conf/lan0/disable_ipv6'");
}

NetworkUnderTest real() {
    return {"networkmanager", [] { return openNetwork(); }, [] { onRouter("ip link set lan0 down"); },
            [] {
                onRouter("ip link set lan0 up");
                onRouter("ip -6 address replace 2001:db8:7:1::1/64 dev lan0 nodad");
            }};
}

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
    onRouter("ip -6 rule add pref 1 iif lan0 ipproto 17 blackhole");
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
