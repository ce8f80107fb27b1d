#include "View/Keyboard_Keys.h"

#include <Elementary.h>

#include <array>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Memory_Limit.h"
#include "Common/Outside_Text.h"
#include "Common/Resources.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Entry.h"
#include "View/Keyboard_Focus.h"
#include "View/Keyboard_Handlers.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Popups.h"

namespace {

void Ok_Btn_cb(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    const auto* const keyboard = static_cast<const custKeyboard*>(data);
    if (!keyboard) {
        LOG_DEBUG("Data Argument is NULL\n");
        return;
    }
    sipDataSettingChangeVal* const edited = ipDataSettingChangeValObject();
    if (!edited) {
        LOG_DEBUG("IP Data Setting Change Value Object could not be created !!!\n");
        return;
    }
    if (!unlessOutOfMemory([&] { copyText(edited->valueText, openedWith(entryText(keyboard->en)).text); })) return;
    // A valid text closes the keyboard: it is gone after this call.
    if (edited->onResult) edited->onResult(edited->valueText);
}

struct KeyStyle {
    const char* normal;
    const char* highContrast;  // null: a button like any other, in every mode
};
constexpr KeyStyle kCharacterStyle{"button_textOnly_IPv6", "button_IPv6_HighC"};
constexpr KeyStyle kDeleteAllStyle{"DeleteAll_IPv6", "DeleteAll_IPv6_HighC"};
constexpr KeyStyle kBackspaceStyle{"Backspace_button_IPv6", "Backspace_button_IPv6_HighC"};
constexpr KeyStyle kClosingStyle{"default", nullptr};

// Shown as it is, or looked up in the user's language.
struct KeyLabel {
    const char* text;
    bool isTextId = false;
};

struct Key {
    KeyIndex index;
    KeyLabel label;
    const char* part;
    Evas_Smart_Cb clicked;
    KeyStyle style;
    GridCell cell;
};

constexpr std::array<Key, kKeyCount> kKeys{{
    {kKeyA, {"A"}, "elm.button.A_IPV6", appendString_cb, kCharacterStyle, {1, 0}},
    {kKeyB, {"B"}, "elm.button.B_IPV6", appendString_cb, kCharacterStyle, {1, 1}},
    {kKeyC, {"C"}, "elm.button.C_IPV6", appendString_cb, kCharacterStyle, {1, 2}},
    {kKeyD, {"D"}, "elm.button.D_IPV6", appendString_cb, kCharacterStyle, {1, 3}},
    {kKeyE, {"E"}, "elm.button.E_IPV6", appendString_cb, kCharacterStyle, {1, 4}},
    {kKeyF, {"F"}, "elm.button.F_IPV6", appendString_cb, kCharacterStyle, {1, 5}},
    {kKeyLeft, {"<"}, "elm.button.leftarrow_IPV6", cursorLeft_cb, kCharacterStyle, {1, 7}},
    {kKeyRight, {">"}, "elm.button.rightarrow_IPV6", cursorRight_cb, kCharacterStyle, {1, 8}},
    {kKeyDeleteAll,
     {"COM_SID_DELETE_ALL", true},
     "elm.button.DeleteAll_IPV6",
     deleteAll_Btn_cb,
     kDeleteAllStyle,
     {1, 9}},
    {kKey1, {"1"}, "elm.button.1_IPV6", appendString_cb, kCharacterStyle, {0, 0}},
    {kKey2, {"2"}, "elm.button.2_IPV6", appendString_cb, kCharacterStyle, {0, 1}},
    {kKey3, {"3"}, "elm.button.3_IPV6", appendString_cb, kCharacterStyle, {0, 2}},
    {kKey4, {"4"}, "elm.button.4_IPV6", appendString_cb, kCharacterStyle, {0, 3}},
    {kKey5, {"5"}, "elm.button.5_IPV6", appendString_cb, kCharacterStyle, {0, 4}},
    {kKey6, {"6"}, "elm.button.6_IPV6", appendString_cb, kCharacterStyle, {0, 5}},
    {kKey7, {"7"}, "elm.button.7_IPV6", appendString_cb, kCharacterStyle, {0, 6}},
    {kKey8, {"8"}, "elm.button.8_IPV6", appendString_cb, kCharacterStyle, {0, 7}},
    {kKey9, {"9"}, "elm.button.9_IPV6", appendString_cb, kCharacterStyle, {0, 8}},
    {kKey0, {"0"}, "elm.button.0_IPV6", appendString_cb, kCharacterStyle, {0, 9}},
    {kKeyBackspace, {""}, "elm.button.Delete_IPV6", back_Btn_cb, kBackspaceStyle, {0, 10}},
    {kKeyDone, {"COM_SID_DONE", true}, "elm.button.OK_IPV6", Ok_Btn_cb, kClosingStyle, {2, 0}},
    {kKeyCancel, {"SID_CANCEL", true}, "elm.button.Cancel_IPV6", _discard_button_cb, kClosingStyle, {2, 1}},
    {kKeyColon, {":"}, "elm.button.colon_IPV6", appendString_cb, kCharacterStyle, {1, 6}},
}};

consteval bool areInOrder() {
    for (int index = 0; index < kKeyCount; ++index) {
        if (kKeys[static_cast<std::size_t>(index)].index != index) return false;
    }
    return true;
}
static_assert(areInOrder());

void styleKey(Evas_Object* button, const Key& key) {
    const bool highContrast = key.style.highContrast && IsEnhancedUIMode(kHighContrastMode);
    if (highContrast && key.index == kKeyDeleteAll) LOG_DEBUG("High Contrast mode enabled\n");
    elm_object_style_set(button, highContrast ? key.style.highContrast : key.style.normal);
}

// Connects the click exactly once, or not at all: whatever was connected before.
void setClickable(Evas_Object* button, const Key& key, custKeyboard& keyboard, bool clickable) {
    while (evas_object_smart_callback_del(button, "clicked", key.clicked)) {
    }
    if (clickable) evas_object_smart_callback_add(button, "clicked", key.clicked, &keyboard);
}

void addKey(custKeyboard& keyboard, const Key& key) {
    Evas_Object* const button = elm_button_add(keyboard.IME_Password_bg);
    keyboard.mV6_buttons[key.index] = button;
    if (!button) {
        LOG_DEBUG("cCustKeyboard->mV6_buttons[%d] is NULL\n", key.index);
        return;
    }
    styleKey(button, key);
    // A label such as "<" would be read as markup.
    setOutsideText(button, nullptr, key.label.isTextId ? localised(key.label.text) : key.label.text);
    evas_object_size_hint_weight_set(button, EVAS_HINT_EXPAND, 0.0);
    elm_object_part_content_set(keyboard.IME_Password_bg, key.part, button);
    setClickable(button, key, keyboard, true);
}

// Whatever happens on a key counts as use, for the gadget and for the keyboard.
void readyKey(custKeyboard& keyboard, const Key& key) {
    Evas_Object* const button = keyboard.mV6_buttons[key.index];
    if (!button) return;
    evas_object_show(button);
    for (const Evas_Object_Event_Cb noticed :
         {Evas_Object_Event_Cb{Reset_Time_Flag}, Evas_Object_Event_Cb{resetFlag}}) {
        evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, noticed, nullptr);
        evas_object_event_callback_add(button, EVAS_CALLBACK_FOCUS_IN, noticed, nullptr);
    }
    evas_object_smart_callback_add(button, "focused", noteFocusedKey, &keyboard);
    evas_object_smart_callback_add(button, "unfocused", keepFocusOnKeys, &keyboard);
    elm_object_focus_allow_set(button, EINA_TRUE);
    if (!key.style.highContrast) return;
    elm_object_signal_emit(button, "elm,action,focus", "elm");
    elm_object_signal_emit(button, "elm,action,unfocus", "elm");
}

}  // namespace

