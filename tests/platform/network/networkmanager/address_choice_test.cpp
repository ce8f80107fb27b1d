#include "address_choice.h"

#include <gtest/gtest.h>
#include <linux/if_addr.h>

#include <algorithm>
#include <sstream>

using network::AddressCandidate;
using network::chooseAddress;

namespace {

struct Choice {
    const char* name;
    std::vector<AddressCandidate> candidates;
    const char* shown;  // "": none
};

const Choice kChoices[] = {
    {"nothing", {}, ""},
    {"scopes", {{"fe80::1", 64, 0}, {"fd00::1", 64, 0}, {"2001:db8::1", 64, 0}}, "2001:db8::1"},
    {"uniqueLocalBeforeLinkLocal", {{"fe80::1", 64, 0}, {"fc00::1", 64, 0}}, "fc00::1"},
    {"linkLocalAlone", {{"febf::1", 64, IFA_F_PERMANENT}}, "febf::1"},
    {"temporary", {{"2001:db8::1", 64, IFA_F_TEMPORARY}, {"2001:db8::2", 64, 0}}, "2001:db8::2"},
    {"temporaryGlobalBeforeLocal", {{"fd00::1", 64, 0}, {"2001:db8::1", 64, IFA_F_TEMPORARY}}, "2001:db8::1"},
    {"deprecated", {{"2001:db8::1", 64, IFA_F_DEPRECATED}, {"2001:db8::2", 64, IFA_F_TEMPORARY}}, "2001:db8::2"},
    {"tentative", {{"2001:db8::1", 64, IFA_F_TENTATIVE}, {"fe80::1", 64, 0}}, "fe80::1"},
    {"optimistic", {{"2001:db8::1", 64, IFA_F_OPTIMISTIC}}, ""},
    {"duplicate", {{"2001:db8::1", 64, IFA_F_PERMANENT | IFA_F_DADFAILED}}, ""},
    {"noUnicast", {{"::", 0, 0}, {"::1", 128, 0}, {"ff02::1", 64, 0}, {"nonsense", 64, 0}}, ""},
    {"equals", {{"2001:db8::2", 64, 0}, {"2001:db8::1", 64, 0}}, "2001:db8::1"},
};

}  // namespace

// The order of NetworkManager's list changes between updates, so every order must give the same choice.
TEST(AddressChoice, IsTheSameInEveryOrder) {
    for (Choice choice : kChoices) {
        const auto byAddress = [](const auto& left, const auto& right) { return left.address < right.address; };
        std::ranges::sort(choice.candidates, byAddress);
        do {
            const AddressCandidate* shown = chooseAddress(choice.candidates);
            EXPECT_EQ(shown == nullptr ? "" : shown->address, choice.shown) << choice.name;
        } while (std::ranges::next_permutation(choice.candidates, byAddress).found);
    }
}

TEST(AddressFlags, AreReadForOneInterfaceAndPassOverWhatIsNoLine) {
    std::istringstream lines(
        "20010db800070001f851e3fffe0db625 02 40 00 40     eth0\n"
        "fe80000000000000f851e3fffe0db625 02 40 20 c8     eth0\n"
        "20010db8000700010000000000000001 03 40 00 00     eth1\n"
        "20010db800070001 02 40 00 00     eth0\n"
        "20010db800070001000000000000000g 02 40 00 00     eth0\n"
        "20010db8000700010000000000000002 02 40 00 zz     eth0\n"
        "\n"
        "20010db8000700010000000000000003 02 40 00\n"
        "20010db8000700010000000000000004 02 40 00 01     eth0");
    const network::AddressFlags expected{
        {"2001:db8:7:1:f851:e3ff:fe0d:b625", IFA_F_TENTATIVE},
        {"fe80::f851:e3ff:fe0d:b625", IFA_F_PERMANENT | IFA_F_TENTATIVE | IFA_F_DADFAILED},
        {"2001:db8:7:1::4", IFA_F_TEMPORARY}};
    EXPECT_EQ(network::readAddressFlags(lines, "eth0"), expected);
}

TEST(AddressText, IsNormalised) {
    EXPECT_EQ(network::normalisedAddress("2001:0DB8:0:0:0:0:0:1"), "2001:db8::1");
    for (const char* text : {"", "192.0.2.1", "fe80::1%eth0", "2001:db8::1/64", "1::2::3"}) {
        EXPECT_EQ(network::normalisedAddress(text), std::nullopt) << text;
    }
}
