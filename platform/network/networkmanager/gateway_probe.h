// Asks whether an IPv6 gateway answers, without privileges.
#pragma once

#include <memory>
#include <optional>

#include "neighbour_table.h"
#include "network/backend.h"

namespace network {

/**
 * Sends echo requests where ping sockets are allowed (icmp(7), ping_group_range), and datagrams to a closed port, and
 * looks whether neighbour discovery (RFC 4861) confirms the gateway after that. Any of the three counts as an answer;
 * what the kernel believed before does not. Answers NONE, or NO_REPLY after 4.5 s.
 * @return INVALID_GATEWAY: there is none. OPERATION_FAILED: no socket can be had.
 */
int probeGateway(const std::optional<Neighbour>& gateway, Answer answer, std::unique_ptr<Question>& question);

}  // namespace network
