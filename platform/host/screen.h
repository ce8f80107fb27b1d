// What stands on the screen, read from the canvas: whatever drew it, and only what a viewer could see.
#pragma once

#include <Evas.h>

#include <functional>
#include <string>
#include <vector>

namespace host::screen {

// Called for each object, those behind first. The result says whether to look inside it.
using Visit = std::function<bool(Evas_Object* object)>;

// Visits every shown object below the window: visible itself and inside visible parents.
void walk(Evas_Object* window, const Visit& visit);
void walkInside(Evas_Object* object, const Visit& visit);

// Shown, not transparent, and not clipped away.
bool isSeen(Evas_Object* object);

// The seen part of an object's area.
Eina_Rectangle seenArea(Evas_Object* object);

bool isType(Evas_Object* object, const char* type);

// The text of a text object as the user reads it; empty for anything else and for what is not seen.
std::string seenText(Evas_Object* object);

// The file name, without folder, of the picture in an image object; empty as above.
std::string seenPicture(Evas_Object* object);

struct Text {
    std::string text;
    Evas_Object* object;
};

// All seen texts, those behind first. `root` is the window or a widget.
std::vector<Text> texts(Evas_Object* root);

// The texts of a widget, joined by one space.
std::string label(Evas_Object* widget);

// The file names of the pictures seen inside an object, the object itself included.
std::vector<std::string> pictures(Evas_Object* root);

}  // namespace host::screen
