#include "View/IPSettingsChangeVal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Outside_Text.h"
#include "Common/Resources.h"
#include "View/IPSettings.h"
#include "View/IPSettings_Fields.h"
#include "View/IPSettings_Rows.h"
#include "View/IPSettings_Values.h"

namespace {

constexpr const char* kModeStyle = "C_ListDropdown_White";
constexpr const char* kValueButtonStyle = "changevalbutton_Black_ipv6";
constexpr const char* kValuePart = "elm.bg.input1";
constexpr std::array kModes{kAutomaticMode, kManualMode};

constexpr double kModeListWidth = 408;
constexpr double kModeListHeight = 190;

// Where a popup stands in the window: 0 is left or top, 1 right or bottom. The enlarged look moves it.
constexpr double kModeAcross = 0.708;
constexpr double kModeAcrossEnlarged = 0.748;
constexpr double kIpModeDown = 0.319;
constexpr double kDnsModeDown = 0.61;
constexpr double kPrefixAcross = 0.77;
constexpr double kPrefixAcrossEnlarged = 0.81;
constexpr double kPrefixDown = 0.4371;
constexpr double kEnlargedDown = 0.01;
constexpr int kPixelsPerStep = 1000;

constexpr int kFocusFollowsClicks = 0;  // Elm_Focus_Move_Policy: click
constexpr int kLongestPrefix = 128;
constexpr std::size_t kPrefixDigits = 3;

// The digits typed so far; digits typed before a close by "XF86Close" are still there at the next opening.
constinit char Number[4] = "";
// Set while the mode choice selects its current entry: that is not the user's choice.
constinit bool IsBlock = false;

void place(Evas_Object* popup, double across, double acrossEnlarged, double down) {
    const bool enlarged = IsEnhancedUIMode(kEnlargedFocusMode);
    if (enlarged) LOG_DEBUG("ENLARGE_MODE mode enabled\n");
    elm_popup_align_set(popup, enlarged ? acrossEnlarged : across, enlarged ? down + kEnlargedDown : down);
}

bool isOneOf(const char* keyName, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* name) { return string_cmp(keyName, name) == 0; });
}

const char* keyName(const void* event) {
    const auto* const pressed = static_cast<const Evas_Event_Key_Down*>(event);
    return pressed ? pressed->keyname : nullptr;
}

// ---- the mode choice ----

// May be called from inside the list's own callbacks, so the popup goes a turn later.
void closeModePopup() {
    sIPSetting* const settings = getObject();
    if (!settings || !settings->typePopup) return;
    undimSettingsPopup();
    settings->typeList = nullptr;
    deleteLater(std::exchange(settings->typePopup, nullptr));
    focusRowsLater();
}

void genlist_item_activated_cb(void* /*data*/, Evas_Object* /*list*/, void* /*item*/) {
    closeModePopup();
}

void __clicked_outside_popup_cb(void* /*data*/, Evas_Object* /*popup*/, void* /*event*/) {
    LOG_DEBUG("Clicked outside the popup\n");
    closeModePopup();
}

void Close_popup_On_return_Key(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*list*/, void* event) {
    if (isOneOf(keyName(event), {"XF86Back"})) closeModePopup();
}

void KeyEventCB(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*popup*/, void* event) {
    if (isOneOf(keyName(event), {"XF86Back", "XF86Close"})) closeModePopup();
}

const char* modeOf(const Elm_Object_Item* item) {
    const auto index = reinterpret_cast<std::size_t>(elm_object_item_data_get(item));
    return index < kModes.size() ? kModes[index] : nullptr;
}

char* _IP_Type_label_get(void* data, Evas_Object* /*list*/, const char* part) {
    const auto index = reinterpret_cast<std::size_t>(data);
    const bool known = index < kModes.size() && isOneOf(part, {"elm.text.sliding", "elm.text"});
    return strdup(known ? localised(kModes[index]) : "");
}

// What the two entries do for one of the mode rows.
struct ModeChoice {
    int row;
    void (*automatic)(sIPSetting* settings);
    void (*manual)(sIPSetting* settings);
    bool frees;  // the manual mode frees the DNS server's row
};
constexpr std::array kChoices{
    ModeChoice{kIpModeRow, IP_Auto_Btn, IP_Man_Btn, false},
    ModeChoice{kDnsModeRow, DNS_Auto_Btn, DNS_Man_Btn, true},
};

