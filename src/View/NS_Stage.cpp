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
#include "View/NS_Parts.h"

namespace {

constexpr double kTickSeconds = 0.5;
constexpr int kFirstInternetFrame = 3;
constexpr int kLastInternetFrame = 6;

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
