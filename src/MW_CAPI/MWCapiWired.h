// The settings screen's adapter of the wired profile: reads its live IPv6 values and changes its configuration.
// Platform failures are logged by name and otherwise absorbed. Each change stores and applies the profile.
#pragma once

#include "View/Settings_Record.h"

// Switches the address or the DNS configuration: kSwitchToManual, anything else is automatic. Always 0.
int _Set_IP_Config_Type(int kind);
int _Set_DNS_Config_Type(int kind);

/**
 * Reads the live values into the record's connectionInfo; a value that cannot be read gets its default.
 * @return 0; 14 when there is no Ethernet profile (all defaults); 15 when the MAC address cannot be read (nothing else
 *         is touched); 16 for a null record
 */
int _Get_Wired_Connection_Info(sIPSetting* obj);
// The MAC address and the defaults of all other values.
void _Wired_Default_Connection_Info(sIPSetting* obj);

// The primary DNS server; the caller frees it. True when it could NOT be read.
bool GetDnsAddress(char** dns);
// Makes one address the primary and the secondary DNS server.
void Set_Wired_Dns_Address(const char* dns);
// Writes a complete manual configuration; stops at the first value that is refused, and then does not store it.
void Set_Wired_Conn_Info(const sglobalIPValues* values);

// The profile's DNS mode: kManualMode or kAutomaticMode itself.
const char* Get_DNS_Config_Type();

// The first registered Ethernet profile, only written when there is one. True when it is connected.
bool Updated_Ethernet_Profile_Handle(connection_profile_handle* profile);

// Forgets the connection handle, which the next operation looks up again. For the end of the settings screen.
void forgetConnHandler();
