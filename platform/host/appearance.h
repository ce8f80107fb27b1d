// The TV's look around and under a gadget: theme, contrast, and the menu behind it.
#pragma once

#include <Evas.h>

namespace host {

// Gives the toolkit's `default` styles the TV's look, once a process. Says so in the log when the file is missing.
void applyTheme();

// Sets every colour of the gadgets to its high-contrast value, or back to its own.
void applyContrast(bool highContrast);

// The menu that stands behind a gadget; it fills the window. Null when the window is.
Evas_Object* addBackdrop(Evas_Object* window);

}  // namespace host
