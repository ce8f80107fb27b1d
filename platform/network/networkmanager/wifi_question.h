// Requests to the radio that take their time: connecting, disconnecting, scanning.
#pragma once

#include <NetworkManager.h>

#include <memory>
#include <string>

#include "network/backend.h"

namespace network {

/**
 * Connects with the stored profile for the access point, or a new one. Answers NONE; INVALID_KEY, also for a passphrase
 * that is needed and missing or cannot be one; DHCP_FAILED; NO_CONNECTION for a network that went away;
 * OPERATION_ABORTED when somebody ended it; NO_REPLY after 30 s; OPERATION_FAILED otherwise. The passphrase goes to
 * NetworkManager only. When it fails, a new profile is deleted again, and a stored one has its old passphrase.
 * @param passphrase empty: the stored one
 */
std::unique_ptr<Question> connectWifi(NMClient* client, NMDeviceWifi* device, NMAccessPoint* accessPoint,
                                      const std::string& passphrase, Answer answer);

// Ends a request of connectWifi that has no answer yet: it answers OPERATION_ABORTED.
void abortConnecting(Question& connecting);

// Ends the device's activation. Answers NONE once it has ended, NO_REPLY after 10 s, or why it was refused.
std::unique_ptr<Question> disconnectWifi(NMClient* client, NMDeviceWifi* device, Answer answer);

// Answers NONE once there is a newer list of access points, NO_REPLY after 15 s, or why it was refused.
std::unique_ptr<Question> scanWifi(NMDeviceWifi* device, Answer answer);

}  // namespace network
