#include "View/IPSettings.h"

#include <cstring>
#include <utility>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Status_Store.h"
#include "MW_CAPI/MWCapiWifi.h"
#include "MW_CAPI/MWCapiWired.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSettingsChangeVal.h"
#include "View/IPSettings_Apply.h"
#include "View/IPSettings_Networks.h"
#include "View/IPSettings_Rows.h"
#include "View/IPSettings_Values.h"
#include "View/IPSingleton.h"
#include "View/NS_Buttons.h"
#include "View/NS_Main.h"

namespace {

constexpr const char* kPopupStyle = "c_popup_l_bottom";
constexpr const char* kPrefixPopupStyle = "ip_subctrl_ipv6";
constexpr int kContextInfo = 3;  // ELM_ACCESS_CONTEXT_INFO
constexpr double kListWidth = 250;
constexpr double kListHeight = 264;

constinit Evas_Object* gParent = nullptr;
constinit Ecore_Job* refocus = nullptr;
constinit decltype(sIPSettingCallbacks::confirmed) fptrOkBtnCBObj = nullptr;
constinit decltype(sIPSettingCallbacks::closed) fptrCancelBtnCBObj = nullptr;

// What every way out of the screen ends with.
void closeScreen(const sIPSetting& settings) {
    closeEditors();
    stopAddressChanges(settings);
    delIPSettings();
    forgetConnHandler();
}

// A popup that goes hands the focus back to whom it took it from; that may be after the status screen has given it to
// its button.
void focusStatusScreen(void* /*data*/) {
    refocus = nullptr;
    focusStatusBelow();
}

void focusStatusScreenLater() {
    if (!refocus) refocus = ecore_job_add(focusStatusScreen, nullptr);
}

void Ok_Btn_cb(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    sIPSetting* const settings = openSettings(data);
    if (!settings) {
        LOG_DEBUG("Invalid Argument\n");
        return;
    }
    LOG_DEBUG("%s\n", settingsNetworkOf(settings->networkType).said);
    LOG_DEBUG("IP Mode and DNS Mode set\n");
    ConfigKind kind{};
    if (shownConfiguration(*settings, kind)) Set_Conn_Info(kind, settings->networkType, settings);
    const sglobalIPValues valuesCopy = sglobalIPValuesObj;
    if (fptrOkBtnCBObj) fptrOkBtnCBObj(settings->callerData, &valuesCopy);
    closeScreen(*settings);
    focusStatusScreenLater();
}

void close_Btn_cb(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    sIPSetting* const settings = openSettings(data);
    if (!settings) {
        LOG_DEBUG("Invalid Argument\n");
        return;
    }
    reverseIPSettingsChanges(settings);
    if (fptrCancelBtnCBObj) fptrCancelBtnCBObj(settings->callerData);
    closeScreen(*settings);
    focusStatusScreenLater();
}

char* _access_info_cb_ok(void* /*data*/, Evas_Object* /*object*/) {
    LOG_SCOPE();
    return _access_info_cb("This button will check the network connection with current ip settings values!");
}

char* _access_info_cb_cancel(void* /*data*/, Evas_Object* /*object*/) {
    LOG_SCOPE();
    return _access_info_cb("This button will cancel the change in IP settings values!");
}

void closeByKey(sIPSetting* settings) {
    close_Btn_cb(settings, nullptr, nullptr);
}

// The status screen below is empty then: somebody must hear the close keys.
void leaveEmptyStatus(sIPSetting* /*settings*/) {
    destroyIPSettings();
    focusStatusScreenLater();
}

void leaveGadget(sIPSetting* /*settings*/) {
    leaveSettingsAndGadget();
}

struct RemoteKey {
    const char* name;
    void (*act)(sIPSetting* settings);
};
constexpr RemoteKey kRemoteKeys[] = {{"XF86Back", closeByKey}, {"XF86Close", leaveEmptyStatus}, {"Menu", leaveGadget}};

void ProcessRemoteKeys(void* data, Evas* /*canvas*/, Evas_Object* /*popup*/, void* event) {
    LOG_SCOPE();
    const auto* const pressed = static_cast<const Evas_Event_Key_Down*>(event);
    if (!pressed) {
        LOG_DEBUG("Event Argument casting NULL for ev of * to  Evas_Event_Key_Down\n");
        return;
    }
    LOG_DEBUG("Remote Key : [%s]\n", pressed->keyname);
    for (const RemoteKey& key : kRemoteKeys) {
        if (string_cmp(pressed->keyname, key.name) == 0) return key.act(static_cast<sIPSetting*>(data));
    }
}

void unhighlightSelected(const sIPSetting& settings) {
    Elm_Object_Item* const selected = elm_genlist_selected_item_get(settings.list);
    if (selected) elm_object_item_signal_emit(selected, "elm,state,unselected", "elm");
}

void ListItemFocusCB(void* data, Evas_Object* list, void* item) {
    LOG_SCOPE();
    const auto* const settings = static_cast<sIPSetting*>(data);
    if (!settings) return;
    unhighlightSelected(*settings);
    if (item && item == elm_genlist_selected_item_get(list)) {
        elm_object_item_signal_emit(static_cast<Elm_Object_Item*>(item), "elm,state,focused", "elm");
    }
}

// The list keeps its item's focus when it loses its own; two rows of light would be on the screen.
void ButtonFocusCB(void* data, Evas_Object* /*button*/, void* /*event*/) {
    LOG_SCOPE();
    const auto* const settings = static_cast<sIPSetting*>(data);
    if (!settings) return;
    unhighlightSelected(*settings);
    Elm_Object_Item* const focused = elm_object_focused_item_get(settings->list);
    if (focused) elm_object_item_focus_set(focused, EINA_FALSE);
}

void hold(Evas_Event_Key_Down& pressed) {
    pressed.event_flags = static_cast<Evas_Event_Flags>(pressed.event_flags | EVAS_EVENT_FLAG_ON_HOLD);
}

// The list itself would stop on each disabled row. Beyond the last one comes the OK button, in both directions.
void moveBetweenRows(void* data, Evas* /*canvas*/, Evas_Object* list, void* event) {
    const auto* const settings = static_cast<sIPSetting*>(data);
    auto& pressed = *static_cast<Evas_Event_Key_Down*>(event);
    const bool down = string_cmp(pressed.keyname, "Down") == 0;
    if (!down && string_cmp(pressed.keyname, "Up") != 0) return;
    Elm_Object_Item* const next = nextEnabledRow(elm_object_focused_item_get(list), down);
    if (next) {
        elm_object_item_focus_set(next, EINA_TRUE);
    } else {
        elm_object_focus_set(settings->okButton, EINA_TRUE);
    }
    hold(pressed);
}

// From the buttons, Down goes to the first row and Up to the last one that can be selected.
Eina_Bool eventCB_focuschain(void* data, Evas_Object* /*object*/, Evas_Object* /*source*/, Evas_Callback_Type type,
                             void* event) {
    LOG_SCOPE();
    if (type != EVAS_CALLBACK_KEY_DOWN || !event) return EINA_FALSE;
    auto* const pressed = static_cast<Evas_Event_Key_Down*>(event);
    const auto* const list = static_cast<Evas_Object*>(data);
    Elm_Object_Item* target = nullptr;
    if (string_cmp(pressed->keyname, "Down") == 0) {
        target = elm_genlist_first_item_get(list);
    } else if (string_cmp(pressed->keyname, "Up") == 0) {
        target = elm_genlist_last_item_get(list);
        if (target && elm_object_item_disabled_get(target)) target = elm_genlist_item_prev_get(target);
    }
    if (!target) return EINA_FALSE;
    elm_object_item_focus_set(target, EINA_TRUE);
    hold(*pressed);
    return EINA_TRUE;
}

// How far down the window the row lies, in pixels.
std::int16_t rowPosition(const sIPSetting& settings) {
    Evas_Object* const row = elm_object_item_track(settings.currentItem);
    const Eina_Rectangle place = getGeometry(row);
    elm_object_item_untrack(settings.currentItem);
    return static_cast<std::int16_t>(place.y);
}

void showChangeValPopup(sIPSetting* settings) {
    LOG_SCOPE();
    const sipSettingChangeVal* const editor = ipSettingChangeValObject();
    if (!editor) {
        LOG_DEBUG("Unable to show popup\n");
        return;
    }
    const PlatformText label(modifyString(settingsRowLabel(settings->currentItem)));
    if (!label) return;
    editor->show(settings->popup, kPrefixPopupStyle, settings, settingsRowValue(settings->currentItem), label.get(),
                 static_cast<std::int16_t>(getGeometry(settings->list).w), rowPosition(*settings));
}

void showKeyboardPopup() {
    LOG_SCOPE();
    sipDataSettingChangeVal* const editor = ipDataSettingChangeValObject();
    sIPSetting* const settings = getObject();
    if (!editor || !settings) {
        LOG_DEBUG("Unable to Create sIPDataSettingChangeVal object\n");
        return;
    }
    LOG_DEBUG("Ready to Launch Keyboard\n");
    const PlatformText label(modifyString(settingsRowLabel(settings->currentItem)));
    editor->onResult = processKeyboardData;
    evas_object_hide(settings->popup);
    editor->show(gParent, label.get(), settingsRowValue(settings->currentItem));
    if (isKeyboardOpen()) {
        evas_object_hide(settings->popup);
    } else {
        evas_object_show(settings->popup);
    }
}

void showEditor(sIPSetting& settings) {
    switch (settingsRowEditor(settings.currentItem)) {
        case RowEditor::kMode:
            LOG_DEBUG("Show IP/DNS Config Type Popup\n");
            return showIPTypePopup(&settings, settingsRowLabel(settings.currentItem));
        case RowEditor::kPrefix:
            return showChangeValPopup(&settings);
        case RowEditor::kKeyboard:
            LOG_DEBUG("Show IP/Gateway/DSN Input Popup\n");
            return showKeyboardPopup();
    }
}

// The toolkit remembers who had the focus before a popup: not a row, which may be drawn anew meanwhile.
void openEditor(sIPSetting& settings) {
    focusStatusBelow();
    showEditor(settings);
    if (!isEditorOpen()) focusRowsLater();
}

void _item_sel_cb(void* /*data*/, Evas_Object* list, void* item) {
    LOG_SCOPE();
    // The second click of one turn may come when an editor is open already, or the screen has gone.
    if (!isSettingsOpen() || isEditorOpen()) return;
    sIPSetting* const settings = getObject();
    Elm_Object_Item* const focused = elm_object_focused_item_get(list);
    settings->currentItem = focused ? focused : static_cast<Elm_Object_Item*>(item);
    // Before the editor opens, so that its first picture is the last one.
    elm_genlist_item_selected_set(static_cast<Elm_Object_Item*>(item), EINA_FALSE);
    openEditor(*settings);
}

struct PopupButton {
    const char* textId;
    const char* part;
    Evas_Smart_Cb clicked;
    char* (*accessInfo)(void* data, Evas_Object* object);
    Evas_Object* sIPSetting::*field;
};
constexpr PopupButton kPopupButtons[] = {
    {"COM_SID_OK", "button1", Ok_Btn_cb, _access_info_cb_ok, &sIPSetting::okButton},
    {"SID_CANCEL", "button2", close_Btn_cb, _access_info_cb_cancel, &sIPSetting::cancelButton},
};

void addButton(sIPSetting& settings, const PopupButton& kind) {
    Evas_Object* const button = elm_button_add(settings.popup);
    if (!button) return;
    settings.*kind.field = button;
    elm_object_style_set(button, "default");
    elm_object_text_set(button, localised(kind.textId));
    elm_object_part_content_set(settings.popup, kind.part, button);
    evas_object_smart_callback_add(button, "clicked", kind.clicked, &settings);
    evas_object_smart_callback_add(button, "focused", ButtonFocusCB, &settings);
    elm_access_info_cb_set(button, kContextInfo, kind.accessInfo, nullptr);
}

// Each link also makes its reverse: the buttons' way up and down to the list is eventCB_focuschain's.
void _Link_Focus_Chain(const sIPSetting& settings) {
    LOG_SCOPE();
    elm_object_focus_allow_set(settings.list, EINA_TRUE);
    elm_object_focus_next_object_set(settings.list, settings.list, ELM_FOCUS_LEFT);
    elm_object_focus_next_object_set(settings.list, settings.list, ELM_FOCUS_RIGHT);
    elm_object_focus_next_object_set(settings.okButton, settings.cancelButton, ELM_FOCUS_LEFT);
    elm_object_focus_next_object_set(settings.okButton, settings.cancelButton, ELM_FOCUS_RIGHT);
    for (Evas_Object* button : {settings.okButton, settings.cancelButton})
        elm_object_event_callback_add(button, eventCB_focuschain, settings.list);
    elm_object_focus_next_object_set(settings.list, settings.okButton, ELM_FOCUS_UP);
    elm_object_focus_next_object_set(settings.list, settings.okButton, ELM_FOCUS_DOWN);
}

void addList(sIPSetting& settings) {
    settings.list = addRows(settings, _item_sel_cb);
    if (!settings.list) return;
    evas_object_smart_callback_add(settings.list, "item,focused", ListItemFocusCB, &settings);
    evas_object_smart_callback_add(settings.list, "realized", _genlist_item_reailzed_cb, nullptr);
    evas_object_event_callback_priority_add(settings.list, EVAS_CALLBACK_KEY_DOWN, EVAS_CALLBACK_PRIORITY_BEFORE,
                                            moveBetweenRows, &settings);
    evas_object_show(settings.list);
    const double scale = elm_config_scale_get();
    Evas_Object* const table = widget_min_set(settings.list, settings.popup, static_cast<int>(kListWidth * scale),
                                              static_cast<int>(kListHeight * scale));
    expandAndFill(table);
    elm_object_content_set(settings.popup, table);
}

int createIPSettingsData(sIPSetting& settings) {
    LOG_SCOPE();
    set_Initial_Values(&settings);
    addList(settings);
    for (const PopupButton& kind : kPopupButtons)
        addButton(settings, kind);
    if (settings.list) focusRows(settings);
    if (settings.list && settings.okButton && settings.cancelButton) _Link_Focus_Chain(settings);
    return 1;
}

int checkNetworkType(sIPSetting& settings, int networkType) {
    LOG_SCOPE();
    if (networkType != kNetworkWired && networkType != kNetworkWireless) {
        LOG_DEBUG("Invalid NW\n");
        return 0;
    }
    readStoredModes(settings);
    createIPSettingsData(settings);
    _SetEnableDisableList(&settings, isMode(settings.ipMode, kAutomaticMode), true);
    return 1;
}

// Whether the wireless screen has an access point to work on.
bool findWirelessTarget(sIPSetting& settings) {
    const PlatformText stored = readStore(kApNameKey);
    if (!stored) {
        LOG_DEBUG("cVconf_AP_Name is NULL\n");
        return false;
    }
    const PlatformText name = Get_Connected_AP_Name(stored.get());
    if (!name || std::strcmp(name.get(), "NULL") == 0) {
        LOG_DEBUG("Invalid AP Name\n");
        return false;
    }
    LOG_DEBUG("Initialyze wifi\n");
    copyText(settings.apName, name.get());
    wifi_initialize();
    return true;
}

void addPopup(sIPSetting& settings, Evas_Object* parent) {
    settings.popup = elm_popup_add(parent);
    if (!settings.popup) return;
    expandAndFill(settings.popup);
    evas_object_event_callback_add(settings.popup, EVAS_CALLBACK_KEY_DOWN, Reset_Time_Flag, nullptr);
    evas_object_event_callback_add(settings.popup, EVAS_CALLBACK_KEY_DOWN, ProcessRemoteKeys, &settings);
    evas_object_event_callback_add(settings.popup, EVAS_CALLBACK_MOUSE_MOVE, Reset_Time_Flag, nullptr);
    elm_object_style_set(settings.popup, kPopupStyle);
    elm_object_part_text_set(settings.popup, "title,text", localised("TV_SID_IPV6_SETTINGS"));
    evas_object_show(settings.popup);
}

void clearPendingValues() {
    for (const ValueField* field : kValueFields)
        copyText(field->sent(sglobalIPValuesObj), "");
}

}  // namespace

