#include "host/screen_dump.h"

#include <Elementary.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>
#include <vector>

#include "host/gadget_runtime.h"
#include "host/screen.h"
#include "host/screen_parts.h"

namespace {

using host::screen::Part;
using nlohmann::json;

struct Free {
    void operator()(char* text) const { std::free(text); }
};

// A list's item as it is drawn; scrolled-out items have no view.
struct ItemView {
    Elm_Object_Item* item;
    Evas_Object* layout;
};

bool isItemView(Evas_Object* object) {
    const char* group = nullptr;
    if (!host::screen::isType(object, "edje")) return false;
    edje_object_file_get(object, nullptr, &group);
    return group != nullptr && std::string_view(group).starts_with("elm/genlist/item");
}

int indexOf(const ItemView& view) {
    return elm_genlist_item_index_get(view.item);
}

// The toolkit gives no way from an item to its view, but one from a place on the list to the item.
std::vector<ItemView> itemViews(Evas_Object* list) {
    std::vector<ItemView> views;
    host::screen::walkInside(list, [&](Evas_Object* object) {
        if (!isItemView(object)) return true;
        const Eina_Rectangle area = host::screen::seenArea(object);
        if (area.w == 0 || area.h == 0) return false;
        Elm_Object_Item* const item =
            elm_genlist_at_xy_item_get(list, area.x + area.w / 2, area.y + area.h / 2, nullptr);
        if (item != nullptr) views.push_back({item, object});
        return false;
    });
    std::ranges::sort(views, {}, indexOf);
    return views;
}

std::vector<Evas_Object*> widgets(Evas_Object* window, const char* type) {
    std::vector<Evas_Object*> found;
    host::screen::walk(window, [&](Evas_Object* object) {
        if (host::screen::isType(object, type) && host::screen::isSeen(object)) found.push_back(object);
        return true;
    });
    return found;
}

bool flag(Eina_Bool value) {
    return value != EINA_FALSE;
}

json entryContent(const Evas_Object* entry) {
    const std::unique_ptr<char, Free> text(elm_entry_markup_to_utf8(elm_entry_entry_get(entry)));
    return {{"entry", text ? text.get() : ""}, {"cursor", elm_entry_cursor_pos_get(entry)}};
}

json partContent(const Part& part) {
    if (host::screen::isType(part.object, "elm_entry")) return entryContent(part.object);
    if (part.text) return {{"text", host::screen::seenText(part.object)}};
    if (host::screen::isType(part.object, "elm_button")) return {{"button", host::screen::label(part.object)}};
    const bool isPicture = host::screen::isType(part.object, "elm_image") ||
                           host::screen::isType(part.object, "elm_icon") || host::screen::isType(part.object, "image");
    if (!isPicture) return {{"widget", evas_object_type_get(part.object)}};
    const std::vector<std::string> pictures = host::screen::pictures(part.object);
    return {{"picture", pictures.empty() ? "" : pictures.back()}};
}

json partTable(const std::vector<Part>& parts) {
    json table = json::object();
    for (const Part& part : parts)
        table[part.name] = partContent(part);
    return table;
}

json buttonRow(Evas_Object* button, const std::vector<Part>& parts) {
    Eina_Rectangle area{};
    evas_object_geometry_get(button, &area.x, &area.y, &area.w, &area.h);
    return {{"label", host::screen::label(button)},
            {"part", host::screen::partAround(button, parts)},
            {"style", elm_object_style_get(button)},
            {"focused", flag(elm_object_focus_get(button))},
            {"disabled", flag(elm_object_disabled_get(button))},
            {"geometry", {area.x, area.y, area.w, area.h}}};
}

json itemTexts(const ItemView& view) {
    json table = json::object();
    for (const Part& part : host::screen::partsOf(view.layout)) {
        if (part.text) table[part.name] = host::screen::seenText(part.object);
    }
    return table;
}

json itemRow(const ItemView& view) {
    return {{"text", itemTexts(view)},
            {"focused", flag(elm_object_item_focus_get(view.item))},
            {"disabled", flag(elm_object_item_disabled_get(view.item))},
            {"selected", flag(elm_genlist_item_selected_get(view.item))}};
}

// A popup inside a popup speaks for itself.
json popupRow(Evas_Object* popup) {
    json texts = json::array();
    host::screen::walkInside(popup, [&texts](Evas_Object* object) {
        if (const std::string text = host::screen::seenText(object); !text.empty()) texts.push_back(text);
        return !host::screen::isType(object, "elm_popup");
    });
    return {{"style", elm_object_style_get(popup)}, {"texts", texts}};
}

// In one line; what is not valid UTF-8 is replaced.
std::string readable(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string focusLabel(Evas_Object* focused) {
    if (!host::screen::isType(focused, "elm_genlist")) return host::screen::label(focused);
    Elm_Object_Item* const item = elm_object_focused_item_get(focused);
    for (const ItemView& view : itemViews(focused)) {
        if (view.item == item) return host::screen::label(view.layout);
    }
    return "";
}

}  // namespace

namespace host::screen {

Evas_Object* focused(Evas_Object* window) {
    Evas_Object* object = elm_object_focused_object_get(window);
    if (object == nullptr) object = evas_focus_get(evas_object_evas_get(window));
    return object == nullptr || isType(object, "elm_win") ? nullptr : object;
}

bool isUppermost(Evas_Object* widget, Evas_Object* window) {
    const std::vector<Evas_Object*> popups = widgets(window, "elm_popup");
    while (widget != nullptr && !isType(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return popups.empty() || widget == popups.back();
}

json focus(Evas_Object* window) {
    Evas_Object* const widget = focused(window);
    if (widget == nullptr) return nullptr;
    return {{"label", focusLabel(widget)},
            {"part", partAround(widget, parts(window))},
            {"widget", evas_object_type_get(widget)}};
}

json dump(Evas_Object* window, double time) {
    const std::vector<Part> seenParts = parts(window);
    json buttons = json::array();
    json rows = json::array();
    json popups = json::array();
    for (Evas_Object* button : widgets(window, "elm_button"))
        buttons.push_back(buttonRow(button, seenParts));
    for (Evas_Object* list : widgets(window, "elm_genlist")) {
        for (const ItemView& view : itemViews(list))
            rows.push_back(itemRow(view));
    }
    for (Evas_Object* popup : widgets(window, "elm_popup"))
        popups.push_back(popupRow(popup));
    return {{"time", time},           {"gadget", isGadgetOpen() ? "open" : "closed"},
            {"focus", focus(window)}, {"parts", partTable(seenParts)},
            {"buttons", buttons},     {"rows", rows},
            {"popups", popups}};
}

std::string summary(Evas_Object* window) {
    std::ostringstream lines;
    lines << "  gadget: " << (isGadgetOpen() ? "open" : "closed") << "\n  focus: " << readable(focus(window)) << '\n';
    for (const Text& text : texts(window))
        lines << "  text: " << readable(text.text) << '\n';
    for (const std::string& picture : pictures(window))
        lines << "  picture: " << picture << '\n';
    return lines.str();
}

}  // namespace host::screen
