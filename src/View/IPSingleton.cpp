#include "View/IPSingleton.h"

#include <memory>
#include <new>
#include <utility>

#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSettingsChangeVal.h"

sglobalIPValues sglobalIPValuesObj{};

namespace {

constexpr int kFocusFollowsPointer = 1;  // Elm_Focus_Move_Policy: in
constexpr int kDimmed = 164;
constexpr int kBright = 255;

constinit sIPSetting* sIPSettingObj = nullptr;
constinit sipSettingChangeVal* sipSettingChangeValobj = nullptr;
constinit sipDataSettingChangeVal* sipDataSettingChangeValobj = nullptr;
constinit custKeyboard* custKeyboardObj = nullptr;

void colourSettingsPopup(int shade) {
    if (sIPSettingObj && sIPSettingObj->popup)
        evas_object_color_set(sIPSettingObj->popup, shade, shade, shade, kBright);
}

// The popup goes a turn later: its own button asks for it.
template <typename Record>
void deletePopupRecord(Record*& singleton) {
    const Record* const record = std::exchange(singleton, nullptr);
    if (!record) return;
    deleteLater(record->popup);
    delete record;
}

}  // namespace

sIPSetting* getObject() {
    if (sIPSettingObj) return sIPSettingObj;
    std::unique_ptr<sAPConnectionInfo> info(new (std::nothrow) sAPConnectionInfo{});
    std::unique_ptr<sIPSetting> settings(new (std::nothrow) sIPSetting{});
    if (!info || !settings) return nullptr;
    settings->connectionInfo = info.release();
    sIPSettingObj = settings.release();
    return sIPSettingObj;
}

void delIPSettings() {
    LOG_SCOPE();
    sIPSetting* const settings = std::exchange(sIPSettingObj, nullptr);
    if (!settings) return;
    deleteObject(settings->popup);
    delete settings->connectionInfo;
    delete settings;
}

sipSettingChangeVal* ipSettingChangeValObject() {
    if (sipSettingChangeValobj) return sipSettingChangeValobj;
    sipSettingChangeValobj = new (std::nothrow) sipSettingChangeVal{};
    if (!sipSettingChangeValobj) return nullptr;
    sipSettingChangeValobj->destroy = delIPSettingChangeVal;
    sipSettingChangeValobj->show = showipSettingChangeValPopup;
    return sipSettingChangeValobj;
}

int delIPSettingChangeVal() {
    elm_config_focus_move_policy_set(static_cast<Elm_Focus_Move_Policy>(kFocusFollowsPointer));
    undimSettingsPopup();
    deletePopupRecord(sipSettingChangeValobj);
    return 0;
}

sipDataSettingChangeVal* ipDataSettingChangeValObject() {
    LOG_SCOPE();
    if (sipDataSettingChangeValobj) return sipDataSettingChangeValobj;
    sipDataSettingChangeValobj = new (std::nothrow) sipDataSettingChangeVal{};
    if (!sipDataSettingChangeValobj) return nullptr;
    sipDataSettingChangeValobj->destroy = delIPDataSettingChangeVal;
    sipDataSettingChangeValobj->show = IME_Password_Main;
    return sipDataSettingChangeValobj;
}

int delIPDataSettingChangeVal() {
    undimSettingsPopup();
    deletePopupRecord(sipDataSettingChangeValobj);
    return 0;
}

custKeyboard* getCustKeyBoard() {
    LOG_SCOPE();
    if (custKeyboardObj) return custKeyboardObj;
    custKeyboardObj = new (std::nothrow) custKeyboard{};
    if (!custKeyboardObj) return nullptr;
    custKeyboardObj->deinit = custKeyboardDeInit;
    custKeyboardObj->init = custKeyboardInit;
    custKeyboardInit(custKeyboardObj);
    return custKeyboardObj;
}

void delCustKeyboard() {
    LOG_SCOPE();
    custKeyboard* const keyboard = custKeyboardObj;
    if (!keyboard) return;
    custKeyboardObj = nullptr;
    if (keyboard->deinit) keyboard->deinit(keyboard);
    delete keyboard;
}

bool isSettingsOpen() {
    return sIPSettingObj && sIPSettingObj->popup;
}

bool isEditorOpen() {
    const bool prefixIsOpen = sipSettingChangeValobj && sipSettingChangeValobj->popup;
    return isKeyboardOpen() || prefixIsOpen || (sIPSettingObj && sIPSettingObj->typePopup);
}

sIPSetting* openSettings(void* data) {
    return data == sIPSettingObj ? sIPSettingObj : nullptr;
}

sipSettingChangeVal* openPrefixPopup() {
    return sipSettingChangeValobj;
}

// The small popups go at once, before what they would give the focus back to.
void closeEditors() {
    delCustKeyboard();
    if (sIPSettingObj) deleteObject(sIPSettingObj->typePopup);
    if (sipSettingChangeValobj) deleteObject(sipSettingChangeValobj->popup);
    if (sipSettingChangeValobj) delIPSettingChangeVal();
    if (sipDataSettingChangeValobj) delIPDataSettingChangeVal();
}

bool isKeyboardOpen() {
    return custKeyboardObj && custKeyboardObj->popup;
}

void dimSettingsPopup() {
    colourSettingsPopup(kDimmed);
}

void undimSettingsPopup() {
    colourSettingsPopup(kBright);
}
