#include "host/appearance.h"

#include <Elementary.h>

#include <cstring>

#include "gadget_paths.h"
#include "platform_log.h"

namespace {

constexpr const char* kThemeFile = GADGET_HOST_FOLDER "/tv-theme.edj";
constexpr const char* kBackdropGroup = "host/backdrop";
constexpr const char* kTag = "GADGET_HOST";

struct Colour {
    int red, green, blue, alpha;
};

struct ContrastColour {
    const char* colourClass;
    Colour colour;
};

constexpr Colour kBlack{0, 0, 0, 255};
constexpr Colour kWhite{255, 255, 255, 255};
constexpr Colour kYellow{255, 229, 0, 255};

// What changes in high contrast; the layout files hold the normal values.
constexpr ContrastColour kContrastColours[] = {
    {"gadget/scrim", {4, 7, 12, 219}},
    {"gadget/panel", kBlack},
    {"gadget/edge", kWhite},
    {"gadget/row", kBlack},
    {"gadget/control", kBlack},
    {"gadget/control/line", kWhite},
    {"gadget/field", kBlack},
    {"gadget/line", kWhite},
    {"gadget/text", kWhite},
    {"gadget/text/secondary", kWhite},
    {"gadget/text/disabled", {189, 189, 189, 255}},
    {"gadget/focus", kYellow},
    {"gadget/focus/text", kBlack},
    {"gadget/focus/ring", kWhite},
    {"gadget/pressed", kWhite},
    {"gadget/info", kWhite},
};

bool isThemeApplied() {
    const Eina_List* node = nullptr;
    void* known = nullptr;
    EINA_LIST_FOREACH(elm_theme_overlay_list_get(nullptr), node, known) {
        if (std::strcmp(static_cast<const char*>(known), kThemeFile) == 0) return true;
    }
    return false;
}

}  // namespace

namespace host {

void applyTheme() {
    if (isThemeApplied()) return;
    if (!edje_file_group_exists(kThemeFile, kBackdropGroup)) {
        __dlog_print(DLOG_ID_MAIN, DLOG_ERROR, kTag, "The TV's theme %s is missing or not readable", kThemeFile);
        return;
    }
    elm_theme_overlay_add(nullptr, kThemeFile);
}

void applyContrast(bool highContrast) {
    for (const ContrastColour& entry : kContrastColours) {
        if (!highContrast) {
            edje_color_class_del(entry.colourClass);
            continue;
        }
        // The text's outline and shadow colours are not used.
        const Colour& c = entry.colour;
        edje_color_class_set(entry.colourClass, c.red, c.green, c.blue, c.alpha, 0, 0, 0, 0, 0, 0, 0, 0);
    }
}

Evas_Object* addBackdrop(Evas_Object* window) {
    if (!window) return nullptr;
    Evas_Object* backdrop = elm_layout_add(window);
    if (!backdrop) return nullptr;
    elm_layout_file_set(backdrop, kThemeFile, kBackdropGroup);
    evas_object_size_hint_weight_set(backdrop, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, backdrop);
    evas_object_show(backdrop);
    return backdrop;
}

}  // namespace host
