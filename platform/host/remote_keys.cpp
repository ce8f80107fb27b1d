#include "host/remote_keys.h"

#include <Ecore_Input.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct Renamed {
    std::string_view from;
    const char* to;
};

// A PC keyboard has no such keys.
constexpr std::array kRemoteKeys{
    Renamed{"Escape", "XF86Back"},
    Renamed{"F10", "Menu"},
    Renamed{"F4", "XF86Close"},
};

// The colon's own name depends on the keyboard's layout. Keypad digits go by their keys' names, as a remote sends them.
constexpr std::array kStandsFor{
    Renamed{"colon", "colon"},  Renamed{"KP_0", "KP_Insert"}, Renamed{"KP_1", "KP_End"},   Renamed{"KP_2", "KP_Down"},
    Renamed{"KP_3", "KP_Next"}, Renamed{"KP_4", "KP_Left"},   Renamed{"KP_5", "KP_Begin"}, Renamed{"KP_6", "KP_Right"},
    Renamed{"KP_7", "KP_Home"}, Renamed{"KP_8", "KP_Up"},     Renamed{"KP_9", "KP_Prior"},
};

// What named keys type. Letters and digits type their own name.
constexpr std::array kTyped{
    Renamed{"colon", ":"},   Renamed{"semicolon", ";"}, Renamed{"period", "."}, Renamed{"slash", "/"},
    Renamed{"minus", "-"},   Renamed{"space", " "},     Renamed{"KP_0", "0"},   Renamed{"KP_1", "1"},
    Renamed{"KP_2", "2"},    Renamed{"KP_3", "3"},      Renamed{"KP_4", "4"},   Renamed{"KP_5", "5"},
    Renamed{"KP_6", "6"},    Renamed{"KP_7", "7"},      Renamed{"KP_8", "8"},   Renamed{"KP_9", "9"},
    Renamed{"Return", "\r"}, Renamed{"KP_Enter", "\r"}, Renamed{"Tab", "\t"},   Renamed{"BackSpace", "\b"},
};

template <std::size_t kSize>
const char* lookUp(const std::array<Renamed, kSize>& table, std::string_view name) {
    const auto* const row = std::ranges::find(table, name, &Renamed::from);
    return row == table.end() ? nullptr : row->to;
}

Eina_Bool renameKey(void* /*data*/, void* /*loopData*/, int type, void* event) {
    if (type != ECORE_EVENT_KEY_DOWN && type != ECORE_EVENT_KEY_UP) return EINA_TRUE;
    auto* const input = static_cast<Ecore_Event_Key*>(event);
    const host::Key key = host::mapKey(input->keyname, input->key, input->string);
    input->keyname = key.keyname;
    input->key = key.key;
    input->string = key.text;
    if (key.text == nullptr) input->compose = nullptr;
    return EINA_TRUE;
}

}  // namespace

namespace host {

Key mapKey(const char* keyname, const char* key, const char* text) {
    if (keyname == nullptr || key == nullptr) return {keyname, key, text};
    if (const char* remote = lookUp(kRemoteKeys, keyname)) return {remote, remote, nullptr};
    if (const char* meant = lookUp(kStandsFor, key)) return {meant, key, text};
    return {keyname, key, text};
}

KeyboardMapping::KeyboardMapping() : filter_(ecore_event_filter_add(nullptr, renameKey, nullptr, nullptr)) {}

KeyboardMapping::~KeyboardMapping() {
    ecore_event_filter_del(filter_);
}

void pressKey(Evas* canvas, const std::string& name) {
    const char* typed = name.size() == 1 ? name.c_str() : lookUp(kTyped, name);
    const Key key = mapKey(name.c_str(), name.c_str(), typed);
    const auto now = static_cast<unsigned int>(ecore_loop_time_get() * 1000.0);
    evas_event_feed_key_down(canvas, key.keyname, key.key, key.text, key.text, now, nullptr);
    evas_event_feed_key_up(canvas, key.keyname, key.key, key.text, key.text, now, nullptr);
}

}  // namespace host
