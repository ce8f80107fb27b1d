// The keyboard's 23 keys.
#pragma once

struct custKeyboard;

// The keys by their place in custKeyboard::mV6_buttons.
enum KeyIndex : int {
    kKeyA,
    kKeyB,
    kKeyC,
    kKeyD,
    kKeyE,
    kKeyF,
    kKeyLeft,
    kKeyRight,
    kKeyDeleteAll,
    kKey1,
    kKey2,
    kKey3,
    kKey4,
    kKey5,
    kKey6,
    kKey7,
    kKey8,
    kKey9,
    kKey0,
    kKeyBackspace,
    kKeyDone,
    kKeyCancel,
    kKeyColon,
};

struct GridCell {
    int row;
    int column;
};
// Where a key stands in custKeyboard::focusGrid.
GridCell gridCellOf(int key);

// Done and Cancel, before all others.
void addClosingKeys(custKeyboard& keyboard);
// Makes the keys that are not there yet, and readies all of them.
void create_IPv6_keyboard_buttons(custKeyboard* keyboard);

// Before the keyboard goes: what is on its way to a key, such as a second click, finds nobody any more.
void disconnectKeys(custKeyboard& keyboard);

// Switches the keys off under a small popup, and on again. Any number of times in a row is as good as once.
// 0, or -1 without a keyboard.
int ipv6_keyboard_mouse_focus_enable_disable(custKeyboard* keyboard, bool enable);
