#include "status_screen.h"

#include <algorithm>

namespace {

std::string valueIn(const nlohmann::json& dump, const std::string& part, const char* kind) {
    const nlohmann::json parts = dump.value("parts", nlohmann::json::object());
    return parts.contains(part) ? parts[part].value(kind, "") : "";
}

}  // namespace

std::string scenario(const std::string& name) {
    return SCENARIO_FOLDER + name + ".json";
}

std::string frame(int number) {
    return "network_popup_connect_" + std::to_string(number) + ".png";
}

std::string textIn(const nlohmann::json& dump, const std::string& part) {
    return valueIn(dump, part, "text");
}

std::string pictureIn(const nlohmann::json& dump, const std::string& part) {
    return valueIn(dump, part, "picture");
}

std::string focusIn(const nlohmann::json& dump) {
    const auto focus = dump.find("focus");
    return focus == dump.end() || focus->is_null() ? "nobody" : focus->value("label", "");
}

std::vector<std::string> buttonsIn(const nlohmann::json& dump) {
    std::vector<nlohmann::json> buttons = dump.value("buttons", std::vector<nlohmann::json>{});
    std::ranges::sort(buttons, {}, [](const nlohmann::json& button) { return button["geometry"][0].get<int>(); });
    std::vector<std::string> labels;
    for (const nlohmann::json& button : buttons)
        labels.push_back(button["label"]);
    return labels;
}

std::vector<std::string> panelIn(const nlohmann::json& dump) {
    std::vector<std::string> values;
    for (const char* name : {"MACValue", "IPValue", "SubnetMaskValue", "GatewayValue", "DNSValue"}) {
        values.push_back(textIn(dump, std::string("PartMain:") + name));
    }
    return values;
}

std::string dumpTicks(int count) {
    std::string script = "wait 0.01\n";
    for (int tick = 1; tick <= count; ++tick) {
        script += "wait 0.5\ndump tick" + std::to_string(tick) + ".json\n";
    }
    return script;
}
