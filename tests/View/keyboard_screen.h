// Reading the keyboard from a dump.
#pragma once

#include <string>

#include "settings_screen.h"

// The entry's text with a bar for the cursor; "no keyboard" when there is none.
std::string entryIn(const nlohmann::json& dump);
