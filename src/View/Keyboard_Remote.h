// The remote control's keys on the keyboard and on its small popups.
#pragma once

#include <Evas.h>

struct custKeyboard;

// Lets the keyboard hear the remote control: it types, deletes, asks whether to discard (Back), or leaves the gadget
// (Menu).
void listenToRemoteKeys(custKeyboard& keyboard);

// Key-down handler of the small popups, data is the keyboard.
void ProcessRemoteKeysOnPopup(void* data, Evas* canvas, Evas_Object* object, void* event);
