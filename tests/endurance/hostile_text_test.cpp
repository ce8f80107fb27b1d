// Texts that nobody expects, from the network, the store and the catalogues: shown as they are, or replaced as
// documented, wherever they show.
#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "Common/Outside_Text.h"
#include "View/Keyboard_Editing.h"
#include "endurance_run.h"
#include "keyboard_screen.h"

namespace {

constexpr std::size_t kTexts = 260;
constexpr std::size_t kLongest = 255;

constexpr const char* kIngredients[] = {"",
                                        "<b>",
                                        "</b>",
                                        "<br/>",
                                        "<item size=9x9 href=x>",
                                        "<a href=\"x\">",
                                        "&amp;",
                                        "&lt;",
                                        "&#x41;",
                                        "&",
                                        "<",
                                        ">",
                                        "\xFF",
                                        "\xC3",
                                        "\x80",
                                        "\xED\xA0\x80",
                                        "\xF4\x90\x80\x80",
                                        "\xF0\x9F\x93",
                                        "\xC0\xAF",
                                        "\xE0\x80\xAF",
                                        "é",
                                        "📺",
                                        "👨‍👩‍👧",
                                        "אבג",
                                        "العربية",
                                        "\u202Eend",
                                        "x\u200B",
                                        "x\uFEFF",
                                        "\uFFFD",
                                        "\x01",
                                        "\x1b[31m",
                                        "a\nb",
                                        "\t",
                                        "\r\n",
                                        "\x7F",
                                        "\xC2\x85",
                                        "%s",
                                        "%n%n%n%n",
                                        "%99999999d",
                                        "{}",
                                        "$(x)`y`",
                                        "\"'\\",
                                        " ",
                                        "  a  b  ",
                                        ":::",
                                        "fe80::1%eth0",
                                        "2001:db8::1",
                                        "NULL",
                                        "-1",
                                        "Gateway"};

std::string cut(const std::string& text, std::size_t width) {
    return text.substr(0, width);
}

// Each ingredient alone, then as often as overflows the widths of the fields, then all kinds mixed at any length.
std::vector<std::string> hostileTexts() {
    std::vector<std::string> all(std::begin(kIngredients), std::end(kIngredients));
    for (const std::size_t width : {31U, 40U, 64U}) {
        for (const char* ingredient : kIngredients) {
            if (*ingredient == '\0') continue;
            std::string text = "x";
            while (text.size() < width)
                text += ingredient;
            all.push_back(cut(text, width));
        }
    }
    std::mt19937_64 dice(20261123);
    while (all.size() < kTexts) {
        const std::size_t width = dice() % (kLongest + 1);
        std::string text;
        while (text.size() < width)
            text += kIngredients[1 + dice() % (std::size(kIngredients) - 1)];
        all.push_back(cut(text, width));
    }
    return all;
}

std::string inHex(const std::string& text) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        digits.append({kDigits[value / 16], kDigits[value % 16]});
    }
    return digits;
}

// What a field of so many bytes shows of a text.
std::string shown(const std::string& text, std::size_t width) {
    return showableText(cut(text, width - 1));
}

std::string showAll(const Network& network, const std::string& text, std::size_t number) {
    const std::string at = std::to_string(number) + ".json\n";
    const SettingsCase& kind = network.name == std::string("Wired") ? kWiredCase : kWirelessCase;
    return beginJourney(network, inHex(text)) + "set-store " + keyOf(kind, "ip_mode") + " \"" + kManual + "\"\n" +
           "set-store " + keyOf(kind, "dns_mode") + " \"" + kManual + "\"\n" + order("text", inHex(text)) +
           "open\nwait 3\ntry expect sane\ndump checking-" + at +
           "expect exactly \"Close\" within 20\nwait 0.1\ntry expect sane\ndump verdict-" + at +
           "try click exactly \"IPv6 settings\"\nwait 0.3\ntry expect sane\ndump rows-" + at +
           "try key Down\ntry key Down\ntry key Down\ntry key Return\nwait 0.3\ntry expect sane\ndump keyboard-" + at +
           endJourney("text");
}