void IPSettingSelCB(void* data, Evas_Object* /*list*/, void* item) {
    if (std::exchange(IsBlock, false)) return;
    sIPSetting* const settings = getObject();
    const char* const mode = modeOf(static_cast<Elm_Object_Item*>(item));
    if (!settings || !mode) return;
    const bool manual = isMode(mode, kManualMode);
    for (const ModeChoice& choice : kChoices) {
        if (string_cmp(static_cast<const char*>(data), settingsRowLabel(choice.row)) != 0) continue;
        (manual ? choice.manual : choice.automatic)(settings);
        if (choice.frees) enableDnsServer(*settings, manual);
    }
}

void addModes(Evas_Object* list, const char* rowLabel) {
    Elm_Genlist_Item_Class* const modeClass = elm_genlist_item_class_new();
    modeClass->item_style = kModeStyle;
    modeClass->func.text_get = _IP_Type_label_get;
    for (std::size_t index = 0; index < kModes.size(); ++index) {
        elm_genlist_item_append(list, modeClass, reinterpret_cast<void*>(index), nullptr, ELM_GENLIST_ITEM_NONE,
                                IPSettingSelCB, rowLabel);
    }
    elm_genlist_item_class_free(modeClass);
}

void selectCurrentMode(const sIPSetting& settings) {
    const bool manual = isMode(settingsRowValue(settings.currentItem), localised(kManualMode));
    Elm_Object_Item* const current =
        manual ? elm_genlist_last_item_get(settings.typeList) : elm_genlist_first_item_get(settings.typeList);
    IsBlock = true;
    elm_genlist_item_selected_set(current, EINA_TRUE);
}

void focusSelectedMode(void* /*data*/) {
    const sIPSetting* const settings = isSettingsOpen() ? getObject() : nullptr;
    Elm_Object_Item* const selected =
        settings && settings->typeList ? elm_genlist_selected_item_get(settings->typeList) : nullptr;
    if (selected) elm_object_item_focus_set(selected, EINA_TRUE);
}

// An entry can take the focus once it is drawn, and not before the turn after that.
void focusWhenDrawn(void* /*data*/, Evas_Object* list, void* item) {
    if (item == elm_genlist_selected_item_get(list)) ecore_job_add(focusSelectedMode, nullptr);
}

Evas_Object* addModeList(sIPSetting& settings, const char* rowLabel) {
    Evas_Object* const list = elm_genlist_add(settings.typePopup);
    settings.typeList = list;
    if (!list) return nullptr;
    expandAndFill(list);
    evas_object_smart_callback_add(list, "realized", _genlist_item_reailzed_cb, nullptr);
    evas_object_smart_callback_add(list, "realized", focusWhenDrawn, nullptr);
    evas_object_event_callback_add(list, EVAS_CALLBACK_KEY_DOWN, Close_popup_On_return_Key, &settings);
    evas_object_show(list);
    addModes(list, rowLabel);
    const double scale = elm_config_scale_get() / elm_app_base_scale_get();
    Evas_Object* const table =
        widget_min_set(list, settings.typePopup, static_cast<int>(std::lround(kModeListWidth * scale)),
                       static_cast<int>(std::lround(kModeListHeight * scale)));
    fill(table, 0.0, EVAS_HINT_EXPAND);
    evas_object_show(table);
    elm_object_content_set(settings.typePopup, table);
    return list;
}

// ---- the prefix length ----

constexpr std::array<const char*, 10> kKeypadDigits{"KP_Insert", "KP_End",   "KP_Down", "KP_Next", "KP_Left",
                                                    "KP_Begin",  "KP_Right", "KP_Home", "KP_Up",   "KP_Prior"};
constexpr std::array<const char*, 10> kDigits{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};

// The key's text is the sender's own: the name is replaced, never written into.
Evas_Event_Key_Down* ipCheckNumPad(Evas_Event_Key_Down* event) {
    for (std::size_t digit = 0; digit < kKeypadDigits.size(); ++digit) {
        if (string_cmp(event->keyname, kKeypadDigits[digit]) == 0) {
            event->keyname = const_cast<char*>(kDigits[digit]);
            break;
        }
    }
    return event;
}

