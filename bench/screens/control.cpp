// The control program's entry points and its status screen.
#include "control.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "gadget_host.h"

namespace {

constexpr double kTick = 0.5;
constexpr double kSecond = 1.0;
constexpr int kFrames = 4;
constexpr const char* kVerdictTicks = "BENCH_CONTROL_TICKS";  // ticks to the verdict; not set: there is none

struct Screen {
    ug_handle gadget;
    Evas_Object* popup;
    Evas_Object* layout;
    Evas_Object* picture;
    Evas_Object* spinner;
    Evas_Object* button;
    Ecore_Timer* tick;
    Ecore_Timer* second;
    int ticks;
    int ticksToVerdict;
};
constinit Screen screen{};

void setText(const char* part, const char* id) {
    elm_object_part_text_set(screen.layout, part, control::text(id));
}

void showPicture(int number) {
    std::array<char, 256> path{};
    std::snprintf(path.data(), path.size(), GADGET_IMAGE_FOLDER "network_popup_connect_%d.png", number);
    elm_image_file_set(screen.picture, path.data(), nullptr);
}

void openSettings(void* /*data*/, Evas_Object* /*button*/, void* /*event*/) {
    evas_object_hide(screen.popup);
    control::showSettings(screen.popup);
}

void showVerdict() {
    elm_object_part_content_unset(screen.layout, "PartMain:elm.loader.swallow");
    evas_object_hide(screen.spinner);
    elm_progressbar_pulse(screen.spinner, EINA_FALSE);
    showPicture(6);
    setText("PartMain:connection_msg_block", "TV_SID_WIRED_NW_INTERNET_SETUP_USE");
    setText("PartMain:suggestioneline2", "TV_SID_CONNECTED_INTEERNET_CONTACT_SERVICE_PROVIDER_MSG");
    evas_object_del(screen.button);
    screen.button = control::addButton(screen.layout, "PartMain:elm.swallow.stop", "default", "SID_CLOSE");
    control::addButton(screen.layout, "PartMain:elm.swallow.change_network", "default", "SID_RETRY_ABBR_7");
    Evas_Object* const settings =
        control::addButton(screen.layout, "PartMain:elm.swallow.retry", "default", "TV_SID_IPV6_SETTINGS");
    evas_object_smart_callback_add(settings, "clicked", openSettings, nullptr);
    elm_object_focus_set(screen.button, EINA_TRUE);
}

Eina_Bool onTick(void* /*data*/) {
    ++screen.ticks;
    if (screen.ticks == screen.ticksToVerdict) {
        showVerdict();
        screen.tick = nullptr;
        return ECORE_CALLBACK_CANCEL;
    }
    showPicture(screen.ticks % kFrames);
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool onSecond(void* /*data*/) {
    return ECORE_CALLBACK_RENEW;
}

void close(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*widget*/, void* event) {
    const std::string_view key(static_cast<Evas_Event_Key_Down*>(event)->keyname);
    if (key == "Menu") ug_destroy_me(screen.gadget);
}

void addSpinner() {
    screen.spinner = elm_progressbar_add(screen.layout);
    control::fill(screen.spinner);
    elm_object_style_set(screen.spinner, "C_Loading_WhiteMedium");
    elm_progressbar_pulse_set(screen.spinner, EINA_TRUE);
    elm_progressbar_pulse(screen.spinner, EINA_TRUE);
    elm_object_part_content_set(screen.layout, "PartMain:elm.loader.swallow", screen.spinner);
}

void addPicture() {
    screen.picture = elm_image_add(screen.layout);
    elm_image_preload_disabled_set(screen.picture, EINA_TRUE);
    showPicture(1);
    elm_object_part_content_set(screen.layout, "PartMain:elm.swallow.status", screen.picture);
}

void* onCreate(ug_handle gadget, int /*mode*/, ug_data /*data*/, void* /*priv*/) {
    auto* const window = static_cast<Evas_Object*>(ug_get_window());
    elm_config_focus_highlight_enabled_set(EINA_TRUE);
    elm_win_focus_highlight_enabled_set(window, EINA_TRUE);
    screen = {};
    screen.gadget = gadget;
    screen.popup = elm_popup_add(window);
    control::closeOnMenu(screen.popup);
    if (elm_theme_extension_list_get(nullptr) == nullptr) elm_theme_extension_add(nullptr, control::kLayoutFile);
    elm_object_style_set(screen.popup, "C_PopupBasic_WhiteBottomLarge");
    screen.layout = elm_layout_add(screen.popup);
    elm_layout_file_set(screen.layout, control::kLayoutFile, "ipv6popup");
    control::fill(screen.layout);
    elm_object_content_set(screen.popup, screen.layout);
    evas_object_show(screen.popup);
    addPicture();
    addSpinner();
    setText("PartMain:elm.text.title", "TV_SID_IPV6_STATUS");
    setText("PartMain:connection_msg_block", "COM_TV_SID_VERIFYING_WIRED_NETWORK_CONNECTION");
    screen.button = control::addButton(screen.layout, "PartMain:elm.swallow.cencel", "default", "SID_CANCEL");
    elm_object_focus_set(screen.button, EINA_TRUE);
    elm_object_signal_emit(screen.button, "elm,action,focus", "elm");
    const char* const ticks = std::getenv(kVerdictTicks);
    screen.ticksToVerdict = ticks == nullptr ? -1 : static_cast<int>(std::strtol(ticks, nullptr, 10));
    screen.tick = ecore_timer_add(kTick, onTick, nullptr);
    screen.second = ecore_timer_add(kSecond, onSecond, nullptr);
    return screen.popup;
}

void onDestroy(ug_handle /*ug*/, ug_data /*data*/, void* /*priv*/) {
    control::deleteSettings();
    if (screen.tick != nullptr) ecore_timer_del(screen.tick);
    ecore_timer_del(screen.second);
    evas_object_del(screen.spinner);
}

}  // namespace

namespace control {

void closeOnMenu(Evas_Object* popup) {
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, close, nullptr);
}

Evas_Object* addButton(Evas_Object* parent, const char* part, const char* style, const char* label) {
    Evas_Object* const button = elm_button_add(parent);
    elm_object_style_set(button, style);
    elm_object_text_set(button, text(label));
    elm_object_part_content_set(parent, part, button);
    return button;
}

}  // namespace control

int UG_MODULE_INIT(struct ug_operations* operations) {
    bindtextdomain("ug-Ostrelle-efl", GADGET_LOCALE_FOLDER);
    operations->create = onCreate;
    operations->destroy = onDestroy;
    return 0;
}

void UG_MODULE_EXIT(struct ug_operations* /*operations*/) {}
