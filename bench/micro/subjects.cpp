#include "subjects.h"

#include <Ecore.h>
#include <arpa/inet.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "Common/Common_Function.h"
#include "Common/IPv6_Address.h"
#include "Common/Log.h"
#include "Common/Text.h"
#include "MW_CAPI/MW_CAPI_Wireless.h"
#include "log/log.h"
#include "network/network.h"
#include "settings_store.h"
#include "store/store.h"
#include "wifi_manager.h"

namespace micro {

namespace {

using AddressField = std::array<char, 40>;

// Already short, with a gap, of a link, at full length, and with leading zeros.
constexpr std::array kAddresses{
    "2001:db8::1",
    "2001:db8:1::10",
    "fe80::5054:ff:fe12:3456",
    "2001:db8:85a3:8d3:1319:8a2e:370:7348",
    "2001:0db8:0000:0000:0202:b3ff:fe1e:8329",
};

constexpr const char* kKey = "db/menu/network/ipv6/bench";

void require(bool done, const char* what) {
    if (!done) throw std::runtime_error(what);
}

bool nameIs(wifi_ap_handle ap, const char* wanted) {
    PlatformText name;
    if (fetchText(name, wifi_ap_get_essid, ap) != WIFI_ERROR_NONE) return false;
    return std::strcmp(name.get(), wanted) == 0;
}

// A value of the size of an address, another one each time.
std::array<char, 40> nextValue(int& next) {
    std::array<char, 40> value{};
    std::snprintf(value.data(), value.size(), "2001:0db8:0000:0000:0000:0000:%04x:%04x", (next >> 16) & 0xffff,
                  next & 0xffff);
    ++next;
    return value;
}

std::string scenario(int accessPoints) {
    const std::string live =
        R"("live": {"address": "2001:db8:2::20", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:2::53"]})";
    std::string list;
    if (accessPoints > 1) {
        list = R"({"essid": "Neighbour", "bssid": "02:00:5E:30:00:01", "rssi": -85, "security": "wpa2-psk",
          "passphrase": "x", "repeat": )" +
               std::to_string(accessPoints - 1) + ", " + live + "},";
    }
    return R"({"description": "bench", "interfaces": [], "profiles": [], "gateway": {"result": "NONE"},
      "internet": {"result": "NONE"}, "wifi": {"mac": "02:00:5E:20:00:AA", "accessPoints": [)" +
           list +
           R"({"essid": "Maple Street", "bssid": "02:00:5E:20:00:01", "rssi": -61, "security": "wpa2-psk",
      "passphrase": "73019462", "connected": true, )" +
           live + "}]}}";
}

// There is one radio at a time.
const Radio& radioWith(int accessPoints) {
    static std::optional<Radio> radio;
    static int has = 0;
    if (has == accessPoints) return *radio;
    radio.reset();
    has = accessPoints;
    return radio.emplace(accessPoints);
}

}  // namespace

void checkAddresses() {
    for (const char* address : kAddresses) {
        AddressField field;
        copyText(field, address);
        require(ipv6Address_validation(field.data()), address);
    }
}

void convertAddresses() {
    for (const char* address : kAddresses) {
        AddressField field;
        copyText(field, address);
        in6_addr binary{};
        require(inet_pton(AF_INET6, field.data(), &binary) == 1, address);
        require(inet_ntop(AF_INET6, &binary, field.data(), field.size()) != nullptr, address);
    }
}

Radio::Radio(int accessPoints) : wanted_("Maple Street") {
    ecore_app_no_system_modules();
    ecore_init();
    constexpr const char* kFile = "radio.json";
    std::ofstream(kFile) << scenario(accessPoints);
    const network::Selection selection = network::select(std::string("simulated=") + kFile, {});
    require(selection.selected, selection.text.c_str());
    require(wifi_init() == 0, "no Wi-Fi manager");
    require(createGlobalIPInfo() != nullptr, "no record");
    findAsGadget();  // the handles are made by the first walk
    require(std::strcmp(createGlobalIPInfo()->global_IP_ADDRESS, "2001:db8:2::20") == 0, "the walk found nothing");
}

Radio::~Radio() {
    wlan_manager_deregister_cbs();
    freeGlobalIPInfo();
    network::release();
    ecore_shutdown();
}

void Radio::findAsGadget() const {
    get_ap_info(wanted_.c_str());
}

void Radio::findBare() const {
    bool activated = false;
    wifi_is_activated(&activated);
    wifi_foreach_found_aps(
        [](wifi_ap_handle ap, void* wanted) { return !nameIs(ap, static_cast<const char*>(wanted)); },
        const_cast<char*>(wanted_.c_str()));
}

Settings::Settings() {
    std::string why;
    require(store::open("settings.db", why), why.c_str());
    write();
}

Settings::~Settings() {
    store::close();
}

void Settings::write() {
    require(vconf_set_str(kKey, nextValue(next_).data()) == 0, "not stored");
}

void Settings::read() const {
    const PlatformText value(vconf_get_str(kKey));
    require(value != nullptr, "nothing is stored");
}

RawFile::RawFile(Place place)
    : place_(place), descriptor_(open("raw", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
    require(descriptor_ >= 0, "no file");
    write();
}

RawFile::~RawFile() {
    close(descriptor_);
}

void RawFile::write() {
    const auto value = nextValue(next_);
    const off_t place = place_ == Place::Same ? 0 : lseek(descriptor_, 0, SEEK_END);
    require(pwrite(descriptor_, value.data(), value.size(), place) == static_cast<ssize_t>(value.size()),
            "not written");
    require(fdatasync(descriptor_) == 0, "not synced");
}

void setListening(bool listening) {
    std::string why;
    require(logging::setLevel(listening ? "debug" : "warning", why), why.c_str());
}

bool logLine() {
    int made = -1;  // %n is carried out only by whoever makes the text
    LOG_DEBUG("result [%d] of [%s]%n\n", 0, "db/menu/network", &made);
    return made >= 0;
}

const std::vector<Subject>& subjects() {
    static const std::vector<Subject> all{
        {"address-gadget", checkAddresses},
        {"address-control", convertAddresses},
        {"walk100-gadget", [] { radioWith(100).findAsGadget(); }},
        {"walk100-control", [] { radioWith(100).findBare(); }},
        {"walk10000-gadget", [] { radioWith(10'000).findAsGadget(); }},
        {"walk10000-control", [] { radioWith(10'000).findBare(); }},
        {"log-gadget", [] { logLine(); }},
    };
    return all;
}

}  // namespace micro
