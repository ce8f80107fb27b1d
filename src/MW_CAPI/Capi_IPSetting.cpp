#include "MW_CAPI/Capi_IPSetting.h"

#include "Common/Log.h"
#include "View/IPSettings.h"

int LaunchIPSettings(Evas_Object* parent, int networkType, const sIPSettingCallbacks* callbacks) {
    LOG_SCOPE();
    return launchIPSettings(parent, networkType, callbacks);
}

int DestroyIPSettings() {
    LOG_SCOPE();
    LOG_DEBUG("Destroying the IP settings screen\n");
    return destroyIPSettings();
}
