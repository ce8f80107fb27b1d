#include "keyboard_screen.h"

HostSetup onKeyboard(const std::string& row, const std::string& value, const std::string& script) {
    return onSettings(kWiredCase, {kManual, kManual, {value, "64", value, value}},
                      "click \"" + row + "\"\nwait 0.3\nexpect focus exactly \"Done\"\n" + script);
}

std::string popupIn(const nlohmann::json& dump) {
    return dump["popups"].empty() ? "" : dump["popups"].back()["style"];
}

bool isKeyboardOpenIn(const nlohmann::json& dump) {
    return dump["parts"].contains("InputV6_Box.Rect");
}

std::string entryIn(const nlohmann::json& dump) {
    if (!isKeyboardOpenIn(dump)) return "no keyboard";
    const nlohmann::json& entry = dump["parts"]["InputV6_Box.Rect"];
    return entry["entry"].get<std::string>().insert(entry["cursor"], "|");
}

std::string focusedKeyIn(const nlohmann::json& dump) {
    return dump["focus"].is_null() ? "nobody" : dump["focus"]["part"];
}

std::string rowValueIn(const nlohmann::json& dump, const std::string& label) {
    for (const nlohmann::json& row : dump["rows"]) {
        if (row["text"].value("elm.text", "") == label) return row["text"].value("elm.text.1", "");
    }
    return "no such row";
}

std::string clickKey(const std::string& name) {
    return "click part elm.button." + name + "_IPV6\nwait 0.1\n";
}
