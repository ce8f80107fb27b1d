#include "View/Keyboard_Popups.h"

#include <Elementary.h>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Focus.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Keys.h"
#include "View/Keyboard_Remote.h"

namespace {

constexpr const char* kSmallPopupStyle = "C_PopupBasic_WhiteBottom";
constexpr int kDimmed = 164;
constexpr int kBright = 255;
constexpr Elm_Focus_Direction kDirections[] = {ELM_FOCUS_LEFT, ELM_FOCUS_RIGHT, ELM_FOCUS_UP, ELM_FOCUS_DOWN};

void tint(const custKeyboard& keyboard, int shade) {
    if (keyboard.popup) evas_object_color_set(keyboard.popup, shade, shade, shade, kBright);
}

bool switchKeys(custKeyboard& keyboard, bool on) {
    if (ipv6_keyboard_mouse_focus_enable_disable(&keyboard, on) == 0) return true;
    LOG_DEBUG("Failed in keyboard_mouse_focus_enable_disable()\n");
    return false;
}

// Null when the toolkit cannot make one.
Evas_Object* addSmallPopup(custKeyboard& keyboard, const char* title, const char* message) {
    Evas_Object* const popup = elm_popup_add(keyboard.popup);
    if (!popup) return nullptr;
    evas_object_size_hint_weight_set(popup, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    keepPointerFromFocusing(popup);
    elm_object_style_set(popup, kSmallPopupStyle);
    elm_object_part_text_set(popup, "title,text", title);
    elm_object_text_set(popup, message);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, Reset_Time_Flag, nullptr);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, ProcessRemoteKeysOnPopup, &keyboard);
    return popup;
}

struct PopupButton {
    const char* textId;
    const char* part;
    Evas_Smart_Cb clicked;
    const char* said;  // in the log
};

Evas_Object* addPopupButton(custKeyboard& keyboard, Evas_Object* popup, const PopupButton& kind) {
    Evas_Object* const button = elm_button_add(popup);
    if (!button) {
        LOG_DEBUG("%s is NULL\n", kind.said);
        return nullptr;
    }
    elm_object_style_set(button, "default");
    elm_object_text_set(button, localised(kind.textId));
    elm_object_part_content_set(popup, kind.part, button);
    evas_object_smart_callback_add(button, "clicked", kind.clicked, &keyboard);
    for (const Elm_Focus_Direction direction : kDirections)
        elm_object_focus_next_object_set(button, button, direction);
    return button;
}

void linkPair(Evas_Object* left, Evas_Object* right) {
    if (!left || !right) return;
    elm_object_focus_next_object_set(left, right, ELM_FOCUS_RIGHT);
    elm_object_focus_next_object_set(left, right, ELM_FOCUS_LEFT);
}

// Shows a small popup over the keyboard; its first button gets the focus.
void openSmallPopup(Evas_Object* popup, Evas_Object* firstButton) {
    evas_object_show(popup);
    elm_object_focus_set(firstButton ? firstButton : popup, EINA_TRUE);
}

void close_Btn_cb(void* /*data*/, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    const sipDataSettingChangeVal* const edited = ipDataSettingChangeValObject();
    if (edited && edited->onResult) edited->onResult(nullptr);
}

constexpr PopupButton kMessageOk{"COM_SID_OK", "button1", _response_cb, "cCustKeyboard->btn1"};
constexpr PopupButton kDiscard{"COM_SID_OK", "button1", close_Btn_cb, "btn2"};
constexpr PopupButton kKeepInput{"SID_CANCEL", "button2", _discard_cancleBtn_cb, "btn3"};

void disconnect(const Evas_Object* popup, const PopupButton& kind) {
    Evas_Object* const button = popup ? elm_object_part_content_get(popup, kind.part) : nullptr;
    if (button) evas_object_smart_callback_del(button, "clicked", kind.clicked);
}

void closeSmallPopup(custKeyboard& keyboard, Evas_Object*& popup, const char* said) {
    if (!switchKeys(keyboard, true)) return;
    disconnectSmallPopups(keyboard);
    LOG_DEBUG("Deleting %s\n", said);
    deleteObject(popup);
    tint(keyboard, kBright);
    if (keyboard.popup) evas_object_show(keyboard.popup);
    focusLastKey(keyboard);
}

}  // namespace

bool hasSmallPopup(const custKeyboard& keyboard) {
    return keyboard.popupMessage || keyboard.cancelPopupMsg;
}

void disconnectSmallPopups(const custKeyboard& keyboard) {
    disconnect(keyboard.popupMessage, kMessageOk);
    disconnect(keyboard.cancelPopupMsg, kDiscard);
    disconnect(keyboard.cancelPopupMsg, kKeepInput);
}

void showPopup(custKeyboard* keyboard, const char* title, const char* message) {
    LOG_SCOPE();
    if (!keyboard || !title || !message) {
        LOG_DEBUG("Input parameter NULL - *cCustKeyboard, *title, *message\n");
        return;
    }
    if (hasSmallPopup(*keyboard)) return;
    keyboard->popupMessage = addSmallPopup(*keyboard, title, message);
    if (!keyboard->popupMessage) {
        LOG_DEBUG("cCustKeyboard->popupMessage is NULL\n");
        return;
    }
    keyboard->btn1 = addPopupButton(*keyboard, keyboard->popupMessage, kMessageOk);
    if (!keyboard->btn1) return deleteObject(keyboard->popupMessage);
    tint(*keyboard, kDimmed);
    if (switchKeys(*keyboard, false)) openSmallPopup(keyboard->popupMessage, keyboard->btn1);
}

void _response_cb(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    auto* const keyboard = static_cast<custKeyboard*>(data);
    if (!keyboard) {
        LOG_DEBUG("Data Argument casting NULL for cCustKeyboard of * to  sCustKeyboard\n");
        return;
    }
    closeSmallPopup(*keyboard, keyboard->popupMessage, "popupMessage");
    if (keyboard->popupMessage || !keyboard->btn1) return;
    LOG_DEBUG("Deleting Ok_Btn\n");
    keyboard->btn1 = nullptr;
}

void _discard_button_cb(void* data, Evas_Object* button, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    auto* const keyboard = static_cast<custKeyboard*>(data);
    if (!keyboard || !button) {
        LOG_DEBUG("function parameter is NULL\n");
        return;
    }
    if (hasSmallPopup(*keyboard)) return;
    keyboard->cancelPopupMsg =
        addSmallPopup(*keyboard, localised("TV_SID_IPV6_SETTINGS"), localised("COM_DO_YOU_WANT_TO_CANCEL_INPUT"));
    if (!keyboard->cancelPopupMsg) {
        LOG_DEBUG("cCustKeyboard->cancelPopupMsg is NULL\n");
        return;
    }
    Evas_Object* const discard = addPopupButton(*keyboard, keyboard->cancelPopupMsg, kDiscard);
    Evas_Object* const keep = addPopupButton(*keyboard, keyboard->cancelPopupMsg, kKeepInput);
    linkPair(discard, keep);
    if (!switchKeys(*keyboard, false)) return;
    openSmallPopup(keyboard->cancelPopupMsg, discard ? discard : keep);
    tint(*keyboard, kDimmed);
}

void _discard_cancleBtn_cb(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    resetFlag();
    auto* const keyboard = static_cast<custKeyboard*>(data);
    if (!keyboard) {
        LOG_DEBUG("Data argument is NULL\n");
        return;
    }
    closeSmallPopup(*keyboard, keyboard->cancelPopupMsg, "cancelPopupMsg");
}
