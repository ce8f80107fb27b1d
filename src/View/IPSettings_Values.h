// Where the settings screen's values come from: the store, or the live connection.
#pragma once

#include "View/IPSettings_Fields.h"

struct SettingsNetwork;

// Starts and ends hearing of address changes on the screen's connection.
void initIPSetting(sIPSetting* settings);
void stopAddressChanges(const sIPSetting& settings);

// Seeds the six keys of the kind of network; a seeded mode also goes into the record.
void SetDefaultVconfValues(int networkType, sIPSetting* settings);
// Reads the two stored modes into the record. Whatever is not the manual mode is the automatic one.
void readStoredModes(sIPSetting& settings);
// Fills the mode texts and the four values that the screen opens with.
void set_Initial_Values(sIPSetting* settings);

// The mode pointer and its text in the user's language.
void setIpMode(sIPSetting& settings, const char* mode);
void setDnsMode(sIPSetting& settings, const char* mode);
// Whether a mode pointer or text stands for that mode; a null one stands for none.
bool isMode(const char* mode, const char* wanted);

// Copies one stored value, or all four, into the record; a key without a value leaves its field.
void loadStoredValue(const ValueField& field, const SettingsKeys& keys, sIPSetting& settings);
void GetVConfValuesWL(sIPSetting* settings);
void GetVConfValuesWired(sIPSetting* settings);

// Copies the live values into the record: the DNS server only where the DNS mode is automatic.
void copyLiveValues(sIPSetting& settings);
