#include "keyboard_screen.h"

std::string entryIn(const nlohmann::json& dump) {
    if (!dump["parts"].contains("InputV6_Box.Rect")) return "no keyboard";
    const nlohmann::json& entry = dump["parts"]["InputV6_Box.Rect"];
    return entry["entry"].get<std::string>().insert(entry["cursor"], "|");
}
