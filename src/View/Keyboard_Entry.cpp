#include "View/Keyboard_Entry.h"

#include <Elementary.h>

#include "Common/Log.h"
#include "Common/Memory_Limit.h"
#include "Common/Outside_Text.h"
#include "Common/Text.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/Keyboard_Focus.h"

namespace {

constexpr const char* kEntryStyle = "C_Inputfield_White";
constexpr const char* kEntryPart = "InputV6_Box.Rect";

constinit Elm_Entry_Filter_Limit_Size limit_filter_data{.max_char_count = kLongestEntry, .max_byte_count = 0};

// The caret always shows where a key types, though the focus is on the keys.
void showCaret(Evas_Object* entry) {
    elm_object_signal_emit(entry, "elm,action,focus", "elm");
}

// A click on the entry moves the cursor. The focus stays with the keys: the entry itself would type by rules of its
// own.
void leaveFocusToKeys(void* data, Evas_Object* /*entry*/, void* /*event*/) {
    focusLastKey(*static_cast<const custKeyboard*>(data));
}

void keepCaret(void* /*data*/, Evas_Object* entry, void* /*event*/) {
    showCaret(entry);
}

void applyEntryRules(Evas_Object* entry) {
    elm_entry_single_line_set(entry, EINA_TRUE);
    elm_entry_prediction_allow_set(entry, EINA_FALSE);
    elm_entry_scrollable_set(entry, EINA_FALSE);
    elm_entry_input_panel_enabled_set(entry, EINA_FALSE);
    elm_object_focus_allow_set(entry, EINA_TRUE);
}

}  // namespace

void addEntry(custKeyboard& keyboard, const char* content) {
    Evas_Object* const entry = elm_entry_add(keyboard.IME_Password_bg);
    keyboard.en = entry;
    if (!entry) {
        LOG_DEBUG("cCustKeyboard->en is NULL\n");
        return;
    }
    elm_object_style_set(entry, kEntryStyle);
    elm_object_part_content_set(keyboard.IME_Password_bg, kEntryPart, entry);
    applyEntryRules(entry);
    elm_entry_entry_set(entry, "");
    EditedText opened;
    unlessOutOfMemory([&] { opened = openedWith(showableText(content ? content : "")); });
    showInEntry(entry, opened);
    elm_entry_cursor_end_set(entry);
    showCaret(entry);
    elm_entry_cursor_pos_set(entry, opened.cursor);
    elm_entry_markup_filter_append(entry, elm_entry_filter_limit_size, &limit_filter_data);
    evas_object_smart_callback_add(entry, "focused", leaveFocusToKeys, &keyboard);
    evas_object_smart_callback_add(entry, "unfocused", keepCaret, nullptr);
}

void disconnectEntry(const custKeyboard& keyboard) {
    if (keyboard.en) evas_object_smart_callback_del(keyboard.en, "focused", leaveFocusToKeys);
}

std::string entryText(const Evas_Object* entry) {
    const char* const markup = entry ? elm_entry_entry_get(entry) : nullptr;
    const PlatformText text(markup ? elm_entry_markup_to_utf8(markup) : nullptr);
    return text ? text.get() : "";
}

int entryCursor(const Evas_Object* entry) {
    return entry ? elm_entry_cursor_pos_get(entry) : 0;
}

void showInEntry(Evas_Object* entry, const EditedText& edited) {
    if (!entry) return;
    const PlatformText markup(elm_entry_utf8_to_markup(edited.text.c_str()));
    elm_entry_entry_set(entry, markup ? markup.get() : "");
    elm_entry_cursor_pos_set(entry, edited.cursor);
}
