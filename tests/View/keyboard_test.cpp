// The keyboard as the user has it: opening, typing, and the ways out of it.
#include <gtest/gtest.h>

#include <string>

#include "keyboard_screen.h"

namespace {

constexpr const char* kWholeAddress = "2001:0db8:0000:0000:0000:0000:0000:0001";

// A manual configuration has this text in all three rows; the script begins on the row's open keyboard.
HostSetup onKeyboard(const std::string& row, const std::string& value, const std::string& script) {
    return onSettings(kWiredCase, {kManual, kManual, {value, "64", value, value}},
                      "click \"" + row + "\"\nwait 0.3\nexpect focus exactly \"Done\"\n" + script);
}

// Clicks keys by what their parts are named after, between bars.
std::string clickKeys(std::string_view names) {
    std::string script;
    for (const std::string& name : listed(names))
        script += "click part elm.button." + name + "_IPV6\nwait 0.1\n";
    return script;
}

std::string dumpAs(const std::string& name) {
    return "wait 0.1\ndump " + name + ".json\n";
}

TEST(Keyboard, OpensOnItsRowAndRefusesWhatIsNoAddress) {
    constexpr const char* kRows[][3] = {
        {"IP address", "Enter the IP address.",
         "This is not a valid IPv6 address. Check that it does not begin or end with a colon."},
        {"Gateway", "Enter the gateway address.",
         "This is not a valid gateway address. Check that it does not begin or end with a colon."},
        {"DNS server", "Enter the DNS server address.",
         "This is not a valid DNS server address. Check that it does not begin or end with a colon."},
    };
    for (const auto& [label, prompt, refusal] : kRows) {
        const HostRun run(onKeyboard(
            label, "2001:db8::7",
            std::string("expect exactly \"IPv6 settings\"\nexpect exactly \"") + prompt + "\"\n" + dumpAs("open") +
                "key colon\nkey Return\nwait 0.1\nexpect focus exactly \"OK\"\nexpect exactly \"" + label +
                "\"\nexpect exactly \"" + refusal + "\"\nclick \"OK\"\nwait 0.1\nexpect focus exactly \"Done\"\n" +
                dumpAs("back") + "key BackSpace\nkey 8\n" + clickKeys("OK") + "wait 0.3\nexpect focus exactly \"" +
                label + " 2001:db8::78\"\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json open = run.dump("open.json");
        EXPECT_EQ(entryIn(open), "2001:db8::7|");
        EXPECT_EQ(popupsIn(open).back(), "IPv6Keyboard");
        EXPECT_TRUE(open["rows"].empty()) << "the settings popup is hidden";
        EXPECT_EQ(entryIn(run.dump("back.json")), "2001:db8::7:|");
    }
}

TEST(Keyboard, DoneWritesTheShortForm) {
    // The second Return, in the same moment, finds the row and opens the keyboard anew.
    const nlohmann::json dump = endOf(onKeyboard("Gateway", kWholeAddress, "key Return\nkey Return\nwait 0.3\n"));
    EXPECT_EQ(entryIn(dump), "2001:db8::1|");
}

TEST(Keyboard, WearsItsStyles) {
    for (const bool highContrast : {false, true}) {
        HostSetup setup = onKeyboard("Gateway", "::", "");
        setup.store.emplace_back("db/menu/system/accessibility/highcontrast", highContrast ? 1 : 0);
        const nlohmann::json dump = endOf(setup);
        ASSERT_EQ(dump["buttons"].size(), 23U);
        for (const nlohmann::json& button : dump["buttons"]) {
            const bool isBackspace = button["part"] == "elm.button.Delete_IPV6";
            std::string style = highContrast ? "button_IPv6_HighC" : "button_textOnly_IPv6";
            if (button["label"] == "Done" || button["label"] == "Cancel") style = "default";
            if (button["label"] == "Delete all") style = highContrast ? "DeleteAll_IPv6_HighC" : "DeleteAll_IPv6";
            if (isBackspace) style = highContrast ? "Backspace_button_IPv6_HighC" : "Backspace_button_IPv6";
            EXPECT_EQ(button["style"], style) << button;
            EXPECT_EQ(button["label"] == "", isBackspace) << button;
        }
    }
}

TEST(Keyboard, EachKeyDoesItsWork) {
    const struct {
        std::string script;
        const char* entry;
        const char* focus;
    } steps[] = {
        {clickKeys("DeleteAll"), "|", "Delete all"},
        {clickKeys("Delete"), "|", ""},
        {clickKeys("1|2|3|4|5|6|7|8|9|0|A|B|C|D|E|F"), "1234:5678:90ab:cdef:|", "F"},
        {clickKeys("colon"), "1234:5678:90ab:cdef::|", ":"},
        {clickKeys("leftarrow|leftarrow"), "1234:5678:90ab:cdef|::", "<"},
        {clickKeys("9"), "1234:5678:90ab:cdef9|::", "9"},
        {clickKeys("Delete"), "1234:5678:90ab:cdef|::", ""},
        {clickKeys("rightarrow"), "1234:5678:90ab:cdef:|:", ">"},
        {clickKeys("rightarrow|rightarrow"), "1234:5678:90ab:cdef::|", ">"},
        {"key Return\nkey Left\nkey Return\n", "1234:5678:90ab:cdef:|:", "<"},
        // The remote types where the focus is; Backspace takes it.
        {"key a\nkey 1\n", "1234:5678:90ab:cdef:a1|:", "<"},
        {"key BackSpace\n", "1234:5678:90ab:cdef:a|:", ""},
        {"key A\nkey g\nkey period\nkey KP_1\nkey XF86Close\n", "1234:5678:90ab:cdef:a|:", ""},
        {clickKeys("DeleteAll") + "key 1\nkey colon\nkey 2\nkey 3\nkey 4\nkey 5\n", "1:2345:|", "Delete all"},
        // A click on the entry moves the cursor and leaves the focus with the keys.
        {clickKeys("B") + "click part InputV6_Box.Rect\nwait 0.2\nkey c\n", "1:2345:bc|", "B"},
    };
    std::string script;
    for (std::size_t i = 0; i < std::size(steps); ++i)
        script += steps[i].script + dumpAs("step" + std::to_string(i)) + "expect sane\n";
    const HostRun run(onKeyboard("DNS server", "2001:db8::53", script + "quit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        const nlohmann::json dump = run.dump("step" + std::to_string(i) + ".json");
        EXPECT_EQ(entryIn(dump), steps[i].entry) << "step " << i;
        EXPECT_EQ(focusIn(dump), steps[i].focus) << "step " << i;
    }
}

TEST(Keyboard, ATextFromOutsideIsNoMarkup) {
    const std::string text = "<b>1</b>&amp;%eth0<br/>";
    EXPECT_EQ(entryIn(endOf(onKeyboard("Gateway", text, "key 7\nwait 0.1\n"))).substr(0, text.size() + 1), text + "7");
}

TEST(Keyboard, TheFullBoxSaysSoAndKeepsItsText) {
    const std::string whole = kWholeAddress;
    const std::pair<std::string, const char*> presses[] = {{clickKeys("4"), "4"}, {"key 4\n", "Done"}};
    const std::string message =
        "wait 0.1\nexpect focus exactly \"OK\"\nexpect exactly \"The box is full. You cannot enter any more text.\"\n";
    for (const auto& [press, focus] : presses) {
        const HostRun run(onKeyboard("IP address", whole,
                                     press + message + clickKeys("5") + "key 6\nkey XF86Back\nkey XF86Close\n" +
                                         message + "key Return\n" + dumpAs("back") + "expect-gone \"The box\"\n" +
                                         "expect focus exactly \"" + focus + "\"\nkey BackSpace\nkey 7\n" +
                                         dumpAs("typed") + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(entryIn(run.dump("back.json")), whole + "|");
        EXPECT_EQ(entryIn(run.dump("typed.json")), whole.substr(0, 38) + "7|");
    }
}

TEST(Keyboard, DiscardAsksFirst) {
    const std::string back = "key XF86Back\n";
    const struct {
        std::string ask;
        std::string answer;
        const char* entry;
        const char* focus;
    } answers[] = {
        {back, back, "fe80::12|", "Done"},
        {back, "click \"Cancel\"\n", "fe80::12|", "Done"},
        {clickKeys("Cancel"), "key Right\nkey Return\n", "fe80::12|", "Cancel"},
        {"key Up\n" + back, "key Left\nkey Right\nkey Right\nkey Return\n", "fe80::12|", "D"},
        {back + back + back, back, "fe80::12|", "Done"},  // in one moment: asked, answered, asked
        {back, "key Return\n", "no keyboard", "Gateway fe80::1"},
        {clickKeys("Cancel"), "click \"OK\"\n", "no keyboard", "Gateway fe80::1"},
    };
    const std::string question = "Discard the text you have entered?";
    for (const auto& [ask, answer, entry, focus] : answers) {
        const nlohmann::json answered =
            endOf(onKeyboard("Gateway", "fe80::1",
                             "key 2\n" + ask + "wait 0.1\nexpect focus exactly \"OK\"\nexpect exactly \"" + question +
                                 "\"\n" + answer + "wait 0.1\nexpect-gone \"" + question + "\"\nexpect sane\n"));
        EXPECT_EQ(entryIn(answered), entry) << ask << answer;
        EXPECT_EQ(focusIn(answered), focus) << ask << answer;
    }
}

TEST(Keyboard, KeysWorkOnceAfterAnyNumberOfPopups) {
    std::string script;
    for (int i = 0; i < 10; ++i)
        script += "key XF86Back\nwait 0.1\nexpect focus \"OK\"\nkey XF86Back\nwait 0.1\n";
    script += clickKeys("1|leftarrow|2|rightarrow|3|Delete");
    EXPECT_EQ(entryIn(endOf(onKeyboard("Gateway", "fe80::", script))), "fe80::21|");
}

TEST(Keyboard, MenuClosesTheGadgetInEveryStateAndSoDoesAMinuteWithoutInput) {
    const std::string menu = "key XF86Close\nwait 0.2\nexpect open\nkey Menu\nexpect closed within 1\n";
    const std::string idle = "wait 50\nexpect open\nkey Left\nwait 58\nexpect open\nwait 3\nexpect closed\n";
    for (const std::string& script :
         {menu, "key XF86Back\nwait 0.1\n" + menu, "key colon\nkey Return\nwait 0.1\n" + menu, "key XF86Back\n" + menu,
          idle, "key XF86Back\n" + idle}) {
        const HostRun run(onKeyboard("IP address", "fe80::1", script));
        EXPECT_TRUE(run.succeeded()) << run;
    }
}

TEST(Keyboard, ThePointerLeavesTheFocusOnTheKeys) {
    // Once the prefix popup has been closed the focus follows the pointer.
    const nlohmann::json dump = endOf(onKeyboard(
        "Gateway", "fe80::1",
        "key XF86Back\nwait 0.1\nkey Return\nwait 0.2\n"
        "click \"Prefix length\"\nwait 0.3\nkey Return\nwait 0.3\n"
        "click \"Gateway\"\nwait 0.3\n" +
            clickKeys("5") + "click \"D\"\nwait 0.1\nclick part elm.text.title_V6\nwait 0.2\nkey 6\nwait 0.1\n"));
    EXPECT_EQ(entryIn(dump), "fe80::15d6:|");
    EXPECT_EQ(focusIn(dump), "D");
}

}  // namespace
