#include "View/IPSettingsChangeVal.h"

#include "Common/Log.h"

void showipSettingChangeValPopup(Evas_Object* /*parent*/, const char* /*style*/, sIPSetting* /*settings*/,
                                 const char* /*value*/, const char* /*label*/, std::int16_t /*listWidth*/,
                                 std::int16_t /*rowY*/) {
    LOG_SCOPE();
    LOG_ERROR("The prefix popup is not available yet\n");
}
