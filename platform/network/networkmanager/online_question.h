// Whether the internet is reached over IPv6 from the wired device.
#pragma once

#include <NetworkManager.h>

#include <memory>
#include <string>

#include "network/backend.h"

namespace network {

/**
 * Has NetworkManager check its connectivity when it can, else asks the URL. NONE: online. OFFLINE: there is no way out,
 * or a portal is in it. NO_REPLY: no answer within 9.5 s. INVALID_OPERATION: the check is switched off and there is no
 * URL.
 * @param url may be empty
 * @return the code of a question that could not be asked; its answer does not come then
 */
int askOnlineOver(NMClient* client, NMDevice* device, const std::string& url, Answer answer,
                  std::unique_ptr<Question>& question);

}  // namespace network