void closePrefixPopup() {
    if (const sipSettingChangeVal* editor = ipSettingChangeValObject()) editor->destroy();
    focusRowsLater();
}

void clearNumber() {
    copyText(Number, "");
}

void showNumber(Evas_Object* button, int number) {
    elm_object_text_set(button, std::to_string(number).c_str());
}

int numberIn(const char* digits) {
    return static_cast<int>(std::strtol(digits, nullptr, 10));
}

void showTyped(Evas_Object* button) {
    showNumber(button, numberIn(Number));
}

void saveShown(sipSettingChangeVal& editor, Evas_Object* button) {
    const char* const shown = elm_object_text_get(button);
    copyTextOrEmpty(editor.savedValue, shown);
}

void takeThirdDigit(sipSettingChangeVal& editor, Evas_Object* button) {
    elm_object_focus_set(button, EINA_TRUE);
    if (numberIn(Number) <= kLongestPrefix) {
        showTyped(button);
        saveShown(editor, button);
    } else {
        elm_object_text_set(button, editor.savedValue);
    }
    clearNumber();
}

void takeDigit(sipSettingChangeVal& editor, Evas_Object* button, char digit) {
    const std::size_t length = std::strlen(Number);
    Number[length] = digit;
    Number[length + 1] = '\0';
    if (length + 1 == kPrefixDigits) return takeThirdDigit(editor, button);
    showTyped(button);
}

void confirmShown(sipSettingChangeVal& editor, sIPSetting* settings, Evas_Object* button) {
    clearNumber();
    saveShown(editor, button);
    if (string_cmp(editor.savedValue, kNoPrefix) != 0) {
        fillBtnData(settings, editor.savedValue);
        copyText(sglobalIPValuesObj.prefixLength, editor.savedValue);
    }
    closePrefixPopup();
}

// Closes everything, as this key does elsewhere in the screen.
void _On_Pressing_Menu() {
    LOG_SCOPE();
    leaveSettingsAndGadget();
}

bool isDigit(const char* name) {
    return name && name[0] >= '0' && name[0] <= '9' && name[1] == '\0';
}

void ipSettingChangeBtn1Val(void* data, Evas* /*canvas*/, Evas_Object* button, void* event) {
    LOG_SCOPE();
    sipSettingChangeVal* const editor = openPrefixPopup();
    // A click by key has closed the popup already when the key itself comes here.
    if (!editor || editor->valueButton != button || !event) return;
    const char* const shown = elm_object_text_get(button);
    const int number = shown ? numberIn(shown) : 0;
    const char* const name = ipCheckNumPad(static_cast<Evas_Event_Key_Down*>(event))->keyname;
    if (isOneOf(name, {"Right"})) {
        clearNumber();
        saveShown(*editor, button);
    }
    if (isDigit(name)) return takeDigit(*editor, button, name[0]);
    showNumber(button, number);
    if (isOneOf(name, {"Return", "XF86Back"})) return confirmShown(*editor, static_cast<sIPSetting*>(data), button);
    if (isOneOf(name, {"Menu"})) {
        LOG_DEBUG("Menu key pressed. Exit Application\n");
        _On_Pressing_Menu();
    }
}

void callipSettingChangeBtn1Val(void* data, Evas_Object* button, void* /*event*/) {
    elm_object_focus_set(button, EINA_TRUE);
    LOG_DEBUG(" ------------- setFocusOnBtn ---------------------- \n");
    elm_object_signal_emit(button, "elm,action,focus", "elm");
    const PlatformText name(strdup("Return"));
    Evas_Event_Key_Down pressed{};
    pressed.keyname = name.get();
    ipSettingChangeBtn1Val(data, nullptr, button, &pressed);
}

void KeyEventCB_ChangeVal(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*popup*/, void* event) {
    if (isOneOf(keyName(event), {"XF86Back", "XF86Close", "Return"})) closePrefixPopup();
}

void __clicked_outside_change_val_pop(void* /*data*/, Evas_Object* /*popup*/, void* /*event*/) {
    LOG_DEBUG("Clicked outside the popup >>ipchangeval\n");
    undimSettingsPopup();
    closePrefixPopup();
}

