#include "View/Keyboard_Handlers.h"

#include <Elementary.h>

#include <string>

#include "Common/Log.h"
#include "Common/Memory_Limit.h"
#include "Common/Resources.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/Keyboard_Editing.h"
#include "View/Keyboard_Entry.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Popups.h"

namespace {

// While it lives the button is without the focus.
class FocusPause {
  public:
    explicit FocusPause(Evas_Object* button) : button_(button) { give(EINA_FALSE); }
    ~FocusPause() { give(EINA_TRUE); }
    FocusPause(const FocusPause&) = delete;
    FocusPause& operator=(const FocusPause&) = delete;

  private:
    void give(Eina_Bool focus) const {
        if (button_) elm_object_focus_set(button_, focus);
    }

    Evas_Object* button_;
};

constexpr char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// NUL when there is none.
char typedCharacter(const Evas_Object* button, const void* event) {
    const char* const text = button ? elm_object_text_get(button) : static_cast<const char*>(event);
    if (!text) return '\0';
    return button ? lowerCase(text[0]) : text[0];
}

void sayBoxIsFull(custKeyboard& keyboard, const std::string& text) {
    LOG_DEBUG("INPUT BOX LIMIT FULL || Charecter count =%d\n", static_cast<int>(text.size()));
    showPopup(&keyboard, localised("TV_SID_IPV6_SETTINGS"),
              localised("TV_SID_THE_BOX_IS_FULL_YOU_CANT_ENTER_ANY_MORE_TEXT"));
}

// The keyboard of a handler's call; null when the call is incomplete.
const custKeyboard* keyboardOf(const void* data, const Evas_Object* button) {
    if (data && button) return static_cast<const custKeyboard*>(data);
    LOG_DEBUG("function parameter is NULL\n");
    return nullptr;
}

void moveCursor(const void* data, Evas_Object* button, Eina_Bool (*move)(Evas_Object*), const char* whither) {
    resetFlag();
    const custKeyboard* const keyboard = keyboardOf(data, button);
    if (!keyboard || !keyboard->en) return;
    const FocusPause pause(button);
    LOG_DEBUG("Currnet cursor Position== %d\n", entryCursor(keyboard->en));
    move(keyboard->en);
    LOG_DEBUG("Currnet cursor Position After %s Shift== %d\n", whither, entryCursor(keyboard->en));
}

void type(custKeyboard& keyboard, Evas_Object* button, const void* event) {
    const std::string text = entryText(keyboard.en);
    if (isFull(text)) return sayBoxIsFull(keyboard, text);
    const char character = typedCharacter(button, event);
    if (character == '\0') return;
    const FocusPause pause(button);
    const EditedText edited = insertCharacter(text, entryCursor(keyboard.en), character);
    LOG_DEBUG("%s\n", edited.text.size() > text.size() + 1 ? "colon added" : "No colon added");
    showInEntry(keyboard.en, edited);
}

void logWhatGoes(const custKeyboard& keyboard) {
    LOG_DEBUG("Existing Data %s\n", entryText(keyboard.en).c_str());
}

void deleteOne(const custKeyboard& keyboard) {
    const std::string text = entryText(keyboard.en);
    LOG_DEBUG("Initial String %s\n", text.c_str());
    const int cursor = entryCursor(keyboard.en);
    if (cursor == 0) {
        LOG_DEBUG("cursorPos value is 0, exiting\n");
        return;
    }
    showInEntry(keyboard.en, deleteBeforeCursor(text, cursor));
}

}  // namespace

void appendString_cb(void* data, Evas_Object* button, void* event) {
    LOG_SCOPE();
    resetFlag();
    auto* const keyboard = static_cast<custKeyboard*>(data);
    if (!keyboard) {
        LOG_DEBUG("Data Argument casting NULL for cCustKeyboard of * to  sCustKeyboard\n");
        return;
    }
    unlessOutOfMemory([&] { type(*keyboard, button, event); });
}

void back_Btn_cb(void* data, Evas_Object* button, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    const custKeyboard* const keyboard = keyboardOf(data, button);
    if (!keyboard) return;
    const FocusPause pause(button);
    unlessOutOfMemory([&] { deleteOne(*keyboard); });
}

void deleteAll_Btn_cb(void* data, Evas_Object* button, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    const custKeyboard* const keyboard = keyboardOf(data, button);
    if (!keyboard) return;
    const FocusPause pause(button);
    unlessOutOfMemory([&] { logWhatGoes(*keyboard); });
    showInEntry(keyboard->en, {});
}

void cursorLeft_cb(void* data, Evas_Object* button, void* /*event*/) {
    LOG_SCOPE();
    moveCursor(data, button, elm_entry_cursor_prev, "Left");
}

void cursorRight_cb(void* data, Evas_Object* button, void* /*event*/) {
    LOG_SCOPE();
    moveCursor(data, button, elm_entry_cursor_next, "Right");
}
