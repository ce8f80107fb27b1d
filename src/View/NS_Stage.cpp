#include "View/NS_Stage.h"

#include <Elementary.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <string_view>

#include "Common/Common_Function.h"
#include "Common/Common_Widget_Function.h"
#include "Common/Log.h"
#include "Common/Resources.h"
#include "Common/Run_State.h"
#include "Common/Text.h"
#include "View/NS_Buttons.h"
#include "View/NS_Parts.h"

namespace {

constexpr double kTickSeconds = 0.5;
constexpr int kFirstInternetFrame = 3;
constexpr int kLastInternetFrame = 6;
constexpr const char* kUnknownPrefix = "129";
constexpr const char* kUnusableMacs[] = {"00:00:00:00:00:00", "FF:FF:FF:FF:FF:FF"};

constexpr std::size_t kRememberedFiles = 32;

// Hashes of the files that were reported missing: a frame comes round every two seconds, its complaint only once.
constinit std::array<std::size_t, kRememberedFiles> missingFiles{};
constinit std::size_t missingCount = 0;

void reportMissing(std::string_view path) {
    const std::size_t hash = std::hash<std::string_view>{}(path);
    const auto known = std::span(missingFiles).first(missingCount);
    if (missingCount == kRememberedFiles || std::ranges::find(known, hash) != known.end()) return;
    missingFiles[missingCount++] = hash;
    LOG_ERROR("The picture %.*s cannot be loaded\n", static_cast<int>(path.size()), path.data());
}

void normaliseAddress(std::span<char> address) {
    if (string_cmp(address.data(), default_addr_IPv6) == 0) copyText(address, kNoAddress);
}

}  // namespace

Evas_Object* addImage(Evas_Object* layout) {
    Evas_Object* image = elm_image_add(layout);
    if (image) elm_image_preload_disabled_set(image, EINA_TRUE);
    return image;
}

void showPictureFile(Evas_Object* image, const char* path, const char* key) {
    if (image && !elm_image_file_set(image, path, key)) reportMissing(path);
}

void showPicture(Evas_Object* image, const char* fileName, const char* key) {
    std::array<char, kImagePathWidth> path{};
    imagePath(path, fileName);
    showPictureFile(image, path.data(), key);
}

void showFrame(sNetworkStatus& status) {
    std::array<char, kLongestImageName> name{};
    std::snprintf(name.data(), name.size(), "network_popup_connect_%d.png", Net_Set_Conn_Tv_Image_No);
    imagePath(status.connStatus->imagePath, name.data());
    showPictureFile(status.statusImage, status.connStatus->imagePath);
    elm_object_part_content_set(status.layout, part::kStatus, status.statusImage);
    Reset_Time_Flag();
}

void advanceInternetFrame(sNetworkStatus& status) {
    if (Net_Set_Conn_Tv_Image_No == kLastInternetFrame) {
        Net_Set_Conn_Tv_Image_No = kFirstInternetFrame;
        return;
    }
    ++Net_Set_Conn_Tv_Image_No;
    ++status.connStatus->animationStep;
}

void armStage(Ecore_Task_Cb tick, sNetworkStatus& status) {
    clearTimer(kStageSlot);
    Net_Set_Conn_timer[kStageSlot] = ecore_timer_add(kTickSeconds, tick, &status);
}

void endRun(sNetworkStatus& status, int nextFrame) {
    deleteObject(status.animationImage);
    clearStageTimers();
    thread_flag = 1;
    Net_Set_Conn_Tv_Image_No = nextFrame;
}

bool isUnusableMac(const sGlobalIPInfo& info) {
    for (const char* mac : kUnusableMacs) {
        if (string_cmp(info.global_MAC_ADDRESS, mac) == 0) return true;
    }
    return false;
}

void fillMissingMac(sGlobalIPInfo& info) {
    if (info.global_MAC_ADDRESS[0] != '\0') return;
    copyText(info.global_MAC_ADDRESS, kDefaultMac);
    setDefaultValGlobalIPInfo();
}

void normaliseAddresses(sGlobalIPInfo& info) {
    normaliseAddress(info.global_IP_ADDRESS);
    normaliseAddress(info.global_GATEWAY);
    normaliseAddress(info.global_DNS);
    if (string_cmp(info.global_PREFIX_LENGTH, kUnknownPrefix) == 0) copyText(info.global_PREFIX_LENGTH, kNoPrefix);
}

void showResultRow(sNetworkStatus& status) {
    deleteObject(status.stopBtn);
    createNSCommonBtn(&status);
    focusResultRow(status);
}
