// The settings screen's records: each has one instance, made on first use and forgotten when it is deleted.
#pragma once

#include <Elementary.h>

#include "View/Settings_Record.h"

struct custKeyboard;

// The values for an adapter to write; cleared before each use, never freed.
extern sglobalIPValues sglobalIPValuesObj;

// The prefix-length popup.
struct sipSettingChangeVal {
    Evas_Object* popup;  // owned
    Evas_Object* valueButton;
    char savedValue[4];  // the last confirmed value
    int (*destroy)();
    void (*show)(Evas_Object* parent, const char* style, sIPSetting* settings, const char* value, const char* label,
                 std::int16_t listWidth, std::int16_t rowY);
};

// What goes between the settings screen and the keyboard.
struct sipDataSettingChangeVal {
    Evas_Object* popup;  // owned
    char valueText[50];
    void (*onResult)(const char* text);  // null: the input was cancelled
    int (*destroy)();
    void (*show)(Evas_Object* parent, const char* label, const char* value);
};

// Deletes the screen's popup and its record.
void delIPSettings();

sipSettingChangeVal* ipSettingChangeValObject();
// Closes the prefix popup: the focus follows the pointer again and the settings popup gets its colour back.
int delIPSettingChangeVal();

sipDataSettingChangeVal* ipDataSettingChangeValObject();
int delIPDataSettingChangeVal();

custKeyboard* getCustKeyBoard();
void delCustKeyboard();

// Whether there is a screen, a keyboard, any editor over the screen, without making one.
bool isSettingsOpen();
bool isKeyboardOpen();
bool isEditorOpen();
// The record of the open screen, when that is what the data of a callback points at: the second click of one turn of
// the main loop may come after the first one has closed the screen.
sIPSetting* openSettings(void* data);
// The record of the open prefix popup, or null.
sipSettingChangeVal* openPrefixPopup();
// Closes whatever editor is open, and forgets what it kept.
void closeEditors();
// The settings popup under a smaller one, and as it was.
void dimSettingsPopup();
void undimSettingsPopup();
