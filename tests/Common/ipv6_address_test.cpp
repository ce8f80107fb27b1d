// The address rules on worked inputs; the inputs of the address fuzzer agree with the grammar besides.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "Common/Common_Function.h"
#include "Common/Text.h"

namespace {

// What the check leaves of a text, and whether it accepts it.
std::pair<bool, std::string> checked(const char* text) {
    std::array<char, 64> buffer{};
    copyText(buffer, text);
    const bool accepted = ipv6Address_validation(buffer.data());
    return {accepted, buffer.data()};
}

TEST(Ipv6Address, AcceptsAndCompresses) {
    const std::pair<const char*, const char*> cases[] = {
        {"2001:db8::1", "2001:db8::1"},
        {"2001:DB8::A", "2001:db8::a"},
        {"fe80:0:0:0:0:0:0:1", "fe80::1"},
        {"0001:2:3:4:5:6:7:8", "1:2:3:4:5:6:7:8"},
        {"1::2:3:4:5:6:7", "1:0:2:3:4:5:6:7"},
        {"1:2:3:4:5:6::7", "1:2:3:4:5:6:0:7"},
        {"10::01", "10::1"},
        {"1::2", "1::2"},
        {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe"},
    };
    for (const auto& [text, compressed] : cases)
        EXPECT_EQ(checked(text), std::pair(true, std::string(compressed)));
}

TEST(Ipv6Address, RefusesAndLeavesUnchanged) {
    const char* const cases[] = {
        // begins or ends with a colon
        "::1", "::", ":1:2:3:4:5:6:7", "fe80::", "1:2:3:4:5:6:7:",
        // too short, or the wrong number of colons
        "", "a", "ab", "1:2", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "1::2::3", "1:::2", "1::2:3:4:5:6:7:8",
        // first or last group of zeros
        "0:1:2:3:4:5:6:7", "0000::1", "1:2:3:4:5:6:7:0", "1::0000",
        // a group too long, or refused by the parser
        "fffff::1", "1::00002", "2001:db8::1.2.3.4", "2001:db8::g", "1::2 ", "fe80::1%1",
        // longer than any address
        "ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe0", "2001:db8:0000:0000:0000:0000:0000:0001 and more"};
    for (const char* text : cases)
        EXPECT_EQ(checked(text), std::pair(false, std::string(text)));
    EXPECT_FALSE(ipv6Address_validation(nullptr));
}

}  // namespace
