// What a PC keyboard's keys are to the gadget.
#include "host/remote_keys.h"

#include <gtest/gtest.h>

#include <string>

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
                                         Pressed{"KP_End", "KP_1", "1", "KP_1", "1"},
                                         Pressed{"KP_End", "KP_End", nullptr, "KP_End", nullptr},
                                         Pressed{"a", "A", "A", "a", "A"},
                                         Pressed{"Return", "Return", "\r", "Return", "\r"}),
                         [](const auto& row) { return std::string(row.param.keyname) + "As" + row.param.key; });

}  // namespace
