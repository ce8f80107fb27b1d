#include "host/appearance.h"

#include <Elementary.h>
#include <gadget_paths.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "platform_log.h"

namespace {

constexpr const char* kThemeFile = GADGET_HOST_FOLDER "/tv-theme.edj";
constexpr const char* kBackdropGroup = "host/backdrop";
constexpr const char* kTag = "GADGET_HOST";

// A colour class of this ending holds the high-contrast value of the class without it.
constexpr std::string_view kContrastEnding = "/contrast";

using MappedFile = std::unique_ptr<Eina_File, decltype(&eina_file_close)>;

bool isThemeApplied() {
    const Eina_List* node = nullptr;
    void* known = nullptr;
    EINA_LIST_FOREACH(elm_theme_overlay_list_get(nullptr), node, known) {
        if (std::strcmp(static_cast<const char*>(known), kThemeFile) == 0) return true;
    }
    return false;
}

void switchColour(const std::string& name, const Edje_Color_Class& contrast, bool highContrast) {
    if (!highContrast) return edje_color_class_del(name.c_str());
    // The outline and shadow colours of texts are not used.
    edje_color_class_set(name.c_str(), contrast.r, contrast.g, contrast.b, contrast.a, 0, 0, 0, 0, 0, 0, 0, 0);
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
    const MappedFile theme(eina_file_open(kThemeFile, EINA_FALSE), &eina_file_close);
    Eina_Iterator* const classes = theme ? edje_mmap_color_class_iterator_new(theme.get()) : nullptr;
    void* found = nullptr;
    EINA_ITERATOR_FOREACH(classes, found) {
        const auto& contrast = *static_cast<const Edje_Color_Class*>(found);
        const std::string_view name = contrast.name;
        if (!name.ends_with(kContrastEnding)) continue;
        switchColour(std::string(name.substr(0, name.size() - kContrastEnding.size())), contrast, highContrast);
    }
    eina_iterator_free(classes);
}

Evas_Object* addBackdrop(Evas_Object* window) {
    if (!window) return nullptr;
    Evas_Object* const backdrop = elm_layout_add(window);
    if (!backdrop) return nullptr;
    elm_layout_file_set(backdrop, kThemeFile, kBackdropGroup);
    evas_object_size_hint_weight_set(backdrop, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, backdrop);
    evas_object_show(backdrop);
    return backdrop;
}

}  // namespace host
