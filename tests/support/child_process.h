// A program of its own process group, whose end is waited for with a limit.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct Child {
    std::vector<std::string> command;
    std::vector<std::string> environment;  // "NAME=value", nothing else is handed over
    std::filesystem::path folder;          // where it runs; "in" there is its input, "out" and "err" get its output
    int timeout = 60;                      // seconds
};

struct ChildEnd {
    int exitCode = 0;  // minus the signal's number when a signal ended it
    bool timedOut = false;
};

// Runs to the end. Whatever is left of its process group is killed then.
ChildEnd runChild(const Child& child);

std::string readFile(const std::filesystem::path& file);
