// The close keys, which every button answers: the one call from the widget helpers up into the screens.
#pragma once

#include <Evas.h>

// Key-down handler: "XF86Back", "Menu" and "XF86Close" close the gadget, all other keys pass.
void close_win(void* data, Evas* canvas, Evas_Object* object, void* event);
