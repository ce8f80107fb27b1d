// The address rules: worked inputs, and agreement with the platform's parser over random texts.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>
#include <string>

#include "Common/Common_Function.h"
#include "Common/Text.h"

namespace {

struct AddressCase {
    const char* text;
    const char* accepted;  // the compressed form, or null when refused
};

constexpr AddressCase kCases[] = {
    {"2001:0DB8:0000:0000:0000:0000:0000:0001", "2001:db8::1"},
    {"2001:db8::1", "2001:db8::1"},
    {"fe80:0:0:0:0:0:0:1", "fe80::1"},
    {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},
    {"1::2:3:4:5:6:7", "1:0:2:3:4:5:6:7"},
    {"1:2:3:4:5:6::7", "1:2:3:4:5:6:0:7"},
    {"2001:DB8::A", "2001:db8::a"},
    {"0001:2:3:4:5:6:7:8", "1:2:3:4:5:6:7:8"},
    {"10::01", "10::1"},
    {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe"},
    // begins or ends with a colon
    {"::1", nullptr},
    {"::", nullptr},
    {":1:2:3:4:5:6:7", nullptr},
    {"fe80::", nullptr},
    {"1:2:3:4:5:6:7:", nullptr},
    // too short, or the wrong number of colons
    {"", nullptr},
    {"a", nullptr},
    {"ab", nullptr},
    {"1:2", nullptr},
    {"1:2:3:4:5:6:7", nullptr},
    {"1:2:3:4:5:6:7:8:9", nullptr},
    {"1::2::3", nullptr},
    {"1:::2", nullptr},
    {"1::2:3:4:5:6:7:8", nullptr},
    // first or last group of zeros
    {"0:1:2:3:4:5:6:7", nullptr},
    {"0000::1", nullptr},
    {"1:2:3:4:5:6:7:0", nullptr},
    {"1::0000", nullptr},
    // a group too long, or refused by the parser
    {"fffff::1", nullptr},
    {"2001:db8::1.2.3.4", nullptr},
    {"2001:db8::1.2", nullptr},
    {"2001:db8::g", nullptr},
    {"1::2 ", nullptr},
    {"fe80::1%1", nullptr},
    // longer than any address
    {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffe0", nullptr},
    {"2001:db8:0000:0000:0000:0000:0000:0001 and more", nullptr},
};

TEST(Ipv6Address, AcceptsAndCompressesOrLeavesUnchanged) {
    for (const AddressCase& example : kCases) {
        std::array<char, 64> buffer{};
        copyText(buffer, example.text);
        EXPECT_EQ(ipv6Address_validation(buffer.data()), example.accepted != nullptr) << example.text;
        EXPECT_STREQ(buffer.data(), example.accepted ? example.accepted : example.text);
    }
    EXPECT_FALSE(ipv6Address_validation(nullptr));
}

// What the rules say, put in another way than the code does: split at the colons, then look at the groups.
bool acceptable(const std::string& text) {
    in6_addr parsed{};
    if (text.size() > 39 || inet_pton(AF_INET6, text.c_str(), &parsed) != 1) return false;
    if (text.find('.') != std::string::npos || text.front() == ':' || text.back() == ':') return false;
    const auto isZero = [](const std::string& group) { return group.find_first_not_of('0') == std::string::npos; };
    const auto colons = std::count(text.begin(), text.end(), ':');
    return colons <= 7 && !isZero(text.substr(0, text.find(':'))) && !isZero(text.substr(text.rfind(':') + 1));
}

TEST(Ipv6Address, AgreesWithTheRulesOverRandomTexts) {
    std::mt19937 random(20261122);
    const std::string alphabet = "00000123abcF::::::::.g ";
    int accepted = 0;
    for (int round = 0; round < 200000; ++round) {
        std::array<char, 64> buffer{};
        std::string text(1 + random() % 20, ' ');
        for (char& character : text)
            character = alphabet[random() % alphabet.size()];
        copyText(buffer, text);
        const bool expected = acceptable(text);
        ASSERT_EQ(ipv6Address_validation(buffer.data()), expected) << text;
        accepted += expected;
    }
    EXPECT_GT(accepted, 100);
}

}  // namespace
