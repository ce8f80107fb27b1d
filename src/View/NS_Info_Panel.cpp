#include "View/NS_Info_Panel.h"

#include <array>
#include <cstdio>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Outside_Text.h"
#include "Common/Resources.h"

namespace {

constexpr const char* kColonId = "SID_COLON";
constexpr int kAdviceLines = 4;

struct PanelRow {
    const char* labelPart;
    const char* labelId;
    const char* colonPart;
    const char* valuePart;
    const char* (*value)(const sGlobalIPInfo& info);
};

constexpr PanelRow kPanelRows[] = {
    {"PartMain:MAC_Address", "SID_MAC_ADDRESS", "PartMain:MACcolon", "PartMain:MACValue",
     [](const sGlobalIPInfo& info) -> const char* { return info.global_MAC_ADDRESS; }},
    {"PartMain:IP_Address", "SID_IP_ADDRESS", "PartMain:IPcolon", "PartMain:IPValue",
     [](const sGlobalIPInfo& info) -> const char* { return info.global_IP_ADDRESS; }},
    {"PartMain:Subnet_Mask", "TV_SID_PREFIX_LENGTH", "PartMain:Subnetcolon", "PartMain:SubnetMaskValue",
     [](const sGlobalIPInfo& info) -> const char* { return info.global_PREFIX_LENGTH; }},
    {"PartMain:Gateway", "SID_GATEWAY", "PartMain:Gatewaycolon", "PartMain:GatewayValue",
     [](const sGlobalIPInfo& info) -> const char* { return info.global_GATEWAY; }},
    {"PartMain:DNS_Server", "SID_DNS_SERVER", "PartMain:DNScolon", "PartMain:DNSValue",
     [](const sGlobalIPInfo& info) -> const char* { return info.global_DNS; }},
};

void fillPanel(Evas_Object* layout, const sGlobalIPInfo& info) {
    LOG_DEBUG("Valid IP Info will be set\n\n");
    for (const PanelRow& row : kPanelRows) {
        elm_object_part_text_set(layout, row.labelPart, localised(row.labelId));
        elm_object_part_text_set(layout, row.colonPart, localised(kColonId));
        setOutsideText(layout, row.valuePart, row.value(info));
    }
    LOG_DEBUG("IP [%s]\n\n", info.global_IP_ADDRESS);
    LOG_DEBUG("Prefix Length [%s]\n\n", info.global_PREFIX_LENGTH);
    LOG_DEBUG("Gateway [%s]\n\n", info.global_GATEWAY);
    LOG_DEBUG("DNS [%s]\n\n", info.global_DNS);
}

void blankPanel(Evas_Object* layout) {
    LOG_DEBUG("Blank IP Info will be set\n\n");
    for (const PanelRow& row : kPanelRows) {
        for (const char* name : {row.labelPart, row.colonPart, row.valuePart}) {
            elm_object_part_text_set(layout, name, "");
        }
    }
}

}  // namespace

void _ShowIPInfoText(int flag) {
    LOG_SCOPE();
    const sGlobalIPInfo* info = createGlobalIPInfo();
    const sNetworkStatus* status = createNetworkStatus();
    if (!info || !status) {
        LOG_DEBUG("Invalid Function Arguments\n\n");
        return;
    }
    if (flag) {
        fillPanel(status->layout, *info);
    } else {
        blankPanel(status->layout);
    }
}

void reset_text(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return;
    for (int line = 1; line <= kAdviceLines; ++line) {
        std::array<char, 20> name{};
        std::snprintf(name.data(), name.size(), "%s%d", "suggestioneline", line);
        elm_object_part_text_set(status->layout, name.data(), "");
    }
}