Evas_Object* addPrefixPopup(Evas_Object* parent, const char* style) {
    Evas_Object* const popup = elm_popup_add(parent);
    if (!popup) return nullptr;
    elm_config_focus_move_policy_set(static_cast<Elm_Focus_Move_Policy>(kFocusFollowsClicks));
    dimSettingsPopup();
    evas_object_smart_callback_add(popup, "block,clicked", __clicked_outside_change_val_pop, nullptr);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, Reset_Time_Flag, nullptr);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, KeyEventCB_ChangeVal, nullptr);
    elm_object_style_set(popup, style);
    if (IsEnhancedUIMode(kHighContrastMode)) {
        LOG_DEBUG("High Contrast mode enabled\n");
        elm_object_signal_emit(popup, "highcontrast", "");
    }
    evas_object_show(popup);
    return popup;
}

void addValueButton(sipSettingChangeVal& editor, sIPSetting* settings, const char* value) {
    Evas_Object* const button = elm_button_add(editor.popup);
    editor.valueButton = button;
    if (!button) return;
    elm_object_style_set(button, kValueButtonStyle);
    elm_object_text_set(button, value);
    elm_object_part_content_set(editor.popup, kValuePart, button);
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, ipSettingChangeBtn1Val, settings);
    single_chain_set_focus_DOWNUP(&editor.valueButton, 1);
    evas_object_smart_callback_add(button, "clicked", callipSettingChangeBtn1Val, settings);
    evas_object_show(button);
    elm_object_mirrored_automatic_set(editor.popup, EINA_FALSE);
    elm_object_mirrored_set(editor.popup, EINA_FALSE);
    elm_object_focus_set(button, EINA_TRUE);
    elm_object_signal_emit(button, "elm,action,focus", "elm");
}

}  // namespace

void showIPTypePopup(sIPSetting* settings, const char* rowLabel) {
    LOG_SCOPE();
    if (!settings || !rowLabel) return;
    settings->typePopup = elm_popup_add(settings->popup);
    if (!settings->typePopup) return;
    Evas_Object* const popup = settings->typePopup;
    dimSettingsPopup();
    elm_object_style_set(popup, kModeStyle);
    expandAndFill(popup);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, Reset_Time_Flag, nullptr);
    evas_object_event_callback_add(popup, EVAS_CALLBACK_KEY_DOWN, KeyEventCB, nullptr);
    evas_object_smart_callback_add(popup, "block,clicked", __clicked_outside_popup_cb, nullptr);
    evas_object_show(popup);
    Evas_Object* const list = addModeList(*settings, rowLabel);
    if (!list) return closeModePopup();
    selectCurrentMode(*settings);
    elm_scroller_policy_set(list, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
    elm_object_focus_set(list, EINA_TRUE);
    elm_object_focus_set(popup, EINA_TRUE);
    const bool isDns = string_cmp(rowLabel, settingsRowLabel(kDnsModeRow)) == 0;
    place(popup, kModeAcross, kModeAcrossEnlarged, isDns ? kDnsModeDown : kIpModeDown);
    evas_object_smart_callback_add(list, "activated", genlist_item_activated_cb, nullptr);
}

void showipSettingChangeValPopup(Evas_Object* parent, const char* style, sIPSetting* settings, const char* value,
                                 const char* label, std::int16_t /*listWidth*/, std::int16_t rowY) {
    LOG_SCOPE();
    sipSettingChangeVal* const editor = ipSettingChangeValObject();
    LOG_DEBUG("EDJEFILE==%s\n", kLayoutFile);
    if (!editor) return;
    editor->popup = addPrefixPopup(parent, style);
    if (!editor->popup) return;
    const bool isPrefixRow = string_cmp(label, localised("TV_SID_PREFIX_LENGTH")) == 0;
    const int steps = rowY / kPixelsPerStep;
    place(editor->popup, kPrefixAcross, kPrefixAcrossEnlarged, isPrefixRow ? steps + kPrefixDown : 0.0);
    LOG_DEBUG("Selected Item : %s Selected Item Value : %s\n", label ? label : "", value ? value : "");
    addValueButton(*editor, settings, value);
    copyTextOrEmpty(editor->savedValue, value);
    LOG_DEBUG("Prefix : %s Selected Item : %s Selected Item Value : %s\n", editor->savedValue, label ? label : "",
              value ? value : "");
    elm_object_text_set(editor->valueButton, editor->savedValue);
}
