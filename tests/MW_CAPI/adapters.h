// The gadget's adapters over a simulated network.
#pragma once

#include <string>
#include <vector>

#include "Common/Common_Function.h"
#include "MW_CAPI/MWCapiWifi.h"
#include "MW_CAPI/MWCapiWired.h"
#include "View/IPSingleton.h"
#include "main_loop.h"
#include "temporary_scenario.h"

using Words = std::vector<std::string>;

// Wired, a profile of another type is in the way. Wireless, there are two names that agree in their first 32 bytes, and
// two access points of one name, of which the last is connected.
inline constexpr const char* kNetwork = R"({"unchecked": true,
  "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01"}],
  "profiles": [{"id": "w", "type": "wifi", "state": "connected"},
    {"id": "wired", "type": "ethernet", "state": "connected",
     "live": {"address": "2001:0db8:aaaa:bbbb:cccc:dddd:eeee:ffff", "prefixLength": 64, "gateway": "fe80::1",
              "dns": ["2001:db8:1::53"]}}],
  "wifi": {"mac": "02:00:5E:20:00:AA", "scan": {"result": "NONE"}, "accessPoints": [
    {"essid": "", "rssi": -60, "security": "none"},
    {"essid": "a name of more than thirty-two bytes: 1", "rssi": -60, "security": "none",
     "bssid": "access-point-0123456789abcdef0123456789"},
    {"essid": "a name of more than thirty-two bytes: 2", "rssi": -60, "security": "none"},
    {"essid": "Home", "rssi": -60, "security": "none", "bssid": "02:00:5E:20:00:05"},
    {"essid": "Home", "rssi": -71, "security": "wpa2-psk", "bssid": "02:00:5E:20:00:06", "connected": true,
     "live": {"address": "2001:0db8:aaaa:bbbb:cccc:dddd:eeee:ffff", "prefixLength": 64, "gateway": "fe80::1",
              "dns": ["2001:db8:1::53"]}}]},
  "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}, "renewal": 0})";

class Adapters : public testing::Test {
  protected:
    void SetUp() override { open(); }
    void open() {
        selectScenario(kNetwork);
        settings_ = getObject();
        ASSERT_NE(settings_, nullptr);
        ASSERT_EQ(wifi_initialize(), 0);
    }
    void TearDown() override {
        forgetConnHandler();
        delIPSettings();
        freeSNetworkStatus();
        freeGlobalIPInfo();
    }
    static void fail(const std::string& call, const char* times = "always") {
        say({"fault", call, "OPERATION_FAILED", times});
    }
    // MAC, address, prefix length, gateway and DNS server as they were read.
    Words read() const {
        const sAPConnectionInfo& info = *settings_->connectionInfo;
        return {info.macAddress, info.ipAddress, info.prefixLength, info.gateway, info.dnsAddress};
    }
    // As read, and a second server.
    Words readWith(const PlatformText& server) const {
        Words all = read();
        all.emplace_back(server ? server.get() : "");
        return all;
    }
    static sglobalIPValues values(const char* prefixLength) {
        sglobalIPValues values{};
        copyText(values.apName, "Home");
        copyText(values.ipAddress, "2001:db8:9::9");
        copyText(values.prefixLength, prefixLength);
        copyText(values.gateway, "2001:db8:9::1");
        copyText(values.dnsAddress, "2001:db8:9::53");
        return values;
    }

    const std::string full_ = "2001:0db8:aaaa:bbbb:cccc:dddd:eeee:ffff";
    const char *address_ = "2001:db8:9::9", *gateway_ = "2001:db8:9::1", *server_ = "2001:db8:9::53";
    MainLoop loop_;
    sIPSetting* settings_ = nullptr;
};
