// Reading the radio and its access points from a scenario file.
#include <algorithm>
#include <charconv>
#include <string>

#include "scenario_reader.h"
#include "values.h"
#include "wifi_manager.h"

namespace network::simulated {
namespace {

constexpr long long kMostAccessPoints = 100000;  // of a radio, copies included
constexpr std::size_t kHexDigits = 2;            // of a byte

int readRssi(const Node& node) {
    const long long rssi = node.whole();
    node.require(rssiFault(rssi));
    return static_cast<int>(rssi);
}

std::string bytesOf(const Node& node) {
    const std::string hex = node.text();
    std::string bytes;
    for (std::size_t at = 0; at < hex.size(); at += kHexDigits) {
        unsigned value = 0;
        const char* end = hex.data() + std::min(at + kHexDigits, hex.size());
        const auto [stop, error] = std::from_chars(hex.data() + at, end, value, 16);
        if (error != std::errc{} || stop != hex.data() + at + kHexDigits)
            node.fail("is not made of pairs of hexadecimal digits");
        bytes += static_cast<char>(value);
    }
    return bytes;
}

// A name as text or, where it is none, as bytes.
std::string readName(const Node& node) {
    const auto hex = node.find("essidHex");
    if (hex && node.find("essid")) hex->fail("a name is given once, as essid or as essidHex");
    const Node given = hex ? *hex : node.at("essid");
    std::string name = hex ? bytesOf(given) : given.text();
    given.require(textFault(name));
    return name;
}

AccessPointRecord readAccessPoint(const Node& node, bool unchecked) {
    node.allow({"essid", "essidHex", "bssid", "rssi", "security", "passphrase", "known", "connected", "connect", "live",
                "configured", "repeat"});
    AccessPointRecord record;
    AccessPoint& seen = record.whenConnected;
    seen.essid = readName(node);
    if (const auto bssid = node.find("bssid")) {
        seen.bssid = bssid->text();
        bssid->require(macFault(seen.bssid, unchecked));
    }
    seen.rssi = readRssi(node.at("rssi"));
    seen.security = node.at("security")
                        .choice<int>({{"none", WIFI_SECURITY_NONE},
                                      {"wep", WIFI_SECURITY_WEP},
                                      {"wpa-psk", WIFI_SECURITY_WPA_PSK},
                                      {"wpa2-psk", WIFI_SECURITY_WPA2_PSK},
                                      {"eap", WIFI_SECURITY_EAP},
                                      {"sae", WIFI_SECURITY_SAE}});
    const auto known = node.find("known");
    seen.passphraseRequired = seen.security != WIFI_SECURITY_NONE && !(known && known->flag());
    if (const auto passphrase = node.find("passphrase")) {
        record.passphrase = passphrase->text();
        passphrase->require(textFault(record.passphrase));
    }
    if (const auto connect = node.find("connect")) record.connecting = readReply(*connect);
    if (const auto live = node.find("live")) seen.ipv6 = readLiveValues(*live, unchecked);
    if (const auto set = node.find("configured")) record.configured = readConfigured(*set, unchecked);
    return record;
}

// Copies of a repeated access point carry their number in their names.
void addAccessPoint(Radio& radio, const AccessPointRecord& record) {
    const std::size_t place = radio.accessPoints.size();
    AccessPointRecord& added = radio.accessPoints.emplace_back(record);
    added.id = "ap" + std::to_string(place + 1);
    radio.places.emplace(added.id, place);
}

void readAccessPoints(const Node& list, Radio& radio, bool unchecked) {
    for (const Node& node : list.items()) {
        AccessPointRecord record = readAccessPoint(node, unchecked);
        addAccessPoint(radio, record);
        if (const auto connected = node.find("connected"); connected && connected->flag()) {
            if (!radio.connected.empty()) connected->fail("a second connected access point");
            if (!radio.on) connected->fail("connected while the radio is off");
            radio.connected = radio.accessPoints.back().id;
        }
        const auto repeat = node.find("repeat");
        const long long copies = repeat ? repeat->whole() : 1;
        const long long most = kMostAccessPoints - static_cast<long long>(radio.accessPoints.size()) + 1;
        if (copies < 1 || copies > most)
            (repeat ? *repeat : node).fail("must lie between 1 and " + std::to_string(kMostAccessPoints) + " in all");
        const std::string name = record.whenConnected.essid;
        for (long long copy = 2; copy <= copies; ++copy) {
            record.whenConnected.essid = name + " " + std::to_string(copy);
            addAccessPoint(radio, record);
        }
    }
}

}  // namespace

Radio readRadio(const Node& node, bool unchecked) {
    node.allow({"on", "mac", "accessPoints", "scan"});
    Radio radio;
    if (const auto on = node.find("on")) radio.on = on->flag();
    if (const auto mac = node.find("mac"); mac && !mac->isNull()) {
        radio.mac = mac->text();
        mac->require(macFault(*radio.mac, unchecked));
    }
    if (const auto scan = node.find("scan")) radio.scanning = readReply(*scan);
    readAccessPoints(node.at("accessPoints"), radio, unchecked);
    return radio;
}

}  // namespace network::simulated
