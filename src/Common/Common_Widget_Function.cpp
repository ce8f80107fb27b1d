#include "Common/Common_Widget_Function.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "Common/Log.h"
#include "View/NS_Close_Keys.h"

namespace {

// Styles that show a value beside the label, as a list row does.
constexpr std::array kValueStyles{"Network_Submenubtn", "IP_submenubtn"};

bool showsValue(const char* style) {
    for (const char* known : kValueStyles) {
        if (style && std::strcmp(style, known) == 0) return true;
    }
    return false;
}

void linkRing(Evas_Object** widgets, int count, Elm_Focus_Direction forward, Elm_Focus_Direction back) {
    if (!widgets) return;
    for (int i = 0; i < count; ++i) {
        if (!widgets[i]) continue;
        elm_object_focus_next_object_set(widgets[i], widgets[(i + 1) % count], forward);
        elm_object_focus_next_object_set(widgets[i], widgets[(i + count - 1) % count], back);
    }
}

void linkToItself(Evas_Object** widgets, int count, Elm_Focus_Direction forward, Elm_Focus_Direction back) {
    if (!widgets) return;
    for (int i = 0; i < count; ++i) {
        if (!widgets[i]) continue;
        elm_object_focus_next_object_set(widgets[i], widgets[i], forward);
        elm_object_focus_next_object_set(widgets[i], widgets[i], back);
    }
}

// A widget that goes loses its parts one by one, and the toolkit would give the focus to those that come to lie under
// the pointer: it then remembers a widget that is gone.
void deleteNow(void* widget) {
    auto* const object = static_cast<Evas_Object*>(widget);
    Evas* const canvas = evas_object_evas_get(object);
    evas_event_freeze(canvas);
    evas_object_del(object);
    evas_event_thaw(canvas);
}

void cancelDeletion(void* job, Evas* /*canvas*/, Evas_Object* /*widget*/, void* /*event*/) {
    ecore_job_del(static_cast<Ecore_Job*>(job));
}

}  // namespace

Evas_Object* createButton(Evas_Object* parent, const char* style, Evas_Smart_Cb clicked, const char* label,
                          const char* value, void* data) {
    LOG_SCOPE();
    if (!parent) {
        LOG_DEBUG("User passed data is null\n");
        return nullptr;
    }
    Evas_Object* button = elm_button_add(parent);
    if (!button) return nullptr;
    elm_object_style_set(button, style);
    if (showsValue(style)) {
        elm_object_part_text_set(button, "elm.text", label);
        elm_object_part_text_set(button, "listvalue", value);
        evas_object_size_hint_weight_set(button, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    } else {
        elm_object_text_set(button, label);
        evas_object_size_hint_weight_set(button, EVAS_HINT_EXPAND, 0.0);
    }
    elm_object_signal_emit(button, "theme,black", "");
    evas_object_size_hint_align_set(button, EVAS_HINT_FILL, 0.0);
    evas_object_smart_callback_add(button, "clicked", clicked, data);
    elm_object_focus_allow_set(button, EINA_TRUE);
    evas_object_event_callback_add(button, EVAS_CALLBACK_MOUSE_IN, MouseIn_Focus_cb, nullptr);
    evas_object_event_callback_add(button, EVAS_CALLBACK_MOUSE_MOVE, MouseIn_Focus_cb, nullptr);
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, close_win, nullptr);
    evas_object_show(button);
    return button;
}

void MouseIn_Focus_cb(void* /*data*/, Evas* /*canvas*/, Evas_Object* object, void* /*event*/) {
    LOG_SCOPE();
    if (!object) {
        LOG_DEBUG("User passed data is null\n");
        return;
    }
    elm_object_focus_set(object, EINA_TRUE);
}

void set_focus_chain_left_right(Evas_Object** widgets, int count) {
    LOG_SCOPE();
    linkRing(widgets, count, ELM_FOCUS_RIGHT, ELM_FOCUS_LEFT);
}

void set_focus_chain_up_down(Evas_Object** widgets, int count) {
    LOG_SCOPE();
    linkRing(widgets, count, ELM_FOCUS_DOWN, ELM_FOCUS_UP);
}

void single_chain_set_focus_LEFTRIGHT(Evas_Object** widgets, int count) {
    LOG_SCOPE();
    linkToItself(widgets, count, ELM_FOCUS_RIGHT, ELM_FOCUS_LEFT);
}

void single_chain_set_focus_DOWNUP(Evas_Object** widgets, int count) {
    LOG_SCOPE();
    linkToItself(widgets, count, ELM_FOCUS_DOWN, ELM_FOCUS_UP);
}

Eina_Rectangle getGeometry(const Evas_Object* widget) {
    LOG_SCOPE();
    Eina_Rectangle place{};
    if (widget) evas_object_geometry_get(widget, &place.x, &place.y, &place.w, &place.h);
    return place;
}

void _genlist_item_reailzed_cb(void* /*data*/, Evas_Object* /*list*/, void* item) {
    if (item) elm_object_item_signal_emit(static_cast<Elm_Object_Item*>(item), "bg,black,align,left", "");
}

void deleteObject(Evas_Object*& field) {
    if (field) deleteNow(field);
    field = nullptr;
}

void fill(Evas_Object* widget, double weightAcross, double weightDown) {
    evas_object_size_hint_weight_set(widget, weightAcross, weightDown);
    evas_object_size_hint_align_set(widget, EVAS_HINT_FILL, EVAS_HINT_FILL);
}

void expandAndFill(Evas_Object* widget) {
    fill(widget, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
}

void keepPointerFromFocusing(Evas_Object* widget) {
    elm_object_focus_move_policy_automatic_set(widget, EINA_FALSE);
    elm_object_focus_move_policy_set(widget, ELM_FOCUS_MOVE_POLICY_KEY_ONLY);
}

void deleteLater(Evas_Object* widget) {
    if (!widget) return;
    evas_object_hide(widget);
    // Its parent may delete it before its turn comes.
    evas_object_event_callback_add(widget, EVAS_CALLBACK_DEL, cancelDeletion, ecore_job_add(deleteNow, widget));
}
