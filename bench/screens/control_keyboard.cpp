// The control program's keyboard.
#include <array>

#include "control.h"

namespace {

constexpr const char* kCharacter = "button_textOnly_IPv6";

struct Key {
    const char* label;  // shown as it is where the catalogue does not have it
    const char* part;
    const char* style;
};
constexpr std::array kKeys{
    Key{"COM_SID_DONE", "elm.button.OK_IPV6", "default"},
    Key{"SID_CANCEL", "elm.button.Cancel_IPV6", "default"},
    Key{"A", "elm.button.A_IPV6", kCharacter},
    Key{"B", "elm.button.B_IPV6", kCharacter},
    Key{"C", "elm.button.C_IPV6", kCharacter},
    Key{"D", "elm.button.D_IPV6", kCharacter},
    Key{"E", "elm.button.E_IPV6", kCharacter},
    Key{"F", "elm.button.F_IPV6", kCharacter},
    Key{"&lt;", "elm.button.leftarrow_IPV6", kCharacter},
    Key{"&gt;", "elm.button.rightarrow_IPV6", kCharacter},
    Key{"COM_SID_DELETE_ALL", "elm.button.DeleteAll_IPV6", "DeleteAll_IPv6"},
    Key{"1", "elm.button.1_IPV6", kCharacter},
    Key{"2", "elm.button.2_IPV6", kCharacter},
    Key{"3", "elm.button.3_IPV6", kCharacter},
    Key{"4", "elm.button.4_IPV6", kCharacter},
    Key{"5", "elm.button.5_IPV6", kCharacter},
    Key{"6", "elm.button.6_IPV6", kCharacter},
    Key{"7", "elm.button.7_IPV6", kCharacter},
    Key{"8", "elm.button.8_IPV6", kCharacter},
    Key{"9", "elm.button.9_IPV6", kCharacter},
    Key{"0", "elm.button.0_IPV6", kCharacter},
    Key{"", "elm.button.Delete_IPV6", "Backspace_button_IPv6"},
    Key{":", "elm.button.colon_IPV6", kCharacter},
};

void addEntry(Evas_Object* keyboard) {
    Evas_Object* const entry = elm_entry_add(keyboard);
    elm_object_style_set(entry, "C_Inputfield_White");
    elm_object_part_content_set(keyboard, "InputV6_Box.Rect", entry);
    elm_entry_single_line_set(entry, EINA_TRUE);
    elm_entry_input_panel_enabled_set(entry, EINA_FALSE);
    elm_entry_entry_set(entry, control::kAddress);
    elm_entry_cursor_end_set(entry);
    elm_object_signal_emit(entry, "elm,action,focus", "elm");
}

}  // namespace

namespace control {

Evas_Object* showKeyboard(Evas_Object* parent) {
    Evas_Object* const outer = elm_popup_add(parent);
    elm_object_style_set(outer, "C_PopupBasic_WhiteBottomLarge");
    Evas_Object* const inner = elm_popup_add(outer);
    closeOnMenu(inner);
    fill(inner);
    elm_object_style_set(inner, "IPv6Keyboard");
    elm_object_part_text_set(inner, "elm.text.title_V6", text("TV_SID_IPV6_SETTINGS"));
    elm_object_part_text_set(inner, "elm.v6.subheading", text("TV_SID_PLEASE_ENTER_IP_ADDRESS"));
    elm_object_content_set(outer, inner);
    evas_object_show(outer);
    addEntry(inner);
    Evas_Object* done = nullptr;
    for (const Key& key : kKeys) {
        Evas_Object* const button = addButton(inner, key.part, key.style, key.label);
        if (done == nullptr) done = button;
    }
    elm_object_focus_set(done, EINA_TRUE);
    return outer;
}

}  // namespace control
