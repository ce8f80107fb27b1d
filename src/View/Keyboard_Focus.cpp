#include "View/Keyboard_Focus.h"

#include <Elementary.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Keys.h"
#include "View/Keyboard_Popups.h"

namespace {

constinit int lastKey = kKeyDone;
constinit Ecore_Job* focusCheck = nullptr;

// A key's neighbours.
struct Links {
    KeyIndex key;
    KeyIndex left;
    KeyIndex right;
    KeyIndex up;
    KeyIndex down;
};
constexpr std::array<Links, kKeyCount> kLinks{{
    {kKey1, kKeyBackspace, kKey2, kKey1, kKeyA},
    {kKey2, kKey1, kKey3, kKey2, kKeyB},
    {kKey3, kKey2, kKey4, kKey3, kKeyC},
    {kKey4, kKey3, kKey5, kKey4, kKeyD},
    {kKey5, kKey4, kKey6, kKey5, kKeyE},
    {kKey6, kKey5, kKey7, kKey6, kKeyF},
    {kKey7, kKey6, kKey8, kKey7, kKeyColon},
    {kKey8, kKey7, kKey9, kKey8, kKeyLeft},
    {kKey9, kKey8, kKey0, kKey9, kKeyRight},
    {kKey0, kKey9, kKeyBackspace, kKey0, kKeyDeleteAll},
    {kKeyBackspace, kKey0, kKey1, kKeyBackspace, kKeyDeleteAll},
    {kKeyA, kKeyDeleteAll, kKeyB, kKey1, kKeyDone},
    {kKeyB, kKeyA, kKeyC, kKey2, kKeyDone},
    {kKeyC, kKeyB, kKeyD, kKey3, kKeyDone},
    {kKeyD, kKeyC, kKeyE, kKey4, kKeyDone},
    {kKeyE, kKeyD, kKeyF, kKey5, kKeyDone},
    {kKeyF, kKeyE, kKeyColon, kKey6, kKeyDone},
    {kKeyColon, kKeyF, kKeyLeft, kKey7, kKeyDone},
    {kKeyLeft, kKeyColon, kKeyRight, kKey8, kKeyDone},
    {kKeyRight, kKeyLeft, kKeyDeleteAll, kKey9, kKeyDone},
    {kKeyDeleteAll, kKeyRight, kKeyA, kKeyBackspace, kKeyDone},
    {kKeyDone, kKeyCancel, kKeyCancel, kKeyD, kKeyDone},
    {kKeyCancel, kKeyDone, kKeyDone, kKeyRight, kKeyCancel},
}};

struct Direction {
    Elm_Focus_Direction toolkit;
    KeyIndex Links::*link;
};
constexpr Direction kLeft{ELM_FOCUS_LEFT, &Links::left};
constexpr Direction kRight{ELM_FOCUS_RIGHT, &Links::right};
constexpr Direction kUp{ELM_FOCUS_UP, &Links::up};
constexpr Direction kDown{ELM_FOCUS_DOWN, &Links::down};

// The toolkit sets each link's reverse as well, and not all links here have one: the last call wins, so the order
// counts.
struct Pass {
    KeyIndex first;  // rows of kLinks, both included
    KeyIndex last;
    Direction direction;
};
constexpr Pass kPasses[] = {
    {kKey1, kKeyCancel, kLeft},    {kKey1, kKeyCancel, kRight},   {kKey1, kKeyBackspace, kUp},
    {kKeyDone, kKeyCancel, kDown}, {kKeyCancel, kKeyCancel, kUp}, {kKeyA, kKeyDeleteAll, kDown},
    {kKey1, kKeyBackspace, kDown}, {kKeyA, kKeyDeleteAll, kUp},   {kKeyDone, kKeyDone, kUp},
};

bool isOnKeys(const custKeyboard& keyboard, const Evas_Object* focused) {
    return focused && std::ranges::find(keyboard.mV6_buttons, focused) != std::end(keyboard.mV6_buttons);
}

void checkFocus(void* data) {
    focusCheck = nullptr;
    const auto& keyboard = *static_cast<const custKeyboard*>(data);
    if (hasSmallPopup(keyboard) || isOnKeys(keyboard, elm_object_focused_object_get(keyboard.popup))) return;
    focusLastKey(keyboard);
}

bool isMissing(const custKeyboard* keyboard) {
    if (keyboard) return false;
    LOG_DEBUG("NULL Argument cCustKeyboard of * to  sCustKeyboard\n");
    return true;
}

void link(const custKeyboard& keyboard, KeyIndex from, KeyIndex to, Elm_Focus_Direction direction) {
    Evas_Object* const key = keyboard.mV6_buttons[from];
    Evas_Object* const next = keyboard.mV6_buttons[to];
    if (key && next) elm_object_focus_next_object_set(key, next, direction);
}

void run(const custKeyboard& keyboard, const Pass& pass) {
    bool within = false;
    for (const Links& row : kLinks) {
        within = within || row.key == pass.first;
        if (within) link(keyboard, row.key, row.*pass.direction.link, pass.direction.toolkit);
        if (row.key == pass.last) return;
    }
}

}  // namespace

void set_focus_chain_KeyBoardButtons(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (isMissing(keyboard)) return;
    populate_FocusHandler(keyboard);
    set_Single_focus_chain(keyboard);
    for (const Pass& pass : kPasses)
        run(*keyboard, pass);
}

void populate_FocusHandler(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (isMissing(keyboard)) return;
    for (int key = 0; key < kKeyCount; ++key) {
        const GridCell cell = gridCellOf(key);
        keyboard->focusGrid[cell.row][cell.column] = keyboard->mV6_buttons[key];
    }
}

void set_Single_focus_chain(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (isMissing(keyboard)) return;
    for (const auto& row : keyboard->focusGrid) {
        for (Evas_Object* const key : row) {
            if (!key) continue;
            for (const Direction& direction : {kLeft, kRight, kUp, kDown})
                elm_object_focus_next_object_set(key, key, direction.toolkit);
        }
    }
}

void noteFocusedKey(void* data, Evas_Object* button, void* /*event*/) {
    Reset_Time_Flag();
    resetFlag();
    const auto& keyboard = *static_cast<const custKeyboard*>(data);
    // The focus strays while a small popup switches the keys off.
    if (hasSmallPopup(keyboard)) return;
    for (int key = 0; key < kKeyCount; ++key) {
        if (keyboard.mV6_buttons[key] == button) lastKey = key;
    }
}

void keepFocusOnKeys(void* data, Evas_Object* button, void* /*event*/) {
    // A window without the focus gives it back to the key by itself.
    if (!focusCheck && evas_focus_state_get(evas_object_evas_get(button))) focusCheck = ecore_job_add(checkFocus, data);
}

void focusLastKey(const custKeyboard& keyboard) {
    Evas_Object* const key = keyboard.mV6_buttons[lastKey];
    Evas_Object* const target = key ? key : keyboard.IME_Password_bg;
    if (target) elm_object_focus_set(target, EINA_TRUE);
}

void forgetFocusedKey() {
    lastKey = kKeyDone;
    if (focusCheck) ecore_job_del(focusCheck);
    focusCheck = nullptr;
}
