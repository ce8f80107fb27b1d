// What a key makes of a text and a cursor.
#include "View/Keyboard_Editing.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kSevenGroups = "2001:0db8:0000:0000:0000:0000:0000:";
const std::string kWhole = std::string(kSevenGroups) + "00ab";

constexpr char kBackspace = '\b';

struct Step {
    std::string text;
    int cursor;
    char key;
    EditedText expected;
};

const Step kSteps[] = {
    {"", 0, '2', {"2", 1}},
    {"200", 3, '1', {"2001:", 5}},
    {"2001:0db8", 2, 'f', {"20f01:0db8", 3}},
    {"201", 2, '0', {"2001", 3}},  // inside the text no colon comes along
    {"20:01a", 6, 'b', {"20:01ab:", 8}},
    {"fe8", 3, ':', {"fe8:", 4}},
    {"fe80::", 0, 'a', {"afe80::", 1}},
    {"12345", 5, '6', {"123456:", 7}},
    {"2001:0db8:0000:0000:0000:0000:000", 33, '0', {kSevenGroups, 35}},
    {"2001:0db8:0000:0000:0000:0000:0000:00a", 38, 'b', {kWhole, 39}},
    {"12345:0db8:0000:0000:0000:0000:0000", 35, 'a', {"12345:0db8:0000:0000:0000:0000:0000a", 36}},
    {kWhole, 39, '1', {kWhole, 39}},
    {kWhole, 3, '1', {kWhole, 3}},
    {"", 0, kBackspace, {"", 0}},
    {"2001:0db8", 3, kBackspace, {"201:0db8", 2}},
    {"2001", 0, kBackspace, {"2001", 0}},
    {kWhole, 39, kBackspace, {kWhole.substr(0, 38), 38}},
    // What no keyboard types but a store may hold: characters of several bytes.
    {"aé", 1, 'b', {"abé", 2}},
    {"é", 1, 'b', {"éb", 2}},
    {"aéb", 2, kBackspace, {"ab", 1}},
    // A cursor outside the text.
    {"20", -5, '1', {"120", 1}},
    {"20", 99, '1', {"201", 3}},
    {"20", -1, kBackspace, {"20", 0}},
    {"20", 99, kBackspace, {"2", 1}},
};

TEST(KeyboardEditing, KeysInsertOrDeleteAtTheCursor) {
    for (const Step& step : kSteps) {
        const EditedText edited = step.key == kBackspace ? deleteBeforeCursor(step.text, step.cursor)
                                                         : insertCharacter(step.text, step.cursor, step.key);
        EXPECT_EQ(edited.text, step.expected.text) << step.text << " at " << step.cursor;
        EXPECT_EQ(edited.cursor, step.expected.cursor) << step.text << " at " << step.cursor;
    }
}

TEST(KeyboardEditing, OpensWithWhatFits) {
    EXPECT_EQ(openedWith("::"), (EditedText{"::", 2}));
    EXPECT_EQ(openedWith(kWhole), (EditedText{kWhole, 39}));
    EXPECT_EQ(openedWith(kWhole + "99"), (EditedText{kWhole, 39}));
    EXPECT_EQ(openedWith(std::string(38, 'a') + "é"), (EditedText{std::string(38, 'a'), 38})) << "no half characters";
    EXPECT_EQ(openedWith(std::string(37, 'a') + "é9").cursor, 38);
    EXPECT_FALSE(isFull(kWhole.substr(1)));
    EXPECT_TRUE(isFull(kWhole));
}

}  // namespace
