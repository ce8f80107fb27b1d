// The keyboard's entry: a widget that reads markup, for texts that are none.
#pragma once

#include <Evas.h>

#include <string>

#include "View/Keyboard_Editing.h"

struct custKeyboard;

// Makes the entry in its part, with a text to begin with and the cursor behind it.
void addEntry(custKeyboard& keyboard, const char* content);
// Before the keyboard goes: a focus that strays to the entry changes nothing any more.
void disconnectEntry(const custKeyboard& keyboard);

// The text as the user reads it; empty without an entry.
std::string entryText(const Evas_Object* entry);
// How many characters stand before the cursor.
int entryCursor(const Evas_Object* entry);
void showInEntry(Evas_Object* entry, const EditedText& edited);
