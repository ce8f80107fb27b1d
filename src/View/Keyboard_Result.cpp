// What becomes of a typed text.
#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSettings.h"
#include "View/IPSettings_Rows.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Popups.h"
#include "View/Keyboard_Rows.h"

namespace {

void returnToSettings(const sIPSetting& settings) {
    delCustKeyboard();
    if (settings.popup) evas_object_show(settings.popup);
    if (settings.list) focusRows(settings);
}

}  // namespace

void processKeyboardData(const char* text) {
    LOG_SCOPE();
    sIPSetting* const settings = getObject();
    if (!settings) {
        LOG_DEBUG("Unable to Get IPSettings object\n");
        return;
    }
    custKeyboard* const keyboard = getCustKeyBoard();
    if (!keyboard) {
        LOG_DEBUG("Keyboard Object Creation Got Failed\n");
        return;
    }
    if (!text) {
        LOG_DEBUG("Cancel Case call back\n");
        return returnToSettings(*settings);
    }
    sipDataSettingChangeVal* const edited = ipDataSettingChangeValObject();
    if (!edited) {
        LOG_DEBUG("Unable to Create sIPDataSettingChangeVal object\n");
        return;
    }
    LOG_DEBUG("Keyboard Entered Data : %s\n", edited->valueText);
    const PlatformText label(modifyString(settings->currentItem ? settingsRowLabel(settings->currentItem) : ""));
    if (!ipv6Address_validation(edited->valueText)) {
        return showPopup(keyboard, label.get(), addressRowText(label.get(), &AddressRow::refusalId));
    }
    returnToSettings(*settings);
    fillBtnData(settings, edited->valueText);
}
