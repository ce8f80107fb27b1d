// What a PC keyboard's keys are to the gadget.
#include "host/remote_keys.h"

#include <Ecore_Input.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Pressed {
    const char* keyname;
    const char* key;
    const char* text;
    const char* seenName;
    const char* seenText;
};

class RemoteKeys : public testing::TestWithParam<Pressed> {};

TEST_P(RemoteKeys, AreSeenAs) {
    const Pressed& pressed = GetParam();
    const host::Key key = host::mapKey(pressed.keyname, pressed.key, pressed.text);
    EXPECT_STREQ(key.keyname, pressed.seenName);
    EXPECT_STREQ(key.text, pressed.seenText);
}

INSTANTIATE_TEST_SUITE_P(Table, RemoteKeys,
                         testing::Values(Pressed{"Escape", "Escape", "\x1b", "XF86Back", nullptr},
                                         Pressed{"F10", "F10", nullptr, "Menu", nullptr},
                                         Pressed{"F4", "F4", nullptr, "XF86Close", nullptr},
                                         Pressed{"semicolon", "colon", ":", "colon", ":"},
                                         Pressed{"semicolon", "semicolon", ";", "semicolon", ";"},
                                         Pressed{"KP_End", "KP_1", "1", "KP_End", "1"},
                                         Pressed{"KP_End", "KP_End", nullptr, "KP_End", nullptr},
                                         Pressed{"a", "A", "A", "a", "A"},
                                         Pressed{"Return", "Return", "\r", "Return", "\r"}),
                         [](const auto& row) { return std::string(row.param.keyname) + "As" + row.param.key; });

Eina_Bool note(void* seen, int /*type*/, void* event) {
    static_cast<std::vector<std::string>*>(seen)->push_back(static_cast<Ecore_Event_Key*>(event)->keyname);
    ecore_main_loop_quit();
    return ECORE_CALLBACK_PASS_ON;
}

// As the display's own input reaches the program.
void postKey(const char* keyname) {
    auto* const event = static_cast<Ecore_Event_Key*>(std::calloc(1, sizeof(Ecore_Event_Key)));
    event->keyname = event->key = keyname;
    ecore_event_add(ECORE_EVENT_KEY_DOWN, event, nullptr, nullptr);
}

TEST(KeyboardMapping, RenamesEventsBeforeAnybodyElseSeesThem) {
    ecore_app_no_system_modules();
    ecore_init();
    ecore_event_init();
    std::vector<std::string> seen;
    Ecore_Event_Handler* const handler = ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, note, &seen);
    {
        const host::KeyboardMapping mapping;
        postKey("Escape");
        ecore_main_loop_begin();
    }
    postKey("Escape");
    ecore_main_loop_begin();
    EXPECT_EQ(seen, (std::vector<std::string>{"XF86Back", "Escape"}));
    ecore_event_handler_del(handler);
    ecore_event_shutdown();
    ecore_shutdown();
}

}  // namespace
