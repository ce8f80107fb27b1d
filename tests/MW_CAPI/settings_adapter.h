// The settings screen's two adapters over a simulated network, wired and wireless.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Common/Common_Function.h"
#include "MW_CAPI/MWCapiWifi.h"
#include "MW_CAPI/MWCapiWired.h"
#include "View/IPSingleton.h"
#include "main_loop.h"
#include "network/network.h"
#include "temporary_scenario.h"

using Words = std::vector<std::string>;

inline constexpr const char* kFull = "2001:0db8:aaaa:bbbb:cccc:dddd:eeee:ffff";
inline const std::string kLongName(40, 'n');

class SettingsAdapter : public testing::Test {
  protected:
    void open(const std::string& network) {
        scenario_ = std::make_unique<TemporaryScenario>(network);
        const network::Selection selection = network::select(scenario_->choice(), {});
        ASSERT_TRUE(selection.selected) << selection.text;
        settings_ = getObject();
        ASSERT_NE(settings_, nullptr);
    }
    void TearDown() override {
        forgetConnHandler();
        delIPSettings();
        if (connection_) connection_destroy(connection_);
        wifi_deinitialize();
        freeSNetworkStatus();
    }
    static void fail(const std::string& call) {
        ASSERT_EQ(network::command(Words{"fault", call, "OPERATION_FAILED", "always"}), "");
    }
    // MAC, address, prefix length, gateway and DNS server as they were read.
    Words read() const {
        const sAPConnectionInfo& info = *settings_->connectionInfo;
        return {info.macAddress, info.ipAddress, info.prefixLength, info.gateway, info.dnsAddress};
    }
    static sglobalIPValues values(const char* prefixLength) {
        sglobalIPValues values{};
        copyText(values.ipAddress, "2001:db8:9::9");
        copyText(values.prefixLength, prefixLength);
        copyText(values.gateway, "2001:db8:9::1");
        copyText(values.dnsAddress, "2001:db8:9::53");
        return values;
    }

    MainLoop loop_;
    std::unique_ptr<TemporaryScenario> scenario_;
    connection_handle connection_ = nullptr;
    sIPSetting* settings_ = nullptr;
};

class WiredSettingsAdapter : public SettingsAdapter {
  protected:
    void openWired(const std::string& state = "connected") {
        open(R"({"interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01"}],
          "profiles": [{"id": "w", "type": "wifi", "state": "connected"},
                       {"id": "wired", "type": "ethernet", "state": ")" +
             state + R"(", "live": {"address": ")" + kFull +
             R"(", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:1::53"]}}],
          "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}, "renewal": 0})");
        connect();
    }
    void connect() {
        ASSERT_EQ(connection_create(&connection_), 0);
        settings_->connection = connection_;
    }
    // What the profile has now: it is looked up anew, so what was not stored does not count.
    Words live() {
        forgetConnHandler();
        connection_destroy(connection_);
        connect();
        EXPECT_EQ(_Get_Wired_Connection_Info(settings_), 0);
        const Words all = read();
        return {all.begin() + 1, all.end()};
    }
};

class WifiSettingsAdapter : public SettingsAdapter {
  protected:
    // Four found ones: two whose names agree in their first 32 bytes, and two of one name; the connected one is last.
    void openWifi() {
        const std::string ap = R"({"rssi": -60, "security": "none", )";
        open(R"({"interfaces": [], "profiles": [], "wifi": {"mac": "02:00:5E:20:00:AA", "accessPoints": [)" + ap +
             R"("essid": ")" + kLongName + R"(1"}, )" + ap + R"("essid": ")" + kLongName + R"(2"}, )" + ap +
             R"("essid": "Home", "bssid": "02:00:5E:20:00:05"}, )" + ap +
             R"("essid": "Home", "connected": true, "bssid": "02:00:5E:20:00:06",
               "live": {"address": ")" +
             kFull + R"(", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:2::53"]}}]},
             "gateway": {"result": "NONE"}, "internet": {"result": "NONE"}, "renewal": 0})");
        ASSERT_EQ(wifi_initialize(), 0);
    }
    void name(const std::string& wanted) { copyText(settings_->apName, wanted); }
    std::string found() const {
        PlatformText text;
        return fetchText(text, wifi_ap_get_essid, settings_->apHandle) == 0 ? text.get() : "nobody";
    }
};
