// What a key makes of a text and a cursor.
#include "View/Keyboard_Editing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr const char* kSevenGroups = "2001:0db8:0000:0000:0000:0000:0000:";
const std::string kWhole = std::string(kSevenGroups) + "00ab";

struct Step {
    std::string text;
    int cursor;
    char typed;
    EditedText expected;
};

TEST(KeyboardEditing, Insert) {
    const Step steps[] = {
        {"", 0, '2', {"2", 1}},
        {"200", 3, '1', {"2001:", 5}},
        {"2001:0db", 8, '8', {"2001:0db8:", 10}},
        {"2001:0db8", 2, 'f', {"20f01:0db8", 3}},
        {"201", 2, '0', {"2001", 3}},  // inside the text no colon comes along
        {"20:0", 4, '1', {"20:01", 5}},
        {"20:01a", 6, 'b', {"20:01ab:", 8}},
        {"fe8", 3, ':', {"fe8:", 4}},
        {"fe80:", 5, ':', {"fe80::", 6}},
        {"fe80::", 0, 'a', {"afe80::", 1}},
        {"12345", 5, '6', {"123456:", 7}},
        {"2001:0db8:0000:0000:0000:0000:000", 33, '0', {kSevenGroups, 35}},
        {"2001:0db8:0000:0000:0000:0000:0000:00a", 38, 'b', {kWhole, 39}},
        {"12345:0db8:0000:0000:0000:0000:0000", 35, 'a', {"12345:0db8:0000:0000:0000:0000:0000a", 36}},
        {kWhole, 39, '1', {kWhole, 39}},
        {kWhole, 3, '1', {kWhole, 3}},
        // What no keyboard types but a store may hold: characters of several bytes.
        {"aé", 1, 'b', {"abé", 2}},
        {"é", 1, 'b', {"éb", 2}},
        {"é", 0, 'b', {"bé", 1}},
        // A cursor outside the text.
        {"20", -5, '1', {"120", 1}},
        {"20", 99, '1', {"201", 3}},
    };
    for (const Step& step : steps) {
        const EditedText edited = insertCharacter(step.text, step.cursor, step.typed);
        EXPECT_EQ(edited.text, step.expected.text) << step.text << " at " << step.cursor;
        EXPECT_EQ(edited.cursor, step.expected.cursor) << step.text << " at " << step.cursor;
    }
}

TEST(KeyboardEditing, Backspace) {
    const Step steps[] = {
        {"", 0, 0, {"", 0}},         {"2001:", 5, 0, {"2001", 4}}, {"2001:0db8", 3, 0, {"201:0db8", 2}},
        {"2001", 0, 0, {"2001", 0}}, {"2001", 1, 0, {"001", 0}},   {kWhole, 39, 0, {kWhole.substr(0, 38), 38}},
        {"aéb", 2, 0, {"ab", 1}},    {"20", 99, 0, {"2", 1}},      {"20", -1, 0, {"20", 0}},
    };
    for (const Step& step : steps)
        EXPECT_EQ(deleteBeforeCursor(step.text, step.cursor), step.expected) << step.text << " at " << step.cursor;
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

// The rules once more, for ASCII, in other words: the digits since the last colon are counted backwards.
EditedText byTheRules(EditedText before, char typed) {
    if (before.text.size() == 39) return before;
    const bool atEnd = before.cursor == static_cast<int>(before.text.size());
    before.text = before.text.substr(0, static_cast<std::size_t>(before.cursor)) + typed +
                  before.text.substr(static_cast<std::size_t>(before.cursor));
    ++before.cursor;
    const auto digits = std::find(before.text.rbegin(), before.text.rend(), ':') - before.text.rbegin();
    if (!atEnd || digits < 4 || before.text.size() >= 36) return before;
    return {before.text + ":", before.cursor + 1};
}

TEST(KeyboardEditing, RandomKeysKeepTheRules) {
    std::mt19937 random(20011);
    const std::string keys = "0123456789abcdef:::<<<>>>-------";  // arrows, and Backspace as minus
    for (int run = 0; run < 200; ++run) {
        EditedText state;
        for (int press = 0; press < 200; ++press) {
            const char key = keys[random() % keys.size()];
            const EditedText before = state;
            const int size = static_cast<int>(before.text.size());
            if (key == '<' || key == '>') {
                state.cursor = std::clamp(state.cursor + (key == '<' ? -1 : 1), 0, size);
            } else if (key == '-') {
                state = deleteBeforeCursor(before.text, before.cursor);
                ASSERT_EQ(state.text.size(), before.text.size() - (before.cursor > 0 ? 1U : 0U));
            } else {
                state = insertCharacter(before.text, before.cursor, key);
                ASSERT_EQ(state, byTheRules(before, key)) << before.text << " at " << before.cursor << " key " << key;
                EditedText undone = state;
                while (before.cursor == size && undone.text.size() > before.text.size())
                    undone = deleteBeforeCursor(undone.text, undone.cursor);
                ASSERT_TRUE(before.cursor != size || undone == before) << before.text;
            }
            ASSERT_LE(state.text.size(), 39U);
            ASSERT_GE(state.cursor, 0);
            ASSERT_LE(state.cursor, static_cast<int>(state.text.size()));
        }
    }
}

TEST(KeyboardEditing, EightGroupsFillTheBoxWithoutATypedColon) {
    EditedText state;
    for (int digit = 0; digit < 32; ++digit)
        state = insertCharacter(state.text, state.cursor, "0123456789abcdef"[digit % 16]);
    EXPECT_EQ(state, (EditedText{"0123:4567:89ab:cdef:0123:4567:89ab:cdef", 39}));
    EXPECT_TRUE(isFull(state.text));
}

}  // namespace
