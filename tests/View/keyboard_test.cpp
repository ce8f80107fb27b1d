// The keyboard as the user has it: opening, typing, and the ways out of it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "keyboard_screen.h"

namespace {

constexpr const char* kFullBox = "The box is full. You cannot enter any more text.";
constexpr const char* kQuestion = "Discard the text you have entered?";
constexpr const char* kSettingsPopup = "c_popup_l_bottom";
constexpr const char* kSmallPopup = "C_PopupBasic_WhiteBottom";

std::string dumpAs(const std::string& name) {
    return "wait 0.1\ndump " + name + ".json\n";
}

TEST(Keyboard, OpensOnItsRowWithTheCursorAtTheEnd) {
    for (const KeyboardRow& row : kRows) {
        const HostRun run(onKeyboard(row.label, "2001:db8::7", "dump open.json\nquit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json dump = run.dump("open.json");
        EXPECT_EQ(textIn(dump, "elm.text.title_V6"), "IPv6 settings");
        EXPECT_EQ(textIn(dump, "elm.v6.subheading"), row.prompt);
        EXPECT_EQ(entryIn(dump), "2001:db8::7|");
        EXPECT_EQ(focusedKeyIn(dump), kDoneKey);
        EXPECT_EQ(popupIn(dump), "IPv6Keyboard");
        EXPECT_TRUE(dump["rows"].empty()) << "the settings popup is hidden";
    }
}

TEST(Keyboard, WearsItsStyles) {
    for (const bool highContrast : {false, true}) {
        HostSetup setup = onKeyboard("Gateway", "::", "dump open.json\nquit\n");
        setup.store.emplace_back("db/menu/system/accessibility/highcontrast", highContrast ? 1 : 0);
        const HostRun run(setup);
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json dump = run.dump("open.json");
        ASSERT_EQ(dump["buttons"].size(), 23U);
        for (const nlohmann::json& button : dump["buttons"]) {
            std::string style = highContrast ? "button_IPv6_HighC" : "button_textOnly_IPv6";
            if (button["label"] == "Done" || button["label"] == "Cancel") style = "default";
            if (button["label"] == "Delete all") style = highContrast ? "DeleteAll_IPv6_HighC" : "DeleteAll_IPv6";
            if (button["part"] == kBackspaceKey)
                style = highContrast ? "Backspace_button_IPv6_HighC" : "Backspace_button_IPv6";
            EXPECT_EQ(button["style"], style) << button;
            EXPECT_EQ(button["label"] == "", button["part"] == kBackspaceKey) << button;
        }
    }
}

TEST(Keyboard, EachKeyDoesItsWork) {
    struct Step {
        std::string script;
        const char* entry;
        const char* focus;
    };
    const Step steps[] = {
        {clickKey("DeleteAll"), "|", "elm.button.DeleteAll_IPV6"},
        {clickKey("Delete"), "|", kBackspaceKey},
        {clickKey("F") + clickKey("E") + clickKey("8") + clickKey("0"), "fe80:|", "elm.button.0_IPV6"},
        {clickKey("colon"), "fe80::|", "elm.button.colon_IPV6"},
        {clickKey("leftarrow") + clickKey("leftarrow"), "fe80|::", "elm.button.leftarrow_IPV6"},
        {clickKey("9"), "fe809|::", "elm.button.9_IPV6"},
        {clickKey("Delete"), "fe80|::", kBackspaceKey},
        {clickKey("rightarrow"), "fe80:|:", "elm.button.rightarrow_IPV6"},
        {clickKey("rightarrow") + clickKey("rightarrow"), "fe80::|", "elm.button.rightarrow_IPV6"},
        {"key Return\nkey Left\nkey Return\n", "fe80:|:", "elm.button.leftarrow_IPV6"},
        // The remote types where the focus is; Backspace takes it.
        {"key a\nkey 1\n", "fe80:a1|:", "elm.button.leftarrow_IPV6"},
        {"key BackSpace\n", "fe80:a|:", kBackspaceKey},
        {"key A\nkey g\nkey period\nkey KP_1\nkey Tab\nkey XF86Close\n", "fe80:a|:", ""},
        {clickKey("DeleteAll") + "key 1\nkey colon\nkey 2\nkey 3\nkey 4\nkey 5\n", "1:2345:|", ""},
        // A click on the entry moves the cursor and leaves the focus with the keys.
        {clickKey("B") + "click part InputV6_Box.Rect\nwait 0.2\nkey c\n", "1:2345:bc|", "elm.button.B_IPV6"},
    };
    std::string script;
    for (std::size_t i = 0; i < std::size(steps); ++i)
        script += steps[i].script + dumpAs("step" + std::to_string(i));
    const HostRun run(onKeyboard("DNS server", "2001:db8::53", script + "quit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        const nlohmann::json dump = run.dump("step" + std::to_string(i) + ".json");
        EXPECT_EQ(entryIn(dump), steps[i].entry) << "step " << i;
        const std::string focus = *steps[i].focus ? steps[i].focus : focusedKeyIn(dump);
        EXPECT_EQ(focusedKeyIn(dump), focus) << "step " << i;
        EXPECT_NE(focus, "nobody") << "step " << i;
    }
}

TEST(Keyboard, ATextFromOutsideIsNoMarkup) {
    for (const std::string& text : std::vector<std::string>{"<b>1</b>&amp;<br/>", "fe80::%eth0 <x", "100&"}) {
        const HostRun run(onKeyboard("Gateway", text, "dump open.json\nkey 7\n" + dumpAs("typed") + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(entryIn(run.dump("open.json")), text + "|");
        EXPECT_EQ(entryIn(run.dump("typed.json")).substr(0, text.size() + 1), text + "7");
    }
}

TEST(Keyboard, TheFullBoxSaysSoAndKeepsItsText) {
    const std::string whole = kWholeAddress;
    const std::string presses[] = {clickKey("leftarrow") + clickKey("4"), clickKey("4"), "key 4\n"};
    for (const std::string& press : presses) {
        const bool byRemote = press.starts_with("key");
        const HostRun run(onKeyboard("IP address", whole,
                                     press + dumpAs("message") + clickKey("5") +
                                         "key 6\nkey XF86Back\nkey XF86Close\n" + dumpAs("still") + "key Return\n" +
                                         dumpAs("back") + "key BackSpace\nkey 7\n" + dumpAs("typed") + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        const nlohmann::json message = run.dump("message.json");
        EXPECT_EQ(message["popups"].back()["texts"], (Texts{"IPv6 settings", kFullBox, "OK"}));
        EXPECT_EQ(focusIn(message), "OK");
        const nlohmann::json still = run.dump("still.json");
        EXPECT_EQ(popupIn(still), kSmallPopup);
        EXPECT_EQ(still["popups"].size(), message["popups"].size());
        const nlohmann::json back = run.dump("back.json");
        EXPECT_EQ(popupIn(back), "IPv6Keyboard");
        EXPECT_EQ(back["parts"]["InputV6_Box.Rect"]["entry"], whole);
        EXPECT_EQ(focusedKeyIn(back), byRemote ? kDoneKey : "elm.button.4_IPV6");
        if (press.find("arrow") == std::string::npos) {
            EXPECT_EQ(entryIn(run.dump("typed.json")), whole.substr(0, 38) + "7|");
        }
    }
}

TEST(Keyboard, DoneWritesAValidAddressInItsShortForm) {
    struct Case {
        const char* text;
        const char* shown;
    };
    for (const KeyboardRow& row : kRows) {
        for (const Case& example : {Case{"2001:db8::7", "2001:db8::7"}, Case{kWholeAddress, "2001:db8::1"}}) {
            const HostRun run(
                onKeyboard(row.label, example.text, "key Return\nkey Return\nwait 0.3\ndump closed.json\nquit\n"));
            ASSERT_TRUE(run.succeeded()) << run;
            const nlohmann::json closed = run.dump("closed.json");
            // The second Return, in the same moment, finds the row and opens the keyboard anew.
            EXPECT_EQ(isKeyboardOpenIn(closed), true);
            EXPECT_EQ(entryIn(closed), std::string(example.shown) + "|");
        }
    }
}

TEST(Keyboard, DoneExplainsAnInvalidAddressAndKeepsIt) {
    for (const KeyboardRow& row : kRows) {
        const std::string correct = "key BackSpace\nkey 2\n" + clickKey("OK");
        const HostRun run(onKeyboard(row.label, "fe80::1",
                                     "key colon\nkey Return\n" + dumpAs("message") + "click \"OK\"\n" + dumpAs("back") +
                                         correct + dumpAs("row") + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        EXPECT_EQ(run.dump("message.json")["popups"].back()["texts"], (Texts{row.label, row.refusal, "OK"}));
        EXPECT_EQ(entryIn(run.dump("back.json")), "fe80::1:|");
        EXPECT_EQ(focusedKeyIn(run.dump("back.json")), kDoneKey);
        const nlohmann::json settings = run.dump("row.json");
        EXPECT_EQ(popupIn(settings), kSettingsPopup);
        EXPECT_EQ(rowValueIn(settings, row.label), "fe80::12");
        EXPECT_EQ(focusIn(settings), std::string(row.label) + " fe80::12");
    }
}

struct Answer {
    std::string ask;
    std::string answer;
    const char* focus;  // the key's part; empty when the input is discarded
};

void expectAnswered(const Answer& example, const HostRun& run) {
    const nlohmann::json asked = run.dump("asked.json");
    EXPECT_EQ(asked["popups"].back()["texts"], (Texts{"IPv6 settings", kQuestion, "OK", "Cancel"}));
    EXPECT_EQ(focusIn(asked), "OK");
    const nlohmann::json answered = run.dump("answered.json");
    EXPECT_EQ(popupIn(answered), *example.focus ? "IPv6Keyboard" : kSettingsPopup);
    if (*example.focus) {
        EXPECT_EQ(answered["popups"].size(), run.dump("before.json")["popups"].size()) << "one is left behind";
        EXPECT_EQ(entryIn(answered), "fe80::12|");
        EXPECT_EQ(focusedKeyIn(answered), example.focus);
    } else {
        EXPECT_EQ(rowValueIn(answered, "Gateway"), "fe80::1");
        EXPECT_EQ(focusIn(answered), "Gateway fe80::1");
    }
}

TEST(Keyboard, DiscardAsksFirst) {
    const std::string back = "key XF86Back\n";
    const Answer examples[] = {
        {back, back, kDoneKey},
        {back, "click \"Cancel\"\n", kDoneKey},
        {clickKey("Cancel"), "key Right\nkey Return\n", "elm.button.Cancel_IPV6"},
        {"key Up\n" + back, "key Left\nkey Right\nkey Right\nkey Return\n", "elm.button.D_IPV6"},
        {back + back + back, back, kDoneKey},  // in one moment: asked, answered, asked
        {back, "key Return\n", ""},
        {clickKey("Cancel"), "click \"OK\"\n", ""},
    };
    for (const Answer& example : examples) {
        const HostRun run(onKeyboard("Gateway", "fe80::1",
                                     "key 2\n" + dumpAs("before") + example.ask + dumpAs("asked") + example.answer +
                                         dumpAs("answered") + "quit\n"));
        ASSERT_TRUE(run.succeeded()) << run;
        expectAnswered(example, run);
    }
}

TEST(Keyboard, KeysWorkOnceAfterAnyNumberOfPopups) {
    std::string script;
    for (int i = 0; i < 10; ++i)
        script += "key XF86Back\nwait 0.1\nexpect focus \"OK\"\nkey XF86Back\nwait 0.1\n";
    const HostRun run(onKeyboard("Gateway", "fe80::",
                                 script + clickKey("1") + clickKey("leftarrow") + clickKey("2") +
                                     clickKey("rightarrow") + clickKey("3") + clickKey("Delete") + dumpAs("typed") +
                                     clickKey("DeleteAll") + dumpAs("empty") + "quit\n"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(entryIn(run.dump("typed.json")), "fe80::21|");
    EXPECT_EQ(entryIn(run.dump("empty.json")), "|");
}

TEST(Keyboard, MenuClosesTheGadgetInEveryState) {
    const std::string states[] = {"", "key XF86Back\nwait 0.1\n", "key colon\nkey Return\nwait 0.1\n",
                                  "key XF86Back\n"};
    for (const std::string& state : states) {
        const HostRun run(
            onKeyboard("IP address", "fe80::1",
                       state + "key XF86Close\nwait 0.2\nexpect open\nkey Menu\nexpect closed within 1\n"));
        EXPECT_TRUE(run.succeeded()) << state << run;
    }
}

TEST(Keyboard, AnIdleGadgetClosesWithItsKeyboard) {
    for (const std::string& state : std::vector<std::string>{"", "key XF86Back\n"}) {
        const HostRun run(onKeyboard("IP address", "fe80::1",
                                     state + "wait 50\nexpect open\nkey Left\nwait 58\nexpect open\nwait 3\n"
                                             "expect closed\n"));
        EXPECT_TRUE(run.succeeded()) << run;
    }
}

TEST(Keyboard, ThePointerLeavesTheFocusOnTheKeys) {
    // Once the prefix popup has been closed the focus follows the pointer.
    const HostRun run(onKeyboard("Gateway", "fe80::1", R"(
        key XF86Back
        wait 0.1
        key Return
        wait 0.2
        click "Prefix length"
        wait 0.3
        key Return
        wait 0.3
        click "Gateway"
        wait 0.3
        click part elm.button.5_IPV6
        wait 0.1
        click part elm.text.title_V6
        wait 0.2
        key 6
        wait 0.1
        dump typed.json
        quit
    )"));
    ASSERT_TRUE(run.succeeded()) << run;
    EXPECT_EQ(entryIn(run.dump("typed.json")), "fe80::156|");
    EXPECT_EQ(focusedKeyIn(run.dump("typed.json")), "elm.button.5_IPV6");
}

}  // namespace
