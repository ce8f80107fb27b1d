#include "MW_CAPI/Capi_IPSetting.h"

#include "Common/Log.h"

int LaunchIPSettings(Evas_Object* /*parent*/, int networkType, const sIPSettingCallbacks* /*callbacks*/) {
    LOG_SCOPE();
    LOG_ERROR("The IPv6 settings screen is not available yet (network type %d)\n", networkType);
    return -1;
}

int DestroyIPSettings() {
    LOG_SCOPE();
    return 1;
}
