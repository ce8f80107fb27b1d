#include "Common/NS_Key_Grab.h"

namespace {

constexpr const char* kDigitKeys[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"};

}  // namespace

void NS_IP_KeyGrab(Evas_Object* window) {
    for (const char* key : kDigitKeys)
        elm_win_keygrab_set(window, key, 0, 0, 0, ELM_WIN_KEYGRAB_TOPMOST);
}

void NS_IP_KeyUnGrab(Evas_Object* window) {
    for (const char* key : kDigitKeys)
        elm_win_keygrab_unset(window, key, 0, 0);
}
