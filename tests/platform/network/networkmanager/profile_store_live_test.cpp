// Storing IPv6 settings in the profiles of a real NetworkManager.
#include <array>
#include <cstdio>
#include <memory>
#include <vector>

#include "network/backend.h"
#include "real_network.h"

namespace {

using network::Ipv6Settings;
using real_network::NetworkManager;
using real_network::shell;

constexpr int kIpv6 = CONNECTION_ADDRESS_FAMILY_IPV6;
constexpr const char* kWired = "f3b1c1c2-8f0e-4e57-9b53-2f5d4a7e0c11";
constexpr const char* kAddress = "2001:db8:7:1::77";
constexpr const char* kGateway = "2001:db8:7:1::1";
constexpr const char* kServer = "2001:db8:7:1::53";
constexpr const char* kOthers =
    "ipv6.routes 2001:db8:55::/48 ipv6.route-metric 321 ipv6.dns-search tv.test ipv6.ip6-privacy 0 "
    "ipv6.dhcp-duid ll connection.id Wired";

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
    std::array<char, 4096> buffer{};
    std::string text;
    while (const auto read = std::fread(buffer.data(), 1, buffer.size(), pipe.get()))
        text.append(buffer.data(), read);
    return text;
}

// The whole profile as the daemon has it, without its time of use.
std::string storedProfile(const std::string& id) {
    return outputOf("nmcli -t --show-secrets connection show uuid " + id +
                    " | grep -v -e '^[A-Z]' -e '^connection.timestamp:'");
}

std::string withoutWhatMayChange(const std::string& id) {
    return outputOf("nmcli -t connection show uuid " + id +
                    " | grep -v -e '^[A-Z]' -e '^connection.timestamp:' -e '^ipv6.method:' -e '^ipv6.addresses:' "
                    "-e '^ipv6.gateway:' -e '^ipv6.dns:' -e '^ipv6.ignore-auto-dns:'");
}

class ProfileStore : public NetworkManager {
  protected:
    void SetUp() override {
        NetworkManager::SetUp();
        if (IsSkipped()) return;
        shell(std::string("nmcli connection modify ") + kWired + " " + kOthers);
        ASSERT_TRUE(MainLoop::runUntil([&] { return isSettled(); })) << live();
    }

    // Everything that the router gives is there; parts of it come one after the other.
    bool isSettled() {
        network::Profile values;
        return network::backend()->profile(kWired, values) == 0 && values.state == CONNECTION_PROFILE_STATE_CONNECTED &&
               values.ipv6.address.starts_with("2001:db8:7:1:") && values.ipv6.gateway.starts_with("fe80:") &&
               !values.ipv6.dns.empty();
    }

    int update() { return connection_update_profile(client, profile); }
    int setMode(int mode) {
        if (const int error = connection_profile_set_ip_config_type(profile, kIpv6, mode)) return error;
        return update();
    }
    int setDnsMode(int mode) {
        if (const int error = connection_profile_set_dns_config_type(profile, kIpv6, mode)) return error;
        return update();
    }
    // The way of the settings screen: the modes first, the values later and apart from each other.
    void makeManual() {
        ASSERT_EQ(setMode(CONNECTION_IP_CONFIG_STATIC), 0);
        ASSERT_EQ(setDnsMode(CONNECTION_DNS_CONFIG_STATIC), 0);
        ASSERT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, kServer), 0);
        ASSERT_EQ(update(), 0);
        ASSERT_EQ(connection_profile_set_ip_address(profile, kIpv6, kAddress), 0);
        ASSERT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 72), 0);
        ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, kGateway), 0);
        ASSERT_EQ(update(), 0);
    }
    void makeAutomatic() {
        ASSERT_EQ(setMode(CONNECTION_IP_CONFIG_AUTOMATIC), 0);
        for (const int order : {1, 2})
            ASSERT_EQ(connection_profile_set_dns_address(profile, order, kIpv6, "::"), 0);
        ASSERT_EQ(setDnsMode(CONNECTION_DNS_CONFIG_DYNAMIC), 0);
    }
    // "address/length gateway dns" as the manager shows them.
    std::string live() {
        network::Profile values;
        if (network::backend()->profile(kWired, values) != 0) return "gone";
        const auto& ipv6 = values.ipv6;
        return ipv6.address + "/" + std::to_string(ipv6.prefixLength.value_or(0)) + " " + ipv6.gateway + " " +
               (ipv6.dns.empty() ? "-" : ipv6.dns.front()) + (ipv6.dnsIsStatic ? " static" : " dynamic");
    }
    bool becomes(const std::string& wanted) {
        return MainLoop::runUntil([&] { return live() == wanted; });
    }

    const std::string manual = "2001:db8:7:1::77/72 2001:db8:7:1::1 2001:db8:7:1::53 static";
};

}  // namespace

