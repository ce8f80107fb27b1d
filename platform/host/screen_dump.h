// The screen as JSON, for tests and for a look from outside.
#pragma once

#include <Evas.h>
#include <nlohmann/json.hpp>

#include <string>

namespace host::screen {

/**
 * Everything a viewer sees.
 * {"time": seconds, "gadget": "open" or "closed", "focus": {"label", "part"} or null,
 *  "parts": {full part name: {"text"} or {"picture"} or {"button"} or {"entry", "cursor"} or {"widget"}},
 *  "buttons": [{"label", "part", "style", "focused", "disabled", "geometry": [x, y, w, h]}],
 *  "rows": [{"text": {part: text}, "focused", "disabled", "selected"}],
 *  "popups": [{"style", "texts": [...]}]}, popups in stacking order, the rest from back to front.
 * @param time seconds since the script's start
 */
nlohmann::json dump(Evas_Object* window, double time);

// The widget that gets the keys; null when a key would reach nobody.
Evas_Object* focused(Evas_Object* window);

// Whether no popup stands before the one that a widget is in.
bool isUppermost(Evas_Object* widget, Evas_Object* window);

// What holds the focus: its label and part, or null when a key would reach nobody.
nlohmann::json focus(Evas_Object* window);

// The same in a few lines, for a failed expectation.
std::string summary(Evas_Object* window);

}  // namespace host::screen
