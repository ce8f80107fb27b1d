// The editing rules: whatever is opened and typed, text and cursor stay what the entry may hold.
#include <algorithm>
#include <vector>

#include "Common/Outside_Text.h"
#include "View/Keyboard_Editing.h"
#include "fuzz.h"

namespace {

// A text in UTF-8 as its characters, by the length that each first byte tells (RFC 3629, 3).
std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> characters;
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        const std::size_t length = first < 0x80 ? 1 : first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
        fuzz::require(first < 0x80 || (first >= 0xc2 && first < 0xf5), "a character begins", text);
        fuzz::require(text.size() >= length, "no half character", text);
        characters.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return characters;
}

void requireSane(const EditedText& state) {
    const auto characters = charactersOf(state.text);
    fuzz::require(state.text.size() <= 39, "at most 39 bytes", state.text);
    fuzz::require(characterCount(state.text) == static_cast<int>(characters.size()), "each one counted", state.text);
    fuzz::require(state.cursor >= 0 && state.cursor <= static_cast<int>(characters.size()), "cursor in the text",
                  state.text);
    fuzz::require(isFull(state.text) == (state.text.size() == 39), "full at 39 bytes", state.text);
}

std::string joined(const std::vector<std::string>& characters) {
    std::string text;
    for (const std::string& character : characters)
        text += character;
    return text;
}

int within(const EditedText& before) {
    return std::clamp(before.cursor, 0, characterCount(before.text));
}

void type(EditedText& state, char key) {
    const EditedText before = state;
    state = insertCharacter(before.text, before.cursor, key);
    auto expected = charactersOf(before.text);
    if (isFull(before.text)) {
        fuzz::require(state == EditedText{before.text, within(before)}, "a full text stays", state.text);
        return;
    }
    expected.insert(expected.begin() + within(before), std::string(1, key));
    const bool brought = state.text.size() == before.text.size() + 2;
    if (brought) expected.emplace_back(":");
    fuzz::require(state.text == joined(expected), "the key stands at the cursor", state.text);
    fuzz::require(state.cursor == within(before) + (brought ? 2 : 1), "the cursor behind it", state.text);
    const std::string_view typed(state.text.data(), before.text.size() + 1);
    const bool atEnd = within(before) == characterCount(before.text);
    const bool wholeGroup = typed.size() >= 4 && typed.size() < 36 && typed.rfind(':') + 1 <= typed.size() - 4;
    // rfind() + 1 is 0 without a colon: the whole text is then one group.
    fuzz::require(brought == (atEnd && wholeGroup), "a fourth digit at the end, and no other, brings a colon", typed);
}

void erase(EditedText& state) {
    const EditedText before = state;
    state = deleteBeforeCursor(before.text, before.cursor);
    auto expected = charactersOf(before.text);
    const int cursor = within(before);
    if (cursor > 0) expected.erase(expected.begin() + cursor - 1);
    fuzz::require(state == EditedText{joined(expected), std::max(cursor - 1, 0)}, "the character before goes",
                  state.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::string content = input.text(input.byte());
    const EditedText opened = openedWith(content);
    fuzz::require(content.starts_with(opened.text), "opens with a beginning", content);
    insertCharacter(content, 3, 'a');
    deleteBeforeCursor(content, 3);

    EditedText state = openedWith(showableText(content));
    requireSane(state);
    while (!input.empty()) {
        const std::uint8_t key = input.byte();
        if (key < 0x20) {
            state.cursor = key - 8;  // also outside of short texts
        } else if (key >= 0x7f) {
            erase(state);
            requireSane(state);
        } else {
            type(state, static_cast<char>(key));
            requireSane(state);
        }
    }
    state.cursor = characterCount(state.text);
    for (int presses = state.cursor; presses > 0; --presses)
        erase(state);
    fuzz::require(state == EditedText{}, "Backspace empties it", state.text);
    return 0;
}
