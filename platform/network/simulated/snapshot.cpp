#include "snapshot.h"

#include <nlohmann/json.hpp>

#include <array>
#include <fstream>
#include <utility>

#include "wifi_manager.h"

namespace network::simulated {
namespace {

using nlohmann::json;

constexpr auto kProfileStates = std::to_array<std::pair<int, const char*>>({
    {CONNECTION_PROFILE_STATE_DISCONNECTED, "disconnected"},
    {CONNECTION_PROFILE_STATE_ASSOCIATION, "association"},
    {CONNECTION_PROFILE_STATE_CONFIGURATION, "configuration"},
    {CONNECTION_PROFILE_STATE_CONNECTED, "connected"},
});
constexpr auto kEthernetStates = std::to_array<std::pair<int, const char*>>({
    {CONNECTION_ETHERNET_DEACTIVATED, "deactivated"},
    {CONNECTION_ETHERNET_DISCONNECTED, "disconnected"},
    {CONNECTION_ETHERNET_CONNECTED, "connected"},
});
constexpr auto kSecurities = std::to_array<std::pair<int, const char*>>({
    {WIFI_SECURITY_NONE, "none"},
    {WIFI_SECURITY_WEP, "wep"},
    {WIFI_SECURITY_WPA_PSK, "wpa-psk"},
    {WIFI_SECURITY_WPA2_PSK, "wpa2-psk"},
    {WIFI_SECURITY_EAP, "eap"},
    {WIFI_SECURITY_SAE, "sae"},
});

template <typename Table>
std::string nameOf(const Table& table, int value) {
    for (const auto& [known, name] : table) {
        if (known == value) return name;
    }
    return std::to_string(value);
}

const char* dnsMode(bool isStatic) {
    return isStatic ? "static" : "dynamic";
}

json live(const Ipv6Values& values) {
    json written{{"dnsMode", dnsMode(values.dnsIsStatic)}};
    if (!values.address.empty()) written["address"] = values.address;
    if (values.prefixLength) written["prefixLength"] = *values.prefixLength;
    if (!values.gateway.empty()) written["gateway"] = values.gateway;
    if (!values.dns.empty()) written["dns"] = values.dns;
    return written;
}

json configured(const Ipv6Settings& settings) {
    json written = json::object();
    if (settings.isStatic) written["mode"] = *settings.isStatic ? "static" : "automatic";
    if (settings.address) written["address"] = *settings.address;
    if (settings.prefixLength) written["prefixLength"] = *settings.prefixLength;
    if (settings.gateway && !settings.gateway->empty()) written["gateway"] = *settings.gateway;
    if (settings.dnsIsStatic) written["dnsMode"] = dnsMode(*settings.dnsIsStatic);
    for (const auto& [order, server] : settings.dns) {
        if (!server.empty()) written["dns"].push_back(server);
    }
    return written;
}

json reply(const Reply& given) {
    if (given.silent) return {{"delay", given.delay}, {"result", "silence"}};
    return {{"delay", given.delay}, {"result", given.result}};
}

json ethernet(const EthernetInterface& interface) {
    json written{{"kind", "ethernet"}, {"link", interface.linkUp ? "up" : "down"}};
    written["mac"] = interface.mac ? json(*interface.mac) : json(nullptr);
    if (interface.state) written["state"] = nameOf(kEthernetStates, *interface.state);
    return written;
}

json profile(const State& state, const ProfileRecord& record) {
    const Profile seen = seenProfile(state, record);
    const bool isWired = seen.type == CONNECTION_PROFILE_TYPE_ETHERNET;
    json written{{"id", record.id}, {"type", isWired ? "ethernet" : "wifi"}, {"registered", record.registered}};
    written["state"] = nameOf(kProfileStates, seen.state);
    written["live"] = live(seen.ipv6);
    written["configured"] = configured(record.configured);
    if (!record.ipv4.empty()) written["ipv4Address"] = record.ipv4;
    return written;
}

// As bytes, which any name can be written as.
std::string hexOf(const std::string& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        hex += {kDigits[value >> 4U], kDigits[value & 0xFU]};
    }
    return hex;
}

bool isUtf8(const std::string& text) {
    try {
        return !json(text).dump().empty();
    } catch (const json::type_error&) {
        return false;
    }
}

json accessPoint(const State& state, const AccessPointRecord& record) {
    const AccessPoint seen = seenAccessPoint(state, record);
    json written{{"rssi", seen.rssi}, {"security", nameOf(kSecurities, seen.security)}};
    isUtf8(seen.essid) ? written["essid"] = seen.essid : written["essidHex"] = hexOf(seen.essid);
    if (!seen.bssid.empty()) written["bssid"] = seen.bssid;
    if (!record.passphrase.empty()) written["passphrase"] = record.passphrase;
    written["known"] = !seen.passphraseRequired;
    written["connected"] = state.radio->connected == record.id;
    written["connect"] = reply(record.connecting);
    written["live"] = live(seen.ipv6);
    written["configured"] = configured(record.configured);
    return written;
}

json radio(const State& state) {
    json written{{"on", state.radio->on}, {"scan", reply(state.radio->scanning)}};
    written["mac"] = state.radio->mac ? json(*state.radio->mac) : json(nullptr);
    written["accessPoints"] = json::array();
    for (const AccessPointRecord& record : state.radio->accessPoints) {
        if (record.isFound) written["accessPoints"].push_back(accessPoint(state, record));
    }
    return written;
}

json scenario(const State& state) {
    json written{{"description", state.description}, {"unchecked", state.unchecked}};
    written["interfaces"] = json::array();
    if (state.ethernet) written["interfaces"].push_back(ethernet(*state.ethernet));
    written["profiles"] = json::array();
    for (const ProfileRecord& record : state.profiles)
        written["profiles"].push_back(profile(state, record));
    if (state.radio) written["wifi"] = radio(state);
    written["gateway"] = reply(state.gateway);
    written["internet"] = reply(state.internet);
    written["renewal"] = state.renewal;
    return written;
}

}  // namespace

std::string saveState(const State& state, const std::string& file) {
    std::ofstream output(file);
    output << scenario(state).dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return output.flush().good() ? "" : "cannot write " + file;
}

}  // namespace network::simulated
