#include "keyboard_screen.h"

HostSetup onKeyboard(const std::string& row, const std::string& value, const std::string& script) {
    const std::string start = "db/menu/network/wired_";
    return {.network = scenario("success"),
            .store = {{start + "ip_mode_V6", "COM_ENTER_MANUALLY"},
                      {start + "dns_mode_V6", "COM_ENTER_MANUALLY"},
                      {start + "ip_V6", value},
                      {start + "prefix_V6", "64"},
                      {start + "gateway_V6", value},
                      {start + "dns_V6", value}},
            .script = "expect \"IPv6 settings\" within 20\nkey Right\nkey Return\nwait 0.3\nclick \"" + row +
                      "\"\nwait 0.3\nexpect focus exactly \"Done\"\n" + script};
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
