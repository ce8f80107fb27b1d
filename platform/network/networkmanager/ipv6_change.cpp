#include "ipv6_change.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "network/ipv6_settings.h"

namespace network {
namespace {

constexpr std::uint8_t kUsualPrefixLength = 64;  // RFC 4291 section 2.5.1: unicast interface identifiers

bool isMethod(NMSettingIPConfig* ip, std::string_view method) {
    const char* own = nm_setting_ip_config_get_method(ip);
    return own != nullptr && own == method;
}

bool isManual(NMSettingIPConfig* ip) {
    return isMethod(ip, NM_SETTING_IP6_CONFIG_METHOD_MANUAL);
}

bool isAutomatic(NMSettingIPConfig* ip) {
    return isMethod(ip, NM_SETTING_IP6_CONFIG_METHOD_AUTO) || isMethod(ip, NM_SETTING_IP6_CONFIG_METHOD_DHCP);
}

void setText(NMSettingIPConfig* ip, const char* property, const std::string& value) {
    g_object_set(ip, property, value.empty() ? nullptr : value.c_str(), nullptr);
}

bool usesOwnServers(NMSettingIPConfig* ip) {
    return nm_setting_ip_config_get_num_dns(ip) > 0 && (nm_setting_ip_config_get_ignore_auto_dns(ip) || isManual(ip));
}

NMSettingIPConfig* ipv6Of(NMConnection* profile) {
    if (NMSettingIPConfig* ip = nm_connection_get_setting_ip6_config(profile)) return ip;
    NMSetting* added = nm_setting_ip6_config_new();
    g_object_set(added, NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP6_CONFIG_METHOD_AUTO, nullptr);
    nm_connection_add_setting(profile, added);
    return NM_SETTING_IP_CONFIG(added);
}

// The stored address that the user sees and changes: the one that is shown, otherwise the first.
guint shownIndex(NMSettingIPConfig* ip, const Ipv6Values& live) {
    for (guint i = 0; i < nm_setting_ip_config_get_num_addresses(ip); ++i) {
        const auto* address = nm_setting_ip_config_get_address(ip, static_cast<int>(i));
        if (live.address == nm_ip_address_get_address(const_cast<NMIPAddress*>(address))) return i;
    }
    return 0;
}

void replaceAddresses(NMSettingIPConfig* ip, const std::vector<NMIPAddress*>& addresses) {
    nm_setting_ip_config_clear_addresses(ip);
    for (NMIPAddress* address : addresses) {
        nm_setting_ip_config_add_address(ip, address);
        nm_ip_address_unref(address);
    }
}

std::vector<NMIPAddress*> copiedAddresses(NMSettingIPConfig* ip) {
    std::vector<NMIPAddress*> copies;
    for (guint i = 0; i < nm_setting_ip_config_get_num_addresses(ip); ++i) {
        copies.push_back(nm_ip_address_dup(nm_setting_ip_config_get_address(ip, static_cast<int>(i))));
    }
    return copies;
}

void changeManualAddress(NMSettingIPConfig* ip, const Ipv6Settings& asked, const Ipv6Values& live) {
    auto addresses = copiedAddresses(ip);
    NMIPAddress* shown = addresses[shownIndex(ip, live)];
    if (asked.address) nm_ip_address_set_address(shown, asked.address->c_str());
    if (asked.prefixLength) nm_ip_address_set_prefix(shown, *asked.prefixLength);
    replaceAddresses(ip, addresses);
}

// The router's advertisements end with the automatic mode, so what they gave is kept where nothing else was asked for.
void becomeManual(NMSettingIPConfig* ip, const Ipv6Settings& asked, const Ipv6Values& live) {
    const auto length = asked.prefixLength.value_or(live.prefixLength.value_or(kUsualPrefixLength));
    g_object_set(ip, NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP6_CONFIG_METHOD_MANUAL, nullptr);
    NMIPAddress* address = nm_ip_address_new(AF_INET6, asked.address->c_str(), length, nullptr);
    replaceAddresses(ip, address == nullptr ? std::vector<NMIPAddress*>{} : std::vector{address});
    const bool routes = !nm_setting_ip_config_get_never_default(ip);
    if (!asked.gateway && routes) setText(ip, NM_SETTING_IP_CONFIG_GATEWAY, live.gateway);
}

// A gateway without an address would be refused, so both go together.
void becomeAutomatic(NMSettingIPConfig* ip) {
    if (isAutomatic(ip)) return;
    nm_setting_ip_config_clear_addresses(ip);
    setText(ip, NM_SETTING_IP_CONFIG_GATEWAY, "");
    g_object_set(ip, NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP6_CONFIG_METHOD_AUTO, nullptr);
}

void keepAddressChanges(const Ipv6Settings& asked, Ipv6Settings& rest) {
    rest.isStatic = asked.isStatic;
    rest.address = asked.address;
    rest.prefixLength = asked.prefixLength;
    rest.gateway = asked.gateway;
}

void changeAddress(NMSettingIPConfig* ip, const Ipv6Settings& asked, const Ipv6Values& live, Ipv6Settings& rest) {
    if (asked.isStatic == false) return becomeAutomatic(ip);
    const bool wasManual = isManual(ip) && nm_setting_ip_config_get_num_addresses(ip) > 0;
    if (!wasManual && (!asked.isStatic || !asked.address)) return keepAddressChanges(asked, rest);
    if (wasManual) {
        changeManualAddress(ip, asked, live);
    } else {
        becomeManual(ip, asked, live);
    }
    if (asked.gateway) setText(ip, NM_SETTING_IP_CONFIG_GATEWAY, *asked.gateway);
}

void setServers(NMSettingIPConfig* ip, const std::vector<std::string>& servers) {
    nm_setting_ip_config_clear_dns(ip);
    for (const std::string& server : servers)
        nm_setting_ip_config_add_dns(ip, server.c_str());
    g_object_set(ip, NM_SETTING_IP_CONFIG_IGNORE_AUTO_DNS, static_cast<gboolean>(!servers.empty()), nullptr);
}

std::vector<std::string> serversOf(NMSettingIPConfig* ip) {
    std::vector<std::string> servers;
    for (guint i = 0; i < nm_setting_ip_config_get_num_dns(ip); ++i) {
        servers.emplace_back(nm_setting_ip_config_get_dns(ip, static_cast<int>(i)));
    }
    return servers;
}

// Servers that the profile adds to those of the network are left alone as long as the DNS is automatic.
void changeDns(NMSettingIPConfig* ip, bool wasStatic, const Ipv6Settings& asked, Ipv6Settings& rest) {
    if (!asked.dnsIsStatic.value_or(wasStatic)) {
        if (!asked.dnsIsStatic) rest.dns = asked.dns;
        if (wasStatic) setServers(ip, {});
        if (asked.dnsIsStatic) g_object_set(ip, NM_SETTING_IP_CONFIG_IGNORE_AUTO_DNS, FALSE, nullptr);
        return;
    }
    Ipv6Values values;
    if (wasStatic) values.dns = serversOf(ip);
    overlay(asked, values);
    if (values.dns.empty()) rest.dnsIsStatic = true;
    if (wasStatic || !values.dns.empty()) setServers(ip, values.dns);
}

}  // namespace

bool dnsIsStatic(NMConnection* profile) {
    NMSettingIPConfig* ip = nm_connection_get_setting_ip6_config(profile);
    return ip != nullptr && usesOwnServers(ip);
}

Ipv6Settings changeIpv6(NMConnection* profile, const Ipv6Settings& asked, const Ipv6Values& live) {
    NMSettingIPConfig* ip = ipv6Of(profile);
    const bool wasStatic = usesOwnServers(ip);
    Ipv6Settings rest;
    changeAddress(ip, asked, live, rest);
    changeDns(ip, wasStatic, asked, rest);
    return rest;
}

}  // namespace network
