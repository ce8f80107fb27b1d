// The machine's own network, through NetworkManager.
#pragma once

#include <memory>
#include <string>

#include "network/network.h"

namespace network {

class Backend;

/**
 * Opens the machine's network. Waits up to 2 s for the first picture of it; the daemon may be absent then, come later,
 * and go and come at any time: calls fail meanwhile with OPERATION_FAILED. Needs an initialised Ecore.
 * @param options onlineUrl is asked when the daemon cannot tell about IPv6 connectivity
 * @param error   one line that says why there is no backend
 * @return null when the system bus cannot be reached
 */
std::unique_ptr<Backend> openNetworkManager(const Options& options, std::string& error);

// Whether NetworkManager owns its name on the system bus. Does not start it; answers within a second.
bool networkManagerAnswers();

}  // namespace network
