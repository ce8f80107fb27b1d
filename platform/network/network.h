// Choosing the network that the managers stand on. For the host program and for tests.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "platform_api.h"

namespace network {

class Backend;

struct Selection {
    bool selected = false;
    std::string text;  // selected: which network this is, for the terminal; otherwise one line that says why not
};

// Options that only the machine's own network looks at.
struct Options {
    std::string onlineUrl;  // asked over IPv6 when NetworkManager's own connectivity check is switched off
};

// `choice` is "auto", "networkmanager" or "simulated=FILE".
PLATFORM_API Selection select(const std::string& choice, const Options& options);

// Takes the network away: every manager call fails from then on, and no callback comes any more.
PLATFORM_API void release();

// The selected network, or null.
PLATFORM_API Backend* backend();

// Carries out a script's "network …" command on the selected network. Empty, or why not.
PLATFORM_API std::string command(std::span<const std::string> words);

}  // namespace network
