// What another program prints.
#pragma once

#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

struct ToolOutput {
    int status;
    std::vector<std::string> lines;
};

inline ToolOutput runTool(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return {-1, {}};
    std::string text;
    std::array<char, 4096> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
        text.append(part.data(), count);
    ToolOutput output{pclose(pipe), {}};
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        output.lines.push_back(line);
    return output;
}
