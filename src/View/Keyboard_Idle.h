// Closes a keyboard that nobody uses.
#pragma once

#include <Evas.h>

struct custKeyboard;

// Somebody uses the keyboard; the first has the shape of an Evas event callback, the second that of a smart one.
void resetFlag(void* data = nullptr, Evas* canvas = nullptr, Evas_Object* object = nullptr, void* event = nullptr);
void resetFlag_OnMouseClick(void* data, Evas_Object* object, void* event);

// The 90-second tick: closes the keyboard when nobody has used it since the last one. `data` is the keyboard.
Eina_Bool Timer(void* data);

void startKeepAliveTimer(custKeyboard* keyboard);
void stopKeepAliveTimer();
