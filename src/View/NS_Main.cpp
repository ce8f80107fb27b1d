#include "View/NS_Main.h"

#include <Elementary.h>

#include <cstring>

#include "Common/Common_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Status_Store.h"
#include "View/NS_Buttons.h"
#include "View/NS_Close_Keys.h"
#include "View/NS_Networks.h"
#include "View/NS_Parts.h"
#include "View/NS_Run_Control.h"
#include "View/NS_Stage.h"

namespace {

constexpr const char* kLoggedKeys[] = {kNetworkTypeKey, kApNameKey, kStopFlagKey};

bool isThemeExtended() {
    const Eina_List* node = nullptr;
    void* known = nullptr;
    EINA_LIST_FOREACH(elm_theme_extension_list_get(nullptr), node, known) {
        if (std::strcmp(static_cast<const char*>(known), kLayoutFile) == 0) return true;
    }
    return false;
}

void logStoredKeys() {
    for (const char* key : kLoggedKeys) {
        const PlatformText value = readStore(key);
        LOG_DEBUG("%s = %s\n\n", key, value ? value.get() : "(none)");
    }
}

void startCheck(sNetworkStatus& status, const char* networkType) {
    const NetworkKind* kind = networkKindOf(networkType);
    if (kind) {
        openNetwork(*kind, status);
    } else {
        LOG_WARN("Unknown network type [%s]: no check is started\n", networkType ? networkType : "");
    }
}

}  // namespace

void addThemeExtension() {
    if (!isThemeExtended()) elm_theme_extension_add(nullptr, kLayoutFile);
}

void loadStatusLayout(const sNetworkStatus& status) {
    if (elm_layout_file_set(status.layout, kLayoutFile, kStatusGroup)) return;
    LOG_ERROR("The layout \"%s\" cannot be loaded from %s\n", kStatusGroup, kLayoutFile);
}

void showTitle(const sNetworkStatus& status) {
    elm_object_part_text_set(status.layout, part::kTitle, localised("TV_SID_IPV6_STATUS"));
}

void initialize_status(sNetworkStatus* status) {
    LOG_SCOPE();
    if (!status) return;
    addThemeExtension();
    createGlobalIPInfo();
    status->statusImage = addImage(status->layout);
    showPicture(status->statusImage, kCheckStartedPicture);
    applyDisplayMode(*status);
    elm_object_part_content_set(status->layout, part::kStatus, status->statusImage);
    evas_object_event_callback_add(status->layout, EVAS_CALLBACK_KEY_DOWN, close_win, nullptr);
    elm_object_focus_allow_set(status->layout, EINA_TRUE);
    initConnParameter();
    startLoadingAnimation();
    logStoredKeys();
    vconf_set_init_values();
    setDefaultValGlobalIPInfo();
    const PlatformText networkType = readStore(kNetworkTypeKey);
    showTitle(*status);
    showFirstCancelButton(*status);
    startCheck(*status, networkType.get());
}
