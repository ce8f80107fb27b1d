// Pictures of the screen.
#pragma once

#include <Evas.h>

#include <string>

namespace host::screen {

// Saves the window's content as a PNG file, under any display. False when the file cannot be written.
bool savePicture(Evas_Object* window, const std::string& file);

}  // namespace host::screen
