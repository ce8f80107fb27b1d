#define EFL_EO_API_SUPPORT
#define EFL_BETA_API_SUPPORT
#include "host/screen.h"

#include <Elementary.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};

std::string plainText(const char* markup) {
    const std::unique_ptr<char, Free> plain(elm_entry_markup_to_utf8(markup));
    return plain ? plain.get() : "";
}

// The window's own frame shows the window's title, which is no part of the TV's screen.
bool isWindowFrame(Evas_Object* object) {
    const char* group = nullptr;
    if (!host::screen::isType(object, "edje")) return false;
    edje_object_file_get(object, nullptr, &group);
    return group != nullptr && std::string_view(group).starts_with("elm/border/");
}

bool isTransparent(Evas_Object* object) {
    int alpha = 0;
    evas_object_color_get(object, nullptr, nullptr, nullptr, &alpha);
    return alpha == 0;
}

Eina_Rectangle areaOf(Evas_Object* object) {
    Eina_Rectangle area{};
    evas_object_geometry_get(object, &area.x, &area.y, &area.w, &area.h);
    return area;
}

Eina_Rectangle screenArea(Evas_Object* object) {
    Eina_Rectangle area{};
    evas_output_viewport_get(evas_object_evas_get(object), &area.x, &area.y, &area.w, &area.h);
    return area;
}

void visitShown(Evas_Object* object, const host::screen::Visit& visit) {
    if (!evas_object_visible_get(object)) return;
    if (visit(object)) host::screen::walkInside(object, visit);
}

}  // namespace

namespace host::screen {

bool isType(Evas_Object* object, const char* type) {
    return std::string_view(evas_object_type_get(object)) == type;
}

void walkInside(Evas_Object* object, const Visit& visit) {
    if (!efl_isa(object, EFL_CANVAS_GROUP_CLASS)) return;
    void* member = nullptr;
    Eina_List* members = evas_object_smart_members_get(object);
    EINA_LIST_FREE(members, member) visitShown(static_cast<Evas_Object*>(member), visit);
}

void walk(Evas_Object* window, const Visit& visit) {
    for (Evas_Object* top = evas_object_bottom_get(evas_object_evas_get(window)); top != nullptr;
         top = evas_object_above_get(top)) {
        visitShown(top, visit);
    }
}

Eina_Rectangle seenArea(Evas_Object* object) {
    Eina_Rectangle area = areaOf(object);
    const Eina_Rectangle screen = screenArea(object);
    bool any = eina_rectangle_intersection(&area, &screen);
    for (Evas_Object* clip = evas_object_clip_get(object); any && clip != nullptr; clip = evas_object_clip_get(clip)) {
        const Eina_Rectangle window = areaOf(clip);
        any = evas_object_visible_get(clip) && !isTransparent(clip) && eina_rectangle_intersection(&area, &window);
    }
    return any ? area : Eina_Rectangle{};
}

bool isSeen(Evas_Object* object) {
    if (isTransparent(object)) return false;
    for (Evas_Object* shown = object; shown != nullptr; shown = evas_object_smart_parent_get(shown)) {
        if (!evas_object_visible_get(shown)) return false;
    }
    const Eina_Rectangle area = seenArea(object);
    return area.w > 0 && area.h > 0;
}

std::string seenText(Evas_Object* object) {
    std::string text;
    if (isType(object, "text")) {
        const char* raw = evas_object_text_text_get(object);
        if (raw != nullptr) text = raw;
    } else if (isType(object, "textblock")) {
        const char* markup = evas_object_textblock_text_markup_get(object);
        if (markup != nullptr) text = plainText(markup);
    }
    if (text.empty() || isWindowFrame(evas_object_smart_parent_get(object)) || !isSeen(object)) return "";
    return text;
}

std::string seenPicture(Evas_Object* object) {
    if (!isType(object, "image")) return "";
    const char* file = nullptr;
    evas_object_image_file_get(object, &file, nullptr);
    // A picture inside a layout file belongs to the layout; a key on any other file is only its user's name for it.
    if (file == nullptr || !isSeen(object)) return "";
    const std::filesystem::path path(file);
    return path.extension() == ".edj" ? "" : path.filename().string();
}

std::vector<Text> texts(Evas_Object* root) {
    std::vector<Text> found;
    const Visit collect = [&found](Evas_Object* object) {
        if (std::string text = seenText(object); !text.empty()) found.push_back({std::move(text), object});
        return true;
    };
    isType(root, "elm_win") ? walk(root, collect) : walkInside(root, collect);
    return found;
}

std::string label(Evas_Object* widget) {
    std::string joined;
    for (const Text& text : texts(widget))
        joined += (joined.empty() ? "" : " ") + text.text;
    return joined;
}

std::vector<std::string> pictures(Evas_Object* root) {
    std::vector<std::string> found;
    const Visit collect = [&found](Evas_Object* object) {
        if (std::string picture = seenPicture(object); !picture.empty()) found.push_back(std::move(picture));
        return true;
    };
    if (isType(root, "elm_win")) {
        walk(root, collect);
    } else if (collect(root)) {
        walkInside(root, collect);
    }
    return found;
}

}  // namespace host::screen
