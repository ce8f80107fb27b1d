// The TV's look around and under a gadget: theme, contrast, and the menu behind it.
#pragma once

#include <Evas.h>

namespace host {

/** Gives the toolkit's `default` styles the TV's look, once a process. A missing theme file gets one line in the log.
 */
void applyTheme();

/**
 * Switches the colours of all widgets, present and to come.
 * @param highContrast true for the high-contrast value of every colour class, false for its own value
 */
void applyContrast(bool highContrast);

/**
 * Puts the menu that stands behind a gadget on the window; it follows the window's size.
 * @return the backdrop, owned by the window, or null when the window is null; without the theme file it draws nothing
 */
Evas_Object* addBackdrop(Evas_Object* window);

}  // namespace host
