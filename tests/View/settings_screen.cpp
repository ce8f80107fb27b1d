#include "settings_screen.h"

namespace {

std::string joined(const nlohmann::json& list) {
    std::string text;
    for (const nlohmann::json& item : list)
        text += (text.empty() ? "" : ",") + item.get<std::string>();
    return text;
}

nlohmann::json configuration(const nlohmann::json& network) {
    for (const nlohmann::json& ap : network.value("/wifi/accessPoints"_json_pointer, nlohmann::json::array())) {
        if (ap["connected"]) return ap["configured"];
    }
    return network["profiles"].empty() ? nlohmann::json::object() : network["profiles"][0]["configured"];
}

}  // namespace

std::string keyOf(const SettingsCase& network, const std::string& name) {
    return network.keyStart + name + "_V6";
}

HostSetup onSettings(const SettingsCase& network, const Stored& stored, const std::string& script) {
    HostSetup setup = onNetwork(network.scenario, "expect \"IPv6 settings\" within 20\n" + (kOpenSettings + script));
    const std::vector<std::string> row = asRow(stored);
    for (std::size_t i = 0; i < row.size(); ++i)
        setup.store.emplace_back(keyOf(network, kKeyNames[i]), row[i]);
    return setup;
}

std::vector<std::string> storedAfter(const HostRun& run, const SettingsCase& network) {
    std::vector<std::string> row;
    for (const char* name : kKeyNames)
        row.push_back(run.storedText(keyOf(network, name)).value_or("(none)"));
    return row;
}

std::vector<std::string> asRow(const Stored& stored) {
    std::vector<std::string> row{stored.ipMode, stored.dnsMode};
    row.insert(row.end(), stored.values.begin(), stored.values.end());
    return row;
}

Texts valuesIn(const nlohmann::json& dump) {
    Texts values;
    for (const nlohmann::json& row : dump["rows"]) {
        if (row["text"].contains("elm.text.1")) values.push_back(row["text"]["elm.text.1"]);
    }
    return values;
}

std::string enabledIn(const nlohmann::json& dump) {
    std::string enabled;
    for (const nlohmann::json& row : dump["rows"])
        enabled += row["disabled"] ? '0' : '1';
    return enabled;
}

Texts popupsIn(const nlohmann::json& dump) {
    Texts styles;
    for (const nlohmann::json& popup : dump["popups"])
        styles.push_back(popup["style"]);
    if (!styles.empty()) styles.erase(styles.begin());
    return styles;
}

std::string configuredIn(const nlohmann::json& network) {
    const nlohmann::json is = configuration(network);
    std::string text = is.value("mode", "-") + " ";
    text += is.value("address", "-") + "/" + std::to_string(is.value("prefixLength", 0)) + " ";
    text += is.value("gateway", "-") + " " + is.value("dnsMode", "-") + " ";
    return text + (is.contains("dns") ? joined(is["dns"]) : "-");
}
