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

struct Options {
    std::string onlineUrl;  // asked over IPv6 when NetworkManager's own connectivity check is switched off
    bool wireless = false;  // "auto" without NetworkManager simulates a wireless network
};

// Opens the network that `choice` names: "networkmanager", "simulated=FILE", or "auto", which takes NetworkManager when
// it answers on the system bus and otherwise the shipped simulated network of a successful connection. The main loop
// must be initialised. A network that was selected before is released once the new one is open, and kept when not.
PLATFORM_API Selection select(const std::string& choice, const Options& options);

// Turns the main loop until the network has all settings that were stored, or so many seconds are over.
// To be called before release(), which would drop them.
PLATFORM_API void finishStoring(double seconds);

// Takes the network away: every manager call fails from then on, and no callback comes any more. All handles end here.
PLATFORM_API void release();

// The selected network, or null.
PLATFORM_API Backend* backend();

// Carries out a script's "network …" command on the selected network. Empty, or why not.
PLATFORM_API std::string command(std::span<const std::string> words);

}  // namespace network