TEST_F(ProfileStore, MakesManualValuesLiveAndComesBackWithoutATrace) {
    const std::string before = storedProfile(kWired), liveBefore = live(), others = withoutWhatMayChange(kWired);
    ASSERT_NE(others.find("2001:db8:55::/48"), std::string::npos) << others;
    makeManual();
    EXPECT_TRUE(becomes(manual)) << live();
    EXPECT_EQ(withoutWhatMayChange(kWired), others);
    EXPECT_EQ(outputOf("nmcli -t -f IP6.ADDRESS device show eth0 | grep -c 2001"), "1\n");
    EXPECT_EQ(gateway(), CONNECTION_ERROR_NONE);
    makeAutomatic();
    EXPECT_TRUE(becomes(liveBefore)) << live();
    EXPECT_EQ(storedProfile(kWired), before);
}

TEST_F(ProfileStore, KeepsTheProfileUntilAManualModeHasItsValues) {
    const std::string before = storedProfile(kWired), liveBefore = live();
    ASSERT_EQ(setMode(CONNECTION_IP_CONFIG_STATIC), 0);
    ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, kGateway), 0);
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
    EXPECT_EQ(storedProfile(kWired), before);
}

TEST_F(ProfileStore, ChangesSingleManualValuesAndRefusesUnusableOnes) {
    makeManual();
    ASSERT_TRUE(becomes(manual)) << live();
    const std::string stored = storedProfile(kWired);
    for (const char* address : {"::", "ff02::1", "192.0.2.1"})
        EXPECT_EQ(connection_profile_set_ip_address(profile, kIpv6, address), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 0), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_set_dns_address(profile, 1, kIpv6, "ff02::2"), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(update(), 0);
    ASSERT_EQ(connection_profile_set_prefix_length(profile, kIpv6, 80), 0);
    ASSERT_EQ(connection_profile_set_gateway_address(profile, kIpv6, "::"), 0);
    ASSERT_EQ(update(), 0);
    EXPECT_TRUE(becomes("2001:db8:7:1::77/80  2001:db8:7:1::53 static")) << live();
    EXPECT_NE(storedProfile(kWired), stored);
    makeAutomatic();
    EXPECT_TRUE(MainLoop::runUntil([&] { return hasGateway(); }));
}

TEST_F(ProfileStore, EndsQuietlyWhenTheProfileIsDeletedInBetween) {
    constexpr const char* kSpare = "0d1f6d0e-0a56-4c57-9d43-1f5d6e0c7b22";
    shell(std::string("nmcli connection add type ethernet con-name spare ifname none0 connection.uuid ") + kSpare +
          " >/dev/null");
    network::Profile spare;
    ASSERT_TRUE(MainLoop::runUntil([&] { return network::backend()->profile(kSpare, spare) == 0; }));
    Ipv6Settings settings{};
    settings.dnsIsStatic = true;
    settings.dns[1] = kServer;
    shell(std::string("nmcli connection delete ") + kSpare + " >/dev/null");
    EXPECT_EQ(network::backend()->store(kSpare, settings), 0) << "the deletion is not known yet";
    EXPECT_TRUE(MainLoop::runUntil(
        [&] { return network::backend()->store(kSpare, settings) == CONNECTION_ERROR_NO_CONNECTION; }));
    EXPECT_EQ(storedProfile(kSpare), "");
}

// What is read from the daemon has no secrets; storing it again must not lose them.
TEST_F(ProfileStore, KeepsThePassphraseOfAWirelessProfile) {
    constexpr const char* kWireless = "5c9a1d2e-7b34-4f0a-8e61-2a3b4c5d6e7f";
    shell(std::string("nmcli connection add type wifi con-name air ssid air wifi-sec.key-mgmt wpa-psk "
                      "wifi-sec.psk 'never told' connection.uuid ") +
          kWireless + " >/dev/null");
    Ipv6Settings settings{};
    settings.isStatic = true;
    settings.address = kAddress;
    ASSERT_TRUE(MainLoop::runUntil([&] { return network::backend()->store(kWireless, settings) == 0; }));
    EXPECT_TRUE(MainLoop::runUntil([&] {
        return storedProfile(kWireless).find(std::string("ipv6.addresses:") + kAddress + "/64") != std::string::npos ||
               storedProfile(kWireless).find("ipv6.addresses:2001\\:db8\\:7\\:1\\:\\:77/64") != std::string::npos;
    })) << storedProfile(kWireless);
    EXPECT_TRUE(MainLoop::runUntil([&] {
        return storedProfile(kWireless).find("psk:never told") != std::string::npos;
    })) << storedProfile(kWireless)
        << outputOf("grep -h -A3 wifi-security $TV_NETWORK_FOLDER/profiles/air*");
    shell(std::string("nmcli connection delete ") + kWireless + " >/dev/null");
}
