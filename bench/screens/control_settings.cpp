// The control program's settings screen.
#include <array>
#include <cstdint>
#include <cstring>

#include "control.h"

namespace {

constexpr double kListWidth = 250;
constexpr double kListHeight = 264;
constexpr std::intptr_t kDnsModeRow = 4;

struct Row {
    const char* label;
    const char* value;
    bool isTextId;
};
constexpr std::array kRows{
    Row{"COM_IP_SETTING", "COM_ENTER_MANUALLY", true},  Row{"SID_IP_ADDRESS", control::kAddress, false},
    Row{"TV_SID_PREFIX_LENGTH", "64", false},           Row{"SID_GATEWAY", "fe80::1", false},
    Row{"COM_DNS_SETTING", "COM_ENTER_MANUALLY", true}, Row{"SID_DNS_SERVER", "2001:db8:1::53", false},
};

constinit Evas_Object* status = nullptr;
constinit Evas_Object* popup = nullptr;
constinit Evas_Object* keyboard = nullptr;

char* rowText(void* data, Evas_Object* /*list*/, const char* part) {
    const Row& row = kRows[reinterpret_cast<std::uintptr_t>(data)];
    if (std::strcmp(part, "elm.text") == 0) return strdup(control::text(row.label));
    return strdup(row.isTextId ? control::text(row.value) : row.value);
}

void openKeyboard(void* /*data*/, Evas_Object* /*list*/, void* /*item*/) {
    evas_object_hide(popup);
    keyboard = control::showKeyboard(status);
}

Evas_Object* addList() {
    Evas_Object* const list = elm_genlist_add(popup);
    Elm_Genlist_Item_Class* const rowClass = elm_genlist_item_class_new();
    rowClass->item_style = "C_TextItem_WhiteSingleline05";
    rowClass->func.text_get = rowText;
    for (std::uintptr_t row = 0; row < kRows.size(); ++row) {
        Elm_Object_Item* const item = elm_genlist_item_append(list, rowClass, reinterpret_cast<void*>(row), nullptr,
                                                              ELM_GENLIST_ITEM_NONE, openKeyboard, nullptr);
        if (row == kDnsModeRow) elm_object_item_disabled_set(item, EINA_TRUE);
    }
    elm_genlist_item_class_free(rowClass);
    elm_genlist_select_mode_set(list, ELM_OBJECT_SELECT_MODE_ALWAYS);
    elm_scroller_policy_set(list, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
    evas_object_show(list);
    return list;
}

// The popup takes its size from what it holds.
void placeList(Evas_Object* list) {
    Evas_Object* const table = elm_table_add(popup);
    Evas_Object* const room = evas_object_rectangle_add(evas_object_evas_get(table));
    const double scale = elm_config_scale_get();
    evas_object_size_hint_min_set(room, static_cast<int>(kListWidth * scale), static_cast<int>(kListHeight * scale));
    for (Evas_Object* object : {room, list}) {
        control::fill(object);
        elm_table_pack(table, object, 0, 0, 1, 1);
    }
    control::fill(table);
    elm_object_content_set(popup, table);
}

}  // namespace

namespace control {

void showSettings(Evas_Object* parent) {
    status = parent;
    popup = elm_popup_add(parent);
    closeOnMenu(popup);
    fill(popup);
    elm_object_style_set(popup, "c_popup_l_bottom");
    elm_object_part_text_set(popup, "title,text", text("TV_SID_IPV6_SETTINGS"));
    evas_object_show(popup);
    Evas_Object* const list = addList();
    placeList(list);
    addButton(popup, "button1", "default", "COM_SID_OK");
    addButton(popup, "button2", "default", "SID_CANCEL");
    elm_object_focus_set(list, EINA_TRUE);
    elm_object_item_focus_set(elm_genlist_first_item_get(list), EINA_TRUE);
}

void deleteSettings() {
    for (Evas_Object** opened : {&keyboard, &popup}) {
        if (*opened != nullptr) evas_object_del(*opened);
        *opened = nullptr;
    }
}

}  // namespace control
