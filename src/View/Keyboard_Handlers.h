// What the keyboard's keys do to the entry: "clicked" callbacks, data is the keyboard.
#pragma once

#include <Evas.h>

// Types the first character of the button's label; without a button that of the text in `event`.
void appendString_cb(void* data, Evas_Object* button, void* event);
void back_Btn_cb(void* data, Evas_Object* button, void* event);
void deleteAll_Btn_cb(void* data, Evas_Object* button, void* event);
void cursorLeft_cb(void* data, Evas_Object* button, void* event);
void cursorRight_cb(void* data, Evas_Object* button, void* event);
