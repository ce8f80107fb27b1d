// Where the arrow keys go on the keyboard, and which key has the focus when nothing else does.
#pragma once

#include <Evas.h>

struct custKeyboard;

// Links the keys: rings in the two upper rows, fixed ways between the rows.
void set_focus_chain_KeyBoardButtons(custKeyboard* keyboard);
// Puts the keys into the grid.
void populate_FocusHandler(custKeyboard* keyboard);
// Makes each key in the grid its own neighbour on all sides.
void set_Single_focus_chain(custKeyboard* keyboard);

// "focused" callback of a key, data is the keyboard: the key to come back to, and a sign of use. The toolkit gives the
// canvas' own focus to what a button is drawn with, so that its "focus in" is no sign to rely on.
void noteFocusedKey(void* data, Evas_Object* button, void* event);
// "unfocused" callback of a key, data is the keyboard: a popup below that has finished hiding must not take the focus.
void keepFocusOnKeys(void* data, Evas_Object* button, void* event);
// Gives the focus to the key that had it last, or to Done.
void focusLastKey(const custKeyboard& keyboard);
// The keyboard goes: no key has had the focus yet.
void forgetFocusedKey();
