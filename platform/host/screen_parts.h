// The layouts' parts that are seen, under the names by which code reaches them.
#pragma once

#include <Evas.h>

#include <string>
#include <vector>

namespace host::screen {

struct Part {
    std::string name;     // with the names of the GROUP parts around it: "PartMain:elm.text.title"
    Evas_Object* object;  // the text object, or the widget that the part holds
    bool text;
};

// The seen text parts with a text, and the seen parts that hold a widget, of one layout ("edje") object.
std::vector<Part> partsOf(Evas_Object* layout);

// Those of every shown layout widget, those behind first. `root` is the window or a widget.
std::vector<Part> parts(Evas_Object* root);

// The name of the nearest part around a widget, or an empty text.
std::string partAround(Evas_Object* widget, const std::vector<Part>& parts);

}  // namespace host::screen
