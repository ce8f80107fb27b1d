// The small popups over the keyboard: a message, and the question whether to discard the input.
#pragma once

#include <Evas.h>

struct custKeyboard;

// Shows a message with one OK button. Texts in the user's language.
void showPopup(custKeyboard* keyboard, const char* title, const char* message);
// Whether one of the two is open.
bool hasSmallPopup(const custKeyboard& keyboard);
// Before one of them or the keyboard goes: a second click on its way to a button finds nobody any more.
void disconnectSmallPopups(const custKeyboard& keyboard);

// "clicked" callbacks, data is the keyboard. The message's OK:
void _response_cb(void* data, Evas_Object* button, void* event);
// The keyboard's Cancel: asks.
void _discard_button_cb(void* data, Evas_Object* button, void* event);
// The question's Cancel: back to the keyboard.
void _discard_cancleBtn_cb(void* data, Evas_Object* button, void* event);
