// Reading the parts of a scenario file; each throws ReadError with the place of what does not fit.
#pragma once

#include "json_reader.h"
#include "scenario.h"

namespace network::simulated {

Reply readReply(const Node& node);
Ipv6Values readLiveValues(const Node& node, bool unchecked);
Ipv6Settings readConfigured(const Node& node, bool unchecked);
Radio readRadio(const Node& node, bool unchecked);

}  // namespace network::simulated
