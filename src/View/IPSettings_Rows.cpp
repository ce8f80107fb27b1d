#include "View/IPSettings_Rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Outside_Text.h"
#include "Common/Resources.h"
#include "View/IPSettings.h"
#include "View/IPSettings_Fields.h"
#include "View/IPSettings_Values.h"

namespace {

constexpr const char* kRowStyle = "C_TextItem_WhiteSingleline05";
constexpr const char* kLabelPart = "elm.text";
constexpr const char* kValuePart = "elm.text.1";

struct SettingsRow {
    const char* labelId;
    RowEditor editor;
    std::span<char> (*shown)(sIPSetting& settings);
    const ValueField* value;  // null: a mode
    bool enabledByManual;     // enabled with a manual IP mode; otherwise with an automatic one
};

constexpr std::array kRows{
    SettingsRow{"COM_IP_SETTING", RowEditor::kMode, textOf<&sIPSetting::ipModeText>, nullptr, true},
    SettingsRow{"SID_IP_ADDRESS", RowEditor::kKeyboard, kAddressField.shown, &kAddressField, true},
    SettingsRow{"TV_SID_PREFIX_LENGTH", RowEditor::kPrefix, kPrefixField.shown, &kPrefixField, true},
    SettingsRow{"SID_GATEWAY", RowEditor::kKeyboard, kGatewayField.shown, &kGatewayField, true},
    SettingsRow{"COM_DNS_SETTING", RowEditor::kMode, textOf<&sIPSetting::dnsModeText>, nullptr, false},
    SettingsRow{"SID_DNS_SERVER", RowEditor::kKeyboard, kDnsField.shown, &kDnsField, true},
};

const SettingsRow* rowAt(int index) {
    return index >= 0 && index < static_cast<int>(kRows.size()) ? &kRows[static_cast<std::size_t>(index)] : nullptr;
}

void* dataOf(int index) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(index));
}

int indexIn(const void* data) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(data));
}

char* _item_label_get_2text(void* data, Evas_Object* /*list*/, const char* part) {
    LOG_SCOPE();
    const SettingsRow* const row = rowAt(indexIn(data));
    sIPSetting* const settings = getObject();
    if (!row || !settings || !part) return strdup("");
    if (std::strcmp(part, kLabelPart) == 0) return strdup(localised(row->labelId));
    if (std::strcmp(part, kValuePart) == 0) return showableMarkup(row->shown(*settings).data());
    return strdup("");
}

// Each row of the list in turn.
template <typename Visit>
void forEachRow(Evas_Object* list, Visit visit) {
    for (Elm_Object_Item* item = elm_genlist_first_item_get(list); item; item = elm_genlist_item_next_get(item))
        visit(item);
}

void disable(Elm_Object_Item* item, bool disabled) {
    elm_object_item_disabled_set(item, disabled ? EINA_TRUE : EINA_FALSE);
}

}  // namespace

Evas_Object* addRows(sIPSetting& settings, Evas_Smart_Cb selected) {
    Evas_Object* const list = elm_genlist_add(settings.popup);
    if (!list) return nullptr;
    Elm_Genlist_Item_Class* const rowClass = elm_genlist_item_class_new();
    rowClass->item_style = kRowStyle;
    rowClass->func.text_get = _item_label_get_2text;
    for (int index = 0; index < static_cast<int>(kRows.size()); ++index) {
        elm_genlist_item_append(list, rowClass, dataOf(index), nullptr, ELM_GENLIST_ITEM_NONE, selected, nullptr);
    }
    elm_genlist_item_class_free(rowClass);
    elm_genlist_select_mode_set(list, ELM_OBJECT_SELECT_MODE_ALWAYS);
    elm_scroller_policy_set(list, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
    return list;
}

int settingsRowOf(const Elm_Object_Item* item) {
    return item ? indexIn(elm_object_item_data_get(item)) : -1;
}

const char* settingsRowLabel(int row) {
    return rowAt(row) ? localised(rowAt(row)->labelId) : "";
}

const char* settingsRowLabel(const Elm_Object_Item* item) {
    return settingsRowLabel(settingsRowOf(item));
}

const char* settingsRowValue(const Elm_Object_Item* item) {
    const SettingsRow* const row = rowAt(settingsRowOf(item));
    sIPSetting* const settings = getObject();
    return row && settings ? row->shown(*settings).data() : "";
}

RowEditor settingsRowEditor(const Elm_Object_Item* item) {
    const SettingsRow* const row = rowAt(settingsRowOf(item));
    return row ? row->editor : RowEditor::kMode;
}

void _SetEnableDisableList(sIPSetting* settings, bool isAuto, bool onInit) {
    LOG_SCOPE();
    if (!settings) {
        LOG_DEBUG("Invalid Argument\n");
        return;
    }
    forEachRow(settings->list, [&](Elm_Object_Item* item) {
        const int index = settingsRowOf(item);
        const SettingsRow* const row = rowAt(index);
        if (row && index != kIpModeRow) disable(item, row->enabledByManual == isAuto);
    });
    if (!onInit) {
        setDnsMode(*settings, isAuto ? kAutomaticMode : kManualMode);
        redrawRows(*settings);
    } else if (isAuto && isMode(settings->dnsMode, kManualMode)) {
        enableDnsServer(*settings, true);
    }
}

void enableDnsServer(const sIPSetting& settings, bool enabled) {
    if (Elm_Object_Item* last = elm_genlist_last_item_get(settings.list)) disable(last, !enabled);
}

Elm_Object_Item* nextEnabledRow(const Elm_Object_Item* from, bool down) {
    const auto neighbour = down ? elm_genlist_item_next_get : elm_genlist_item_prev_get;
    Elm_Object_Item* item = from ? neighbour(from) : nullptr;
    while (item && elm_object_item_disabled_get(item))
        item = neighbour(item);
    return item;
}

void redrawRows(const sIPSetting& settings) {
    if (settings.list) elm_genlist_realized_items_update(settings.list);
}

void focusRows(const sIPSetting& settings) {
    elm_object_focus_set(settings.list, EINA_TRUE);
    Elm_Object_Item* const item =
        settings.currentItem ? settings.currentItem : elm_genlist_first_item_get(settings.list);
    if (!item) return;
    elm_object_item_focus_set(item, EINA_TRUE);
    // Its light went with the popup's focus, and the toolkit does not tell a row that has kept its own.
    elm_object_item_signal_emit(item, "elm,state,focused", "elm");
}

void focusRowsLater() {
    const auto focus = [](void*) {
        if (isSettingsOpen() && !isEditorOpen()) focusRows(*getObject());
    };
    ecore_job_add(focus, nullptr);
}

void fillBtnData(sIPSetting* settings, const char* value) {
    LOG_SCOPE();
    if (!settings) return;
    LOG_DEBUG("Data to be Updated : %s\n", value ? value : "");
    const SettingsRow* const row = rowAt(settingsRowOf(settings->currentItem));
    if (row && row->value) {
        copyTextOrEmpty(row->value->shown(*settings), value);
        copyTextOrEmpty(row->value->live(*settings->connectionInfo), value);
    }
    if (settings->currentItem) elm_genlist_item_update(settings->currentItem);
}
