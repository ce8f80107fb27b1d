#include "View/Custom_IPv6_Keyboard.h"

#include <algorithm>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Entry.h"
#include "View/Keyboard_Focus.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Keys.h"
#include "View/Keyboard_Popups.h"
#include "View/Keyboard_Remote.h"
#include "View/Keyboard_Rows.h"
#include "View/NS_Buttons.h"

namespace {

constexpr const char* kOuterStyle = "C_PopupBasic_WhiteBottomLarge";
constexpr const char* kInnerStyle = "IPv6Keyboard";
constexpr const char* kTitlePart = "elm.text.title_V6";
constexpr const char* kSubheadingPart = "elm.v6.subheading";

bool isMissing(const custKeyboard* keyboard) {
    if (keyboard) return false;
    LOG_DEBUG("NULL Argument cCustKeyboard of * to  sCustKeyboard\n");
    return true;
}

void forgetKeys(custKeyboard& keyboard) {
    std::ranges::fill(keyboard.mV6_buttons, nullptr);
    for (auto& row : keyboard.focusGrid)
        std::ranges::fill(row, nullptr);
}

// Whatever happens on the keyboard counts as use, for the gadget and for the keyboard.
void noticeUse(Evas_Object* keyboard) {
    for (const Evas_Object_Event_Cb noticed :
         {Evas_Object_Event_Cb{Reset_Time_Flag}, Evas_Object_Event_Cb{resetFlag}}) {
        evas_object_event_callback_add(keyboard, EVAS_CALLBACK_KEY_DOWN, noticed, nullptr);
        evas_object_event_callback_add(keyboard, EVAS_CALLBACK_MOUSE_MOVE, noticed, nullptr);
    }
    evas_object_smart_callback_add(keyboard, "clicked", resetFlag_OnMouseClick, nullptr);
}

void addPopups(custKeyboard& keyboard, Evas_Object* parent) {
    keyboard.popup = elm_popup_add(parent);
    if (!keyboard.popup) {
        LOG_DEBUG("cCustKeyboard->popup is NULL\n");
        return;
    }
    elm_object_style_set(keyboard.popup, kOuterStyle);
    keepPointerFromFocusing(keyboard.popup);
    keyboard.IME_Password_bg = elm_popup_add(keyboard.popup);
    Evas_Object* const inner = keyboard.IME_Password_bg;
    if (!inner) {
        LOG_DEBUG("cCustKeyboard->IME_Password_bg is NULL\n");
        return;
    }
    evas_object_size_hint_weight_set(inner, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(inner, EVAS_HINT_FILL, EVAS_HINT_FILL);
    keepPointerFromFocusing(inner);
    noticeUse(inner);
    listenToRemoteKeys(keyboard);
    elm_object_style_set(inner, kInnerStyle);
    elm_object_focus_allow_set(inner, EINA_TRUE);
    elm_object_part_text_set(inner, kTitlePart, localised("TV_SID_IPV6_SETTINGS"));
}

void showHighContrast(Evas_Object* keyboard) {
    if (!IsEnhancedUIMode(kHighContrastMode)) return;
    LOG_DEBUG("High Contrast mode enabled\n");
    elm_object_signal_emit(keyboard, "highcontrast", "");
}

// What stands on the inner popup.
void fill(custKeyboard& keyboard, const char* rowLabel, const char* content) {
    Evas_Object* const inner = keyboard.IME_Password_bg;
    elm_object_part_text_set(inner, kSubheadingPart, addressRowText(rowLabel, &AddressRow::promptId));
    elm_object_content_set(keyboard.popup, inner);
    evas_object_show(keyboard.popup);
    addEntry(keyboard, content);
    addClosingKeys(keyboard);
    create_IPv6_keyboard_buttons(&keyboard);
    elm_object_focus_allow_set(inner, EINA_TRUE);
    focusLastKey(keyboard);
    set_focus_chain_KeyBoardButtons(&keyboard);
    showHighContrast(inner);
}

}  // namespace

void IME_Password_Main(Evas_Object* parent, const char* selectedItem, const char* selectedContent) {
    LOG_SCOPE();
    delCustKeyboard();
    custKeyboard* const keyboard = getCustKeyBoard();
    if (!keyboard) {
        LOG_DEBUG("Keyboard Object Creation Got Failed\n");
        return;
    }
    focusStatusBelow();
    addPopups(*keyboard, parent);
    // Without its popups there is nothing that could be shown, nor closed again.
    if (!keyboard->IME_Password_bg) return delCustKeyboard();
    fill(*keyboard, selectedItem, selectedContent);
    startKeepAliveTimer(keyboard);
}

void custKeyboardInit(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (isMissing(keyboard)) return;
    for (Evas_Object** field : {&keyboard->popup, &keyboard->IME_Password_bg, &keyboard->en, &keyboard->popupMessage,
                                &keyboard->cancelPopupMsg, &keyboard->btn1}) {
        *field = nullptr;
    }
    forgetKeys(*keyboard);
}

// The entry and the keys go with the inner popup, the OK button with its message: they are only forgotten.
void custKeyboardDeInit(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (isMissing(keyboard)) return;
    disconnectSmallPopups(*keyboard);
    disconnectKeys(*keyboard);
    disconnectEntry(*keyboard);
    deleteObject(keyboard->cancelPopupMsg);
    deleteObject(keyboard->IME_Password_bg);
    keyboard->en = nullptr;
    deleteObject(keyboard->popupMessage);
    keyboard->btn1 = nullptr;
    for (int key = 0; key < kKeyCount; ++key) {
        if (keyboard->mV6_buttons[key]) LOG_DEBUG("deleted button number:: mV6_buttons[%d]\n", key);
    }
    forgetKeys(*keyboard);
    forgetFocusedKey();
    deleteObject(keyboard->popup);
    keyboard->deinit = nullptr;
    keyboard->init = nullptr;
    stopKeepAliveTimer();
}
