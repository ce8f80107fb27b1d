// The settings screen: six rows, OK and Cancel. What its editors and its launcher call.
#pragma once

#include <Elementary.h>

#include "MW_CAPI/Capi_IPSetting.h"

struct sIPSetting;

// Builds the screen on `parent`. 1, or -1 when it refuses: bad arguments, or no access point on a wireless network.
int launchIPSettings(Evas_Object* parent, int networkType, const sIPSettingCallbacks* callbacks);
// Reverts what was not applied and closes everything, without telling the launcher. 0, or 1 when nothing was open.
int destroyIPSettings();
// destroyIPSettings, and then the gadget closes.
void leaveSettingsAndGadget();

// Mode switches: they take effect on the network at once.
void IP_Auto_Btn(sIPSetting* settings);
void IP_Man_Btn(sIPSetting* settings);
void DNS_Auto_Btn(sIPSetting* settings);
void DNS_Man_Btn(sIPSetting* settings);

// Writes an edited value into the row that was selected; null empties it.
void fillBtnData(sIPSetting* settings, const char* value);

// Gives a widget a minimum size in pixels: a one-cell table with it and an invisible rectangle of that size.
Evas_Object* widget_min_set(Evas_Object* content, Evas_Object* parent, int minWidth, int minHeight);
