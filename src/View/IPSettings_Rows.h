// The six rows of the settings screen.
#pragma once

#include <Elementary.h>

struct sIPSetting;

enum class RowEditor { kMode, kPrefix, kKeyboard };

inline constexpr int kIpModeRow = 0;
inline constexpr int kDnsModeRow = 4;

// Makes the list with its rows on the settings popup. Null when the toolkit cannot.
Evas_Object* addRows(sIPSetting& settings, Evas_Smart_Cb selected);

// A row's index; its label in the user's language, never freed; its value; and what selecting it opens.
int settingsRowOf(const Elm_Object_Item* item);
const char* settingsRowLabel(const Elm_Object_Item* item);
const char* settingsRowLabel(int row);
const char* settingsRowValue(const Elm_Object_Item* item);
RowEditor settingsRowEditor(const Elm_Object_Item* item);

// Which rows can be selected: with an automatic IP mode the DNS mode only, with a manual one all values.
// `onInit`: the stored DNS mode holds; otherwise it follows the IP mode.
void _SetEnableDisableList(sIPSetting* settings, bool isAuto, bool onInit);
// Enables or disables the DNS server's row.
void enableDnsServer(const sIPSetting& settings, bool enabled);

// The nearest row below (or above) that can be selected, or null.
Elm_Object_Item* nextEnabledRow(const Elm_Object_Item* from, bool down);

// Redraws the rows that are on the screen.
void redrawRows(const sIPSetting& settings);
// Gives the focus to the list: on the row last selected, at first on the first one.
void focusRows(const sIPSetting& settings);
// The same when the popup that is being closed has gone, for as long as the screen is there.
void focusRowsLater();
