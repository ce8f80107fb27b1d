// Shared records and small utilities.
#include "Common/Common_Function.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include "Common/Outside_Text.h"
#include "Common/Text.h"

namespace {

TEST(Records, AreOneInstanceEachUntilTheyAreFreed) {
    setDefaultValGlobalIPInfo();
    sGlobalIPInfo* info = createGlobalIPInfo();
    EXPECT_STREQ(info->global_IP_ADDRESS, "") << "setting defaults must not have created the record";
    EXPECT_EQ(createGlobalIPInfo(), info);
    for (char* field : {info->global_MAC_ADDRESS, info->global_SSID_NAME})
        copybuffer(field, "kept");
    setDefaultValGlobalIPInfo();
    const char* fields[] = {info->global_IP_ADDRESS, info->global_PREFIX_LENGTH, info->global_GATEWAY,
                            info->global_DNS,        info->global_MAC_ADDRESS,   info->global_SSID_NAME};
    EXPECT_EQ(std::vector<std::string>(std::begin(fields), std::end(fields)),
              (std::vector<std::string>{"::", "0", "::", "::", "kept", "kept"}));
    createNetworkStatus()->connStatus->gatewayReachable = 1;
    EXPECT_EQ(createNetworkStatus()->connStatus->gatewayReachable, 1);
    for (void (*release)() : {freeGlobalIPInfo, freeGlobalIPInfo, freeSNetworkStatus, freeSNetworkStatus})
        release();
    EXPECT_STREQ(createGlobalIPInfo()->global_MAC_ADDRESS, "");
    EXPECT_EQ(createNetworkStatus()->connStatus->gatewayReachable, 0);
    freeGlobalIPInfo();
    freeSNetworkStatus();
}

TEST(Utilities, ComparisonIsNullSafeAndEndsAt255Characters) {
    const std::string same(255, 'x');
    EXPECT_EQ(string_cmp("Wired", "Wired"), 0);
    EXPECT_LT(string_cmp("Wired", "Wireless"), 0);
    EXPECT_EQ(string_cmp((same + "a").c_str(), (same + "b").c_str()), 0);
    EXPECT_NE(string_cmp((same.substr(1) + "a").c_str(), (same.substr(1) + "b").c_str()), 0);
    EXPECT_EQ(string_cmp(nullptr, "a"), -1);
    EXPECT_EQ(string_cmp("a", nullptr), -1);
}

TEST(Utilities, CopiesAreBoundedAndTerminated) {
    char field[4] = {'z', 'z', 'z', 'z'};
    copyText(field, "12345");
    EXPECT_STREQ(field, "123");
    copyText(field, "");
    EXPECT_EQ(std::string(field, sizeof field), std::string(4, '\0'));
    EXPECT_EQ(copybuffer(field, "new"), field);
    EXPECT_EQ(copybuffer(field, nullptr), nullptr);
    EXPECT_EQ(copybuffer(nullptr, "text"), nullptr);
    for (const std::size_t length : {0U, 199U, 200U}) {
        const PlatformText copy(modifyString(std::string(length, 'm').c_str()));
        EXPECT_EQ(std::string(copy.get()), std::string(std::min<std::size_t>(length, 199), 'm'));
    }
    EXPECT_EQ(modifyString(nullptr), nullptr);
    const PlatformText spoken(_access_info_cb("100 %s"));
    EXPECT_STREQ(spoken.get(), "100 %s");
}

TEST(Utilities, LabelsAndErrorCodesHaveTexts) {
    // Without a catalogue a lookup gives the text ID.
    EXPECT_STREQ(getData("Subnet Mask"), "SID_SUBNET_MASK");
    EXPECT_STREQ(getData("OK"), "OK") << "an unknown one stays";
    EXPECT_EQ(getData(nullptr), nullptr);
    const std::tuple<int, const char*, const char*> cases[] = {
        {0, "NONE", "NONE"},
        {-31732, "DEFAULT", "CONNECTION_OFFLINE"},
        {-31987, "WIFI_OFFLINE", "UNKNOWN"},
        {-29687034, "DHCP_FAILED", "UNKNOWN"},
        {-29424633, "DEFAULT", "INVALID_KEY"},
        {INT_MIN, "DEFAULT", "UNKNOWN"},
    };
    for (const auto& [code, wifi, wired] : cases) {
        EXPECT_STREQ(convertWifiErrorToString(code), wifi) << code;
        EXPECT_STREQ(convertWiredErrorToString(code), wired) << code;
    }
}

TEST(OutsideText, IsShownExactlyOrWithReplacementSigns) {
    const char* shown = "café\u00A0<b>&amp; \u07FF\u0800\uFFFD\U00010000\U0010FFFF 📺";
    EXPECT_EQ(showableText(shown), shown);
    EXPECT_EQ(showableText(""), "");
    EXPECT_EQ(showableText("a\x01|\x7F|\xC2\x9Fz"), "a\uFFFD|\uFFFD|\uFFFDz");
    for (const std::string malformed :
         {"\xFF\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        const std::string replaced = showableText(malformed);
        EXPECT_EQ(replaced.size(), 3 * malformed.size()) << malformed;
        EXPECT_EQ(replaced.find_first_not_of("\uFFFD"), std::string::npos) << malformed;
    }
}

}  // namespace
