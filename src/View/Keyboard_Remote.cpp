#include "View/Keyboard_Remote.h"

#include <Elementary.h>

#include <string_view>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSettings.h"
#include "View/Keyboard_Handlers.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Keys.h"
#include "View/Keyboard_Popups.h"

namespace {

constexpr std::string_view kTypingKeys = "0123456789abcdef";

// The key's name; null when the call is incomplete.
const char* keyOf(const void* data, const Evas_Object* object, const void* event) {
    const auto* const pressed = static_cast<const Evas_Event_Key_Down*>(event);
    if (!data || !object || !pressed || !pressed->keyname) {
        LOG_DEBUG("Any function parameter is NULL\n");
        return nullptr;
    }
    LOG_DEBUG("Key values : [%s]\n", pressed->keyname);
    return pressed->keyname;
}

// What a key types; null for a key that types nothing.
const char* typedBy(std::string_view key, const char* keyname) {
    if (key == "colon") return ":";
    return key.size() == 1 && kTypingKeys.find(key.front()) != std::string_view::npos ? keyname : nullptr;
}

// Held back when the entry has done it by itself.
void edit(custKeyboard& keyboard, const char* keyname, Evas_Event_Flags flags) {
    if (flags & EVAS_EVENT_FLAG_ON_HOLD) return;
    const std::string_view key(keyname);
    if (key == "BackSpace") return back_Btn_cb(&keyboard, keyboard.mV6_buttons[kKeyBackspace], nullptr);
    if (const char* const text = typedBy(key, keyname)) appendString_cb(&keyboard, nullptr, const_cast<char*>(text));
}

void ProcessRemoteKeys(void* data, Evas* canvas, Evas_Object* object, void* event) {
    LOG_SCOPE();
    resetFlag();
    const char* const keyname = keyOf(data, object, event);
    if (!keyname) return;
    auto& keyboard = *static_cast<custKeyboard*>(data);
    // A key that came before the small popup had the focus.
    if (hasSmallPopup(keyboard)) return ProcessRemoteKeysOnPopup(data, canvas, object, event);
    const std::string_view key(keyname);
    if (key == "XF86Back") return _discard_button_cb(&keyboard, object, nullptr);
    if (key == "Menu") return leaveSettingsAndGadget();
    edit(keyboard, keyname, static_cast<const Evas_Event_Key_Down*>(event)->event_flags);
}

}  // namespace

void listenToRemoteKeys(custKeyboard& keyboard) {
    evas_object_event_callback_add(keyboard.IME_Password_bg, EVAS_CALLBACK_KEY_DOWN, ProcessRemoteKeys, &keyboard);
}

void ProcessRemoteKeysOnPopup(void* data, Evas* /*canvas*/, Evas_Object* object, void* event) {
    LOG_SCOPE();
    resetFlag();
    const char* const keyname = keyOf(data, object, event);
    if (!keyname) return;
    auto* const keyboard = static_cast<custKeyboard*>(data);
    const std::string_view key(keyname);
    if (key == "XF86Back" && keyboard->cancelPopupMsg) return _discard_cancleBtn_cb(keyboard, object, nullptr);
    if (key == "Menu") leaveSettingsAndGadget();
}
