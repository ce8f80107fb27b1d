#include "View/Custom_IPv6_Keyboard.h"

#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"

void IME_Password_Main(Evas_Object* /*parent*/, const char* selectedItem, const char* /*selectedContent*/) {
    LOG_SCOPE();
    LOG_ERROR("The keyboard is not available yet (row %s)\n", selectedItem);
}

void custKeyboardInit(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (!keyboard) LOG_DEBUG("NULL Argument cCustKeyboard of * to  sCustKeyboard\n");
}

void custKeyboardDeInit(custKeyboard* keyboard) {
    LOG_SCOPE();
    if (!keyboard) LOG_DEBUG("NULL Argument cCustKeyboard of * to  sCustKeyboard\n");
}

void processKeyboardData(const char* /*text*/) {
    LOG_SCOPE();
}
