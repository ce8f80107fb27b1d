// The control program: a gadget module that shows the same screens with calls of the toolkit only, and decides nothing.
#pragma once

#include <Elementary.h>
#include <libintl.h>

#include <clocale>

#include "gadget_paths.h"

namespace control {

inline constexpr const char* kLayoutFile = GADGET_LAYOUT_FILE;
inline constexpr const char* kAddress = "2001:db8:1::10";

// A text of the gadget's catalogue.
inline const char* text(const char* id) {
    return dcgettext("ug-Ostrelle-efl", id, LC_MESSAGES);
}

inline void fill(Evas_Object* widget) {
    evas_object_size_hint_weight_set(widget, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(widget, EVAS_HINT_FILL, EVAS_HINT_FILL);
}

// A button with a label in a part of a popup or layout.
Evas_Object* addButton(Evas_Object* parent, const char* part, const char* style, const char* label);

// The remote's Menu on this popup closes everything.
void closeOnMenu(Evas_Object* popup);

// The settings screen over the status screen `parent`, with the focus on its first row.
void showSettings(Evas_Object* parent);
void deleteSettings();

// The keyboard over the status screen `parent`, with the focus on Done. Gives its popup.
Evas_Object* showKeyboard(Evas_Object* parent);

}  // namespace control
