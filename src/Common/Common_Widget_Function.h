// Buttons, focus chains and small widget helpers of every screen.
#pragma once

#include <Elementary.h>

#include <span>

// Makes a push button: style, label (and value, in the two list-like styles), focus under the pointer, close keys.
// Returns null when the parent is null or the toolkit cannot make one.
Evas_Object* createButton(Evas_Object* parent, const char* style, Evas_Smart_Cb clicked, const char* label,
                          const char* value, void* data);

// Gives the focus to the object under the pointer.
void MouseIn_Focus_cb(void* data, Evas* canvas, Evas_Object* object, void* event);

// Rings: RIGHT (DOWN) goes to the next entry and wraps, LEFT (UP) goes back. Null entries are skipped.
void set_focus_chain_left_right(Evas_Object** widgets, int count);
void set_focus_chain_up_down(Evas_Object** widgets, int count);
// Each widget keeps the focus on those keys.
void single_chain_set_focus_LEFTRIGHT(Evas_Object** widgets, int count);
void single_chain_set_focus_DOWNUP(Evas_Object** widgets, int count);

// The widget's place on the screen; zeros for null.
Eina_Rectangle getGeometry(const Evas_Object* widget);

// "realized" callback of the lists.
void _genlist_item_reailzed_cb(void* data, Evas_Object* list, void* item);

// Deletes a widget, if there is one, and clears its field.
void deleteObject(Evas_Object*& field);
// Size hints of a widget that takes all the room there is, and of one that takes its share of it.
void expandAndFill(Evas_Object* widget);
void fill(Evas_Object* widget, double weightAcross, double weightDown);
// The pointer over a bare screen or popup must not take the focus from what stands on it.
void keepPointerFromFocusing(Evas_Object* widget);
// Hides a widget now and deletes it in the next turn of the main loop, for callers inside its own callbacks.
void deleteLater(Evas_Object* widget);
