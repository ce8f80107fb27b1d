// The command line of gadget-host.
#pragma once

#include <string>

namespace host {

struct Size {
    int width = 0;   // pixels
    int height = 0;  // pixels
};

// Reads "1280x720": both between 320 and 7680. False for anything else; `size` is then untouched.
bool parseSize(const std::string& text, Size& size);

struct HostOptions {
    std::string module;
    std::string network = "auto";
    std::string networkType;  // "Wired" or "Wireless", to be stored; empty: the stored one stays
    std::string store;
    std::string onlineUrl;
    std::string script;
    std::string logLevel;
    Size size{1920, 1080};
    bool fullscreen = false;
};

struct ParsedOptions {
    HostOptions options;
    bool end = false;  // nothing to run: help or version was asked for, or the command line is wrong
    int exitCode = 0;
};

// Reads the command line. Help, version and complaints are printed here.
ParsedOptions parseOptions(int argc, char** argv);

}  // namespace host
