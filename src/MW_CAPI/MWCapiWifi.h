// The settings screen's adapter of the connected access point: reads its live IPv6 values and changes its
// configuration. Access points are found by name. Platform failures are logged by name and otherwise absorbed; a value
// that cannot be read leaves its field.
#pragma once

#include "Common/Text.h"
#include "View/Settings_Record.h"

/**
 * Reads the live values of the access point named in the record into its connectionInfo.
 * @return 0, or -1 when no such access point is found (device MAC and defaults then)
 */
int Get_AP_Connection_Info(sIPSetting* obj);

// Switches the address or the DNS configuration: kSwitchToManual, anything else is automatic. Always 0.
int Set_Wireless_IP_Config_Type(int kind, sIPSetting* obj);
int Set_Wireless_DNS_Config_Type(int kind, sIPSetting* obj);

// The primary DNS server; the caller frees it. True when it was read.
bool GetWifiDnsAddress(sIPSetting* obj, char** dns);
// Makes the record's dnsAddress the primary and the secondary DNS server. Always 1.
int _Set_AP_DNS_Connection_Info(sIPSetting* obj);
// Writes a complete manual configuration to every found access point of the name in it. 1, or -1 when the walk failed.
int Set_AP_Connection_Info(const sglobalIPValues* values);

// The connected access point's name, or a copy of the stored one when there is none. Null for null.
PlatformText Get_Connected_AP_Name(const char* storedName);

// The DNS mode of the access point of that name: kManualMode or kAutomaticMode itself.
const char* Get_Wireless_DNS_Config_Type(const char* name);
// Makes one address the primary and the secondary DNS server of the access point of that name. Always 1.
int Set_Wireless_Dns_Address(const char* name, const char* dns);
