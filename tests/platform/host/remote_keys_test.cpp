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

TEST(RemoteKeys, AreSeenAs) {
    const Pressed kPressed[] = {
        {"Escape", "Escape", "\x1b", "XF86Back", nullptr}, {"F10", "F10", nullptr, "Menu", nullptr},
        {"F4", "F4", nullptr, "XF86Close", nullptr},       {"semicolon", "colon", ":", "colon", ":"},
        {"semicolon", "semicolon", ";", "semicolon", ";"}, {"KP_End", "KP_1", "1", "KP_End", "1"},
        {"KP_End", "KP_End", nullptr, "KP_End", nullptr},  {"a", "A", "A", "a", "A"},
    };
    for (const auto& [keyname, key, text, seenName, seenText] : kPressed) {
        const host::Key seen = host::mapKey(keyname, key, text);
        EXPECT_STREQ(seen.keyname, seenName) << key;
        EXPECT_STREQ(seen.text, seenText) << key;
    }
}

Eina_Bool note(void* seen, int /*type*/, void* event) {
    static_cast<std::vector<std::string>*>(seen)->push_back(static_cast<Ecore_Event_Key*>(event)->keyname);
    ecore_main_loop_quit();
    return ECORE_CALLBACK_PASS_ON;
}

// As the display's own input reaches the program.
void postEscape() {
    auto* const event = static_cast<Ecore_Event_Key*>(std::calloc(1, sizeof(Ecore_Event_Key)));
    event->keyname = event->key = "Escape";
    ecore_event_add(ECORE_EVENT_KEY_DOWN, event, nullptr, nullptr);
    ecore_main_loop_begin();
}

TEST(KeyboardMapping, RenamesEventsBeforeAnybodyElseSeesThem) {
    ecore_app_no_system_modules();
    ecore_event_init();
    std::vector<std::string> seen;
    Ecore_Event_Handler* const handler = ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, note, &seen);
    {
        const host::KeyboardMapping mapping;
        postEscape();
    }
    postEscape();
    EXPECT_EQ(seen, (std::vector<std::string>{"XF86Back", "Escape"}));
    ecore_event_handler_del(handler);
    ecore_event_shutdown();
}

}  // namespace
