// The rules of typing an address: what a key makes of a text and a cursor. No widget is needed to know them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The longest text of the entry in bytes: eight groups of four digits and seven colons.
inline constexpr std::size_t kLongestEntry = 39;

// A text in UTF-8 and the cursor in it: how many characters stand before the cursor.
struct EditedText {
    std::string text;
    int cursor = 0;

    bool operator==(const EditedText&) const = default;
};

// How many characters a text has.
int characterCount(std::string_view text);

// As much of a text as the entry may hold: at most kLongestEntry bytes, the last character whole; the cursor at its
// end.
EditedText openedWith(std::string_view text);

// Whether no further character may be typed.
bool isFull(std::string_view text);

/**
 * Types a character at the cursor. At the end of the text the fourth digit of a group brings its colon along, except
 * in the eighth group.
 * @param cursor characters before the cursor; outside of the text it counts as the nearer end
 * @return the new text and cursor; the old ones when the text is full
 */
EditedText insertCharacter(std::string_view text, int cursor, char character);

/** Deletes the character before the cursor, if there is one. Arguments as above. */
EditedText deleteBeforeCursor(std::string_view text, int cursor);