void expectShown(const EnduranceRun& run, const std::string& text, std::size_t number, bool wireless) {
    const std::string at = std::to_string(number) + ".json";
    const std::string what = (wireless ? "wireless " : "wired ") + inHex(text);
    const nlohmann::json verdict = run.host().dump("verdict-" + at);
    const std::string address = shown(text, 40);
    if (text.empty()) {  // without a MAC nothing is known, and there are no settings
        EXPECT_EQ(panelIn(verdict), (Texts{"00:00:00:00:00:00", "::", "0", "::", "::"})) << what;
        return;
    }
    const bool failed = textIn(verdict, kMessagePart).find("ready") == std::string::npos;
    if (failed) {
        // A text that is an address went back to the network on leaving the settings, with the stored prefix length.
        const std::string prefix = panelIn(verdict)[2] == "56" ? "56" : "64";
        EXPECT_EQ(panelIn(verdict), (Texts{shown(text, 32), address, prefix, address, address})) << what;
    }
    if (wireless) {
        const std::string name = shown(text, 255);
        const char* const part = failed ? "PartMain:elm.text.SSID_unset" : "PartMain:elm.text.SSID";
        EXPECT_EQ(textIn(run.host().dump("checking-" + at), "PartMain:elm.text.SSID"), name) << what;
        EXPECT_EQ(textIn(verdict, part), name) << what;
        if (text == "NULL") return;  // that stands for no name, and without one there are no settings
    }
    EXPECT_EQ(valuesIn(run.host().dump("rows-" + at)),
              (Texts{kManualText, address, "56", address, kManualText, address}))
        << what;
    EditedText opened = openedWith(address);
    const std::string withCursor = opened.text.insert(static_cast<std::size_t>(opened.cursor), "|");
    EXPECT_EQ(entryIn(run.host().dump("keyboard-" + at)), withCursor) << what;
}

class HostileText : public testing::TestWithParam<std::size_t> {};

TEST_P(HostileText, IsShownOrReplacedEverywhere) {
    const Network& network = networks()[GetParam()];
    std::vector<std::string> played;
    std::string script;
    const std::vector<std::string> all = hostileTexts();
    for (std::size_t i = 0; i < all.size(); i += everyNth(67)) {
        script += showAll(network, all[i], played.size());
        played.push_back(all[i]);
    }
    const EnduranceRun run(network, script);
    ASSERT_TRUE(run.host().succeeded());
    for (std::size_t i = 0; i < played.size(); ++i)
        expectShown(run, played[i], i, GetParam() == 1);
    std::cout << played.size() << " of " << all.size() << " texts played\n";
}

INSTANTIATE_TEST_SUITE_P(Each, HostileText, testing::Range<std::size_t>(0, 2),
                         [](const auto& test) { return networks()[test.param].name; });

// What the toolkit says of an anchor in a text part that nobody closes.
constexpr const char* kUnclosedAnchor = "eina_stringshare_del() EEEK trying to del non-shared stringshare";

// No catalogue of ours is like that, but nothing may depend on it.
TEST(HostileCatalogue, LeavesAGadgetThatCloses) {
    std::string script;
    const std::vector<std::string> all = hostileTexts();
    for (std::size_t i = 0; i < all.size(); i += everyNth(67)) {
        script += beginJourney(networks()[0], inHex(all[i])) + order("catalogue", inHex(all[i])) +
                  "open\nwait 8\ntry key Right\ntry key Return\nwait 0.3\ntry key Return\nwait 0.3\ntry key Down\n"
                  "try key Return\nwait 0.3\ntry key Down\ntry key Return\nwait 0.3\ntry key 1\ntry key Down\n"
                  "try key Return\nwait 0.3\ntry shot s.png\n" +
                  endJourney("catalogue");
    }
    EXPECT_TRUE(EnduranceRun(networks()[0], script, {}, {kUnclosedAnchor}).host().succeeded());
}

}  // namespace