GridCell gridCellOf(int key) {
    return kKeys[static_cast<std::size_t>(key)].cell;
}

void addClosingKeys(custKeyboard& keyboard) {
    addKey(keyboard, kKeys[kKeyDone]);
    addKey(keyboard, kKeys[kKeyCancel]);
}

void disconnectKeys(custKeyboard& keyboard) {
    for (const Key& key : kKeys) {
        Evas_Object* const button = keyboard.mV6_buttons[key.index];
        if (!button) continue;
        setClickable(button, key, keyboard, false);
        evas_object_smart_callback_del(button, "focused", noteFocusedKey);
        evas_object_smart_callback_del(button, "unfocused", keepFocusOnKeys);
    }
}

void create_IPv6_keyboard_buttons(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (!keyboard) {
        LOG_DEBUG("NULL Argument cCustKeyboard of * to  sCustKeyboard\n");
        return;
    }
    for (const Key& key : kKeys) {
        if (!keyboard->mV6_buttons[key.index]) addKey(*keyboard, key);
        readyKey(*keyboard, key);
    }
}

int ipv6_keyboard_mouse_focus_enable_disable(custKeyboard* keyboard, bool enable) {
    LOG_SCOPE();
    if (!keyboard) {
        LOG_DEBUG("cCustKeyboard is NULL\n");
        return -1;
    }
    LOG_DEBUG("%s\n", enable ? "Enable Mouse focus on Pop-up cancel" : "Disable Mouse focus on Message Pop-up ");
    if (keyboard->IME_Password_bg) elm_object_focus_allow_set(keyboard->IME_Password_bg, enable);
    for (const Key& key : kKeys) {
        Evas_Object* const button = keyboard->mV6_buttons[key.index];
        if (!button) continue;
        setClickable(button, key, *keyboard, enable);
        elm_object_focus_allow_set(button, enable);
        // A key that may not have the focus any more would keep its look.
        if (!enable) elm_object_signal_emit(button, "elm,action,unfocus", "elm");
    }
    return 0;
}
