#include "status_screen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

std::string scenario(const std::string& name) {
    return SCENARIO_FOLDER + name + ".json";
}

bool isWireless(const std::string& network) {
    return network.starts_with("wifi");
}

HostSetup onNetwork(const std::string& network, const std::string& script) {
    return {.network = network.starts_with("{") ? network : scenario(network),
            .store = {{"db/menu/network/network_type", isWireless(network) ? "Wireless" : "Wired"}},
            .script = script,
            .timeout = 240};  // many journeys take their time with sanitizers on a busy machine
}

std::string checking(const std::string& network) {
    return std::string("Checking the ") + (isWireless(network) ? "wireless" : "wired") + " network connection…";
}

std::string ready(const std::string& network) {
    return std::string("Your ") + (isWireless(network) ? "wireless" : "wired") +
           " network and the internet are ready to use.";
}

std::string failed(const std::string& network) {
    return isWireless(network) ? "Wireless network connection failed." : "Wired network connection failed.";
}

nlohmann::json endOf(HostSetup setup) {
    setup.script += "dump end.json\nquit\n";
    const HostRun run(setup);
    EXPECT_TRUE(run.succeeded()) << setup.network << '\n' << run;
    return run.dump("end.json");
}

std::string textIn(const nlohmann::json& dump, const std::string& part) {
    return dump.value(nlohmann::json::json_pointer("/parts/" + part + "/text"), "");
}

std::string pictureIn(const nlohmann::json& dump, const std::string& part) {
    return dump.value(nlohmann::json::json_pointer("/parts/" + part + "/picture"), "");
}

std::string focusIn(const nlohmann::json& dump) {
    return dump.value("/focus/label"_json_pointer, "nobody");
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

Texts listed(std::string_view text) {
    Texts all;
    std::istringstream stream{std::string(text)};
    for (std::string part; std::getline(stream, part, '|');)
        all.push_back(part);
    return all;
}

std::string walk(std::string_view steps) {
    std::string script;
    for (const std::string& step : listed(steps)) {
        const std::size_t blank = step.find(' ');
        script +=
            "key " + step.substr(0, blank) + "\nwait 0.1\nexpect focus exactly \"" + step.substr(blank + 1) + "\"\n";
    }
    return script;
}
