// The gadget's adapters over a simulated network.
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

class SettingsAdapter : public testing::Test {
  protected:
    void open(const std::string& network) {
        const network::Selection selection = network::select(TemporaryScenario(network).choice(), {});
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
    static void say(const Words& words) { ASSERT_EQ(network::command(words), ""); }
    static void fail(const std::string& call, const char* times = "always") {
        say({"fault", call, "OPERATION_FAILED", times});
    }
    // MAC, address, prefix length, gateway and DNS server as they were read.
    Words read() const {
        const sAPConnectionInfo& info = *settings_->connectionInfo;
        return {info.macAddress, info.ipAddress, info.prefixLength, info.gateway, info.dnsAddress};
    }
    static sglobalIPValues values(const char* prefixLength, const std::string& apName = "") {
        sglobalIPValues values{};
        copyText(values.apName, apName);
        copyText(values.ipAddress, "2001:db8:9::9");
        copyText(values.prefixLength, prefixLength);
        copyText(values.gateway, "2001:db8:9::1");
        copyText(values.dnsAddress, "2001:db8:9::53");
        return values;
    }

    MainLoop loop_;
    connection_handle connection_ = nullptr;
    sIPSetting* settings_ = nullptr;
};
