#include "Common/Common_Function.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "Common/Text.h"
#include "settings_store.h"

const char* default_mac = kDefaultMac;
const char* default_addr_IPv6 = "0000:0000:0000:0000:0000:0000:0000:0000";
const char* default_adr_IPv6 = "0000:0000:0000:0000:0000:0000:0000:0000";

namespace {

constexpr std::size_t kComparedCharacters = 255;
constexpr std::size_t kCopiedCharacters = 200;
constexpr std::uint16_t kInactivityLimit = 60;  // ticks of one second

constinit sGlobalIPInfo* sGlobalIPInfoObj = nullptr;
constinit sNetworkStatus* sNetworkStatusObj = nullptr;
constinit std::uint16_t time_flag = 1;

struct LabelId {
    const char* label;
    const char* textId;
};
constexpr std::array kLabelIds{
    LabelId{"Ok", "SID_OK"},
    LabelId{"Cancel", "SID_CANCEL"},
    LabelId{"IP Settings", "TV_SID_IPV6_SETTINGS"},
    LabelId{"Enter Manually", "COM_ENTER_MANUALLY"},
    LabelId{"Obtain Automatically", "COM_OBTAIN_AUTOMATICALLY"},
    LabelId{"IP Address", "SID_IP_ADDRESS_V6"},
    LabelId{"Subnet Mask", "SID_SUBNET_MASK"},
    LabelId{"Gateway", "SID_GATEWAY"},
    LabelId{"DNS Settings", "COM_DNS_SETTING"},
    LabelId{"DNS Server", "SID_DNS_SERVER"},
};

struct AccessibilityKey {
    const char* key;
    const char* failure;
};
constexpr std::array kAccessibilityKeys{
    AccessibilityKey{"db/menu/system/accessibility/highcontrast", "vconf_get_int high contrast key error"},
    AccessibilityKey{"db/menu/system/accessibility/focuszoom", "vconf_get_int enlarge mode key error"},
};

bool accessibilityKeySet(const AccessibilityKey& mode) {
    int value = 0;
    if (vconf_get_int(mode.key, &value) == 0) return value != 0;
    LOG_DEBUG("%s\n", mode.failure);
    return false;
}

}  // namespace

sGlobalIPInfo* createGlobalIPInfo() {
    LOG_SCOPE();
    if (!sGlobalIPInfoObj) sGlobalIPInfoObj = new (std::nothrow) sGlobalIPInfo{};
    return sGlobalIPInfoObj;
}

void freeGlobalIPInfo() {
    LOG_SCOPE();
    delete sGlobalIPInfoObj;
    sGlobalIPInfoObj = nullptr;
}

void setDefaultValGlobalIPInfo() {
    LOG_SCOPE();
    if (!sGlobalIPInfoObj) return;
    copyText(sGlobalIPInfoObj->global_IP_ADDRESS, kNoAddress);
    copyText(sGlobalIPInfoObj->global_PREFIX_LENGTH, kNoPrefix);
    copyText(sGlobalIPInfoObj->global_GATEWAY, kNoAddress);
    copyText(sGlobalIPInfoObj->global_DNS, kNoAddress);
}

sNetworkStatus* createNetworkStatus() {
    LOG_SCOPE();
    if (sNetworkStatusObj) return sNetworkStatusObj;
    // Every user of the record relies on its sub-record: without one there is no record either.
    std::unique_ptr<sConnectivityStatus> connectivity(new (std::nothrow) sConnectivityStatus{});
    std::unique_ptr<sNetworkStatus> status(new (std::nothrow) sNetworkStatus{});
    if (!connectivity || !status) return nullptr;
    status->connStatus = connectivity.release();
    sNetworkStatusObj = status.release();
    return sNetworkStatusObj;
}

sNetworkStatus* existingNetworkStatus() {
    return sNetworkStatusObj;
}

void freeSNetworkStatus() {
    LOG_SCOPE();
    if (!sNetworkStatusObj) return;
    std::free(static_cast<void*>(sNetworkStatusObj->focusChain));
    delete sNetworkStatusObj->connStatus;
    delete sNetworkStatusObj;
    sNetworkStatusObj = nullptr;
}

char* copybuffer(char* destination, const char* source) {
    if (!destination || !source) {
        LOG_DEBUG("User passed data is null\n");
        return nullptr;
    }
    return static_cast<char*>(std::memcpy(destination, source, std::strlen(source) + 1));
}

int string_cmp(const char* a, const char* b) {
    if (!a || !b) return -1;
    return std::strncmp(a, b, kComparedCharacters);
}

const char* getData(const char* label) {
    for (const LabelId& entry : kLabelIds) {
        if (label && std::strcmp(label, entry.label) == 0) return localised(entry.textId);
    }
    LOG_DEBUG("String not found\n");
    return label;
}

char* modifyString(const char* text) {
    LOG_SCOPE();
    if (!text) return nullptr;
    std::array<char, kCopiedCharacters> copy{};
    copyText(copy, text);
    return strdup(copy.data());
}

bool IsEnhancedUIMode(int mode) {
    LOG_SCOPE();
    if (mode >= 0 && mode < static_cast<int>(kAccessibilityKeys.size()) &&
        accessibilityKeySet(kAccessibilityKeys[static_cast<std::size_t>(mode)])) {
        return true;
    }
    LOG_DEBUG("Niether high contrast mode or enlarge mode enabled\n");
    return false;
}

Eina_Bool Timeout_Timer(void* /*data*/) {
    if (time_flag != kInactivityLimit) {
        ++time_flag;
        return ECORE_CALLBACK_RENEW;
    }
    if (!sNetworkStatusObj) return ECORE_CALLBACK_RENEW;
    Net_Set_Conn_timer[kInactivitySlot] = nullptr;
    ug_destroy_me(sNetworkStatusObj->ug);
    return ECORE_CALLBACK_CANCEL;
}

void Reset_Time_Flag(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
    time_flag = 1;
}

char* _access_info_cb(const char* text) {
    Eina_Strbuf* buffer = eina_strbuf_new();
    if (!buffer) return nullptr;
    eina_strbuf_append_printf(buffer, "%s", text ? text : "");
    char* copy = eina_strbuf_string_steal(buffer);
    eina_strbuf_free(buffer);
    return copy;
}
