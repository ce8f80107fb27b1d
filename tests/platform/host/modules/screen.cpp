// A module with one of everything that a dump shows. The keys that reach its popup end up in the layout's hint.
#include <Elementary.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "gadget_host.h"

namespace {

constexpr double kTickSeconds = 0.5;
constexpr const char* kStyle = "hosttest";

Evas_Object* layout = nullptr;
Elm_Genlist_Item_Class* rowClass = nullptr;
Ecore_Timer* timer = nullptr;
int ticks = 0;

std::string fixture(const char* name) {
    return std::string(HOST_TEST_FIXTURES "/") + name;
}

char* rowText(void* data, Evas_Object* /*list*/, const char* /*part*/) {
    return strdup(static_cast<const char*>(data));
}

void showKey(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*popup*/, void* event) {
    const auto* const key = static_cast<Evas_Event_Key_Down*>(event);
    elm_object_part_text_set(layout, "hint", (std::string("key ") + key->keyname).c_str());
}

void close(void* ug, Evas_Object* /*button*/, void* /*event*/) {
    ug_destroy_me(static_cast<ug_handle>(ug));
}

Evas_Object* list(Evas_Object* parent) {
    rowClass = elm_genlist_item_class_new();
    rowClass->item_style = "default";
    rowClass->func.text_get = rowText;
    Evas_Object* const rows = elm_genlist_add(parent);
    for (const char* text : {"First row", "Second row"}) {
        Elm_Object_Item* const row =
            elm_genlist_item_append(rows, rowClass, text, nullptr, ELM_GENLIST_ITEM_NONE, nullptr, nullptr);
        elm_object_item_disabled_set(row, text[0] == 'S');
    }
    return rows;
}

// Counts in the title, so that scripts can tell which tick they see.
Eina_Bool tick(void* /*data*/) {
    elm_object_part_text_set(layout, "PartMain:title", ("tick " + std::to_string(++ticks)).c_str());
    return ECORE_CALLBACK_RENEW;
}

void fill(Evas_Object* popup) {
    layout = elm_layout_add(popup);
    elm_layout_file_set(layout, fixture("screen.edj").c_str(), "outer");
    elm_object_part_text_set(layout, "PartMain:title", "Fish &amp; chips <b>");
    Evas_Object* const picture = elm_image_add(layout);
    elm_image_file_set(picture, fixture("red.png").c_str(), nullptr);
    elm_object_part_content_set(layout, "PartMain:status", picture);
    elm_object_part_content_set(layout, "PartMain:list", list(layout));
    elm_object_content_set(popup, layout);
}

Evas_Object* button(Evas_Object* popup, const char* part, const char* text) {
    Evas_Object* const made = elm_button_add(popup);
    elm_object_style_set(made, kStyle);
    elm_object_text_set(made, text);
    elm_object_part_content_set(popup, part, made);
    return made;
}

void* create(ug_handle ug, int /*mode*/, ug_data /*data*/, void* /*priv*/) {
    elm_theme_extension_add(nullptr, fixture("screen.edj").c_str());
    Evas_Object* const popup = elm_popup_add(static_cast<Evas_Object*>(ug_get_window()));
    elm_object_style_set(popup, kStyle);
    elm_object_part_text_set(popup, "title,text", "Title & more");
    fill(popup);
    elm_object_disabled_set(button(popup, "elm.button.disabled", "Disabled"), EINA_TRUE);
    Evas_Object* const leave = button(popup, "button1", "Leave");
    evas_object_smart_callback_add(leave, "clicked", close, ug);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, showKey, nullptr);
    evas_object_show(popup);
    elm_object_focus_set(leave, EINA_TRUE);
    if (std::getenv("SCREEN_TICKS") != nullptr) timer = ecore_timer_add(kTickSeconds, tick, nullptr);
    return popup;
}

void destroy(ug_handle /*ug*/, ug_data /*data*/, void* /*priv*/) {
    if (timer != nullptr) ecore_timer_del(timer);
    elm_genlist_item_class_free(rowClass);
}

}  // namespace

PLATFORM_API int UG_MODULE_INIT(ug_operations* operations) {
    operations->create = create;
    operations->destroy = destroy;
    return 0;
}

PLATFORM_API void UG_MODULE_EXIT(ug_operations* /*operations*/) {}
