// The hexadecimal keyboard of the settings screen's address rows.
#pragma once

#include <Elementary.h>

inline constexpr int kKeyCount = 23;
inline constexpr int kFocusRows = 3;
inline constexpr int kFocusColumns = 11;

// The open keyboard. Its widgets hang below `popup`.
struct custKeyboard {
    Evas_Object* popup;            // covers the window
    Evas_Object* IME_Password_bg;  // its content: title, subheading, entry and keys
    Evas_Object* en;               // the entry
    Evas_Object* popupMessage;     // a message
    Evas_Object* cancelPopupMsg;   // the question whether to discard
    Evas_Object* btn1;             // the message's OK button
    Evas_Object* mV6_buttons[kKeyCount];
    Evas_Object* focusGrid[kFocusRows][kFocusColumns];  // the keys as rows; empty cells are null
    void (*deinit)(custKeyboard* keyboard);
    void (*init)(custKeyboard* keyboard);
};

// Builds and shows the keyboard on `parent`.
// `selectedItem`: the row's label in the user's language; `selectedContent`: its value, the text to begin with.
void IME_Password_Main(Evas_Object* parent, const char* selectedItem, const char* selectedContent);

// Forgets all widgets.
void custKeyboardInit(custKeyboard* keyboard);
// Deletes all widgets and the inactivity timer.
void custKeyboardDeInit(custKeyboard* keyboard);

// What the keyboard's Done and its confirmed discard (null) call: closes it and fills the row, or says what is wrong.
void processKeyboardData(const char* text);
