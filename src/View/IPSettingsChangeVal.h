// The two small popups over the settings screen: the choice of a mode, and the prefix length.
#pragma once

#include <Elementary.h>

#include <cstdint>

struct sIPSetting;

// Opens the automatic/manual choice for the row with that label.
void showIPTypePopup(sIPSetting* settings, const char* rowLabel);

// Opens the prefix popup: see sipSettingChangeVal::show.
void showipSettingChangeValPopup(Evas_Object* parent, const char* style, sIPSetting* settings, const char* value,
                                 const char* label, std::int16_t listWidth, std::int16_t rowY);
