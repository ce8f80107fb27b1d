// The TV's screen: one window whose toolkit scale follows its height.
#pragma once

#include <Evas.h>

#include "host/options.h"

namespace host {

// Opens and shows the window. Null when there is no display.
Evas_Object* openWindow(const Size& size, bool fullscreen);

// Ties the window to the open gadget: hidden or iconified pauses it, shown again resumes it, closed ends it.
void followWindow(Evas_Object* window);

}  // namespace host
