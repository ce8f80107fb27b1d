// One HTTP request over IPv6, off the main loop.
#pragma once

#include <memory>
#include <string>

#include "network/backend.h"

namespace network {

struct HttpRequest {
    std::string url;            // http or https
    std::string interfaceName;  // the interface that the request must leave by
    double limitSeconds = 0;
};

/**
 * Asks the URL; a 2xx from the asked host itself is NONE. Redirections are how captive portals answer and count, like
 * any other status and like a host that cannot be found or reached, as OFFLINE. NO_REPLY: the time ran out.
 * INVALID_PARAMETER: not a URL. OPERATION_FAILED: anything else. Proxies of the environment are not used.
 * @return null when no thread can be had
 */
std::unique_ptr<Question> probeHttp(HttpRequest request, Answer answer);

}  // namespace network
