// Grabs of the remote's digit keys on the gadget's window. Best effort: not every display server grants them.
#pragma once

#include <Elementary.h>

void NS_IP_KeyGrab(Evas_Object* window);
void NS_IP_KeyUnGrab(Evas_Object* window);
