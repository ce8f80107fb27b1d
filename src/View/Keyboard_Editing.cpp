#include "View/Keyboard_Editing.h"

#include <algorithm>

namespace {

constexpr std::size_t kGroupDigits = 4;
constexpr std::size_t kLongestWithSeparator = 35;  // a longer text has its eighth group under way

constexpr bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// Where a character begins in the text: its first byte, or the text's end.
std::size_t byteOf(std::string_view text, int character) {
    std::size_t byte = 0;
    for (int seen = 0; byte < text.size(); ++byte) {
        if (startsCharacter(text[byte]) && seen++ == character) break;
    }
    return byte;
}

int withinText(std::string_view text, int cursor) {
    return std::clamp(cursor, 0, characterCount(text));
}

bool endsInWholeGroup(std::string_view text) {
    return text.size() >= kGroupDigits && text.substr(text.size() - kGroupDigits).find(':') == std::string_view::npos;
}

}  // namespace

int characterCount(std::string_view text) {
    return static_cast<int>(std::ranges::count_if(text, startsCharacter));
}

EditedText openedWith(std::string_view text) {
    std::size_t length = std::min(text.size(), kLongestEntry);
    while (length > 0 && length < text.size() && !startsCharacter(text[length]))
        --length;
    const std::string_view kept = text.substr(0, length);
    return {std::string(kept), characterCount(kept)};
}

bool isFull(std::string_view text) {
    return text.size() >= kLongestEntry;
}

EditedText insertCharacter(std::string_view text, int cursor, char character) {
    EditedText edited{std::string(text), withinText(text, cursor)};
    if (isFull(text)) return edited;
    const std::size_t place = byteOf(text, edited.cursor);
    edited.text.insert(place, 1, character);
    ++edited.cursor;
    const bool atEnd = place == text.size();
    if (!atEnd || edited.text.size() > kLongestWithSeparator || !endsInWholeGroup(edited.text)) return edited;
    edited.text += ':';
    ++edited.cursor;
    return edited;
}

EditedText deleteBeforeCursor(std::string_view text, int cursor) {
    EditedText edited{std::string(text), withinText(text, cursor)};
    if (edited.cursor == 0) return edited;
    const std::size_t end = byteOf(text, edited.cursor);
    const std::size_t begin = byteOf(text, --edited.cursor);
    edited.text.erase(begin, end - begin);
    return edited;
}
