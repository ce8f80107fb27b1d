// What the toolkit alone costs: a module of popup, layout, picture, spinner, button and timer, and nothing else.
#include <Elementary.h>

#include <string_view>

#include "gadget_host.h"
#include "gadget_paths.h"

namespace {

struct Screen {
    Evas_Object* popup;
    Evas_Object* layout;
    Ecore_Timer* timer;
};
constinit Screen screen{};

Eina_Bool tick(void* /*data*/) {
    return ECORE_CALLBACK_RENEW;
}

void closeOnMenu(void* ug, Evas* /*canvas*/, Evas_Object* /*button*/, void* event) {
    const std::string_view key(static_cast<Evas_Event_Key_Down*>(event)->keyname);
    if (key == "Menu") ug_destroy_me(static_cast<ug_handle>(ug));
}

Evas_Object* inPart(const char* part, Evas_Object* content) {
    elm_object_part_content_set(screen.layout, part, content);
    return content;
}

void addContent(ug_handle ug) {
    Evas_Object* const picture = inPart("PartMain:elm.swallow.status", elm_image_add(screen.layout));
    elm_image_preload_disabled_set(picture, EINA_TRUE);
    elm_image_file_set(picture, GADGET_IMAGE_FOLDER "network_popup_connect_1.png", nullptr);
    Evas_Object* const spinner = inPart("PartMain:elm.loader.swallow", elm_progressbar_add(screen.layout));
    elm_object_style_set(spinner, "C_Loading_WhiteMedium");
    elm_progressbar_pulse_set(spinner, EINA_TRUE);
    elm_progressbar_pulse(spinner, EINA_TRUE);
    Evas_Object* const button = inPart("PartMain:elm.swallow.cencel", elm_button_add(screen.layout));
    elm_object_text_set(button, "Cancel");
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, closeOnMenu, ug);
    elm_object_focus_set(button, EINA_TRUE);
}

void* create(ug_handle ug, int /*mode*/, ug_data /*data*/, void* /*priv*/) {
    screen.popup = elm_popup_add(static_cast<Evas_Object*>(ug_get_window()));
    if (elm_theme_extension_list_get(nullptr) == nullptr) elm_theme_extension_add(nullptr, GADGET_LAYOUT_FILE);
    elm_object_style_set(screen.popup, "C_PopupBasic_WhiteBottomLarge");
    screen.layout = elm_layout_add(screen.popup);
    elm_layout_file_set(screen.layout, GADGET_LAYOUT_FILE, "ipv6popup");
    elm_object_content_set(screen.popup, screen.layout);
    evas_object_show(screen.popup);
    addContent(ug);
    screen.timer = ecore_timer_add(1.0, tick, nullptr);
    return screen.popup;
}

void destroy(ug_handle /*ug*/, ug_data /*data*/, void* /*priv*/) {
    ecore_timer_del(screen.timer);
}

}  // namespace

PLATFORM_API int UG_MODULE_INIT(ug_operations* operations) {
    operations->create = create;
    operations->destroy = destroy;
    return 0;
}

PLATFORM_API void UG_MODULE_EXIT(ug_operations* /*operations*/) {}