int launchIPSettings(Evas_Object* parent, int networkType, const sIPSettingCallbacks* callbacks) {
    LOG_SCOPE();
    if (!callbacks || !parent) {
        LOG_DEBUG("Invalid Function Parameter\n");
        return -1;
    }
    gParent = parent;
    addThemeExtension();
    sIPSetting* const settings = getObject();
    if (!settings || networkType < 0 || networkType > kNetworkWireless) {
        LOG_DEBUG("Invalid NW Type\n");
        return -1;
    }
    if (networkType == kNetworkWireless && !findWirelessTarget(*settings)) {
        delIPSettings();
        return -1;
    }
    addPopup(*settings, parent);
    fptrOkBtnCBObj = callbacks->confirmed;
    fptrCancelBtnCBObj = callbacks->closed;
    settings->networkType = static_cast<std::int16_t>(networkType);
    settings->callerData = callbacks->data;
    settings->connection = callbacks->connection;
    clearPendingValues();
    initIPSetting(settings);
    SetDefaultVconfValues(networkType, settings);
    checkNetworkType(*settings, networkType);
    return 1;
}

int destroyIPSettings() {
    LOG_SCOPE();
    LOG_DEBUG("The settings screen is destroyed\n");
    if (refocus) ecore_job_del(std::exchange(refocus, nullptr));
    if (!isSettingsOpen()) {
        LOG_DEBUG("Invalid Argument\n");
        return 1;
    }
    sIPSetting* const settings = getObject();
    reverseIPSettingsChanges(settings);
    closeScreen(*settings);
    return 0;
}

void leaveSettingsAndGadget() {
    destroyIPSettings();
    stop_function(nullptr, nullptr, nullptr);
}

Evas_Object* widget_min_set(Evas_Object* content, Evas_Object* parent, int minWidth, int minHeight) {
    LOG_SCOPE();
    Evas_Object* const table = elm_table_add(parent);
    if (!table) return nullptr;
    Evas_Object* const room = evas_object_rectangle_add(evas_object_evas_get(table));
    evas_object_size_hint_min_set(room, minWidth, minHeight);
    for (Evas_Object* object : {room, content}) {
        expandAndFill(object);
        elm_table_pack(table, object, 0, 0, 1, 1);
    }
    return table;
}
