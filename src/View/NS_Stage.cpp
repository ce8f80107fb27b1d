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

// Moves to the next frame of the internet stage (3, 4, 5, 6 and over again).
void advanceInternetFrame(sNetworkStatus& status) {
    if (Net_Set_Conn_Tv_Image_No == kLastInternetFrame) {
        Net_Set_Conn_Tv_Image_No = kCheckingFrame;
        return;
    }
    ++Net_Set_Conn_Tv_Image_No;
    ++status.connStatus->animationStep;
}

}  // namespace

Evas_Object* addImage(Evas_Object* layout) {
    Evas_Object* image = elm_image_add(layout);
    if (image) elm_image_preload_disabled_set(image, EINA_TRUE);
    return image;
}

bool showPictureFile(Evas_Object* image, const char* path, const char* key) {
    if (!image) return false;
    if (elm_image_file_set(image, path, key)) return true;
    reportMissing(path);
    return false;
}

bool showPicture(Evas_Object* image, const char* fileName, const char* key) {
    std::array<char, kImagePathWidth> path{};
    imagePath(path, fileName);
    return showPictureFile(image, path.data(), key);
}

void showFrame(sNetworkStatus& status) {
    std::array<char, kLongestImageName> name{};
    std::snprintf(name.data(), name.size(), "network_popup_connect_%d.png", Net_Set_Conn_Tv_Image_No);
    imagePath(status.connStatus->imagePath, name.data());
    showPictureFile(status.statusImage, status.connStatus->imagePath);
    elm_object_part_content_set(status.layout, part::kStatus, status.statusImage);
    Reset_Time_Flag();
}

void armStage(Ecore_Task_Cb tick, sNetworkStatus& status) {
    clearTimer(kStageSlot);
    Net_Set_Conn_timer[kStageSlot] = ecore_timer_add(kTickSeconds, tick, &status);
}

Eina_Bool tickStageOne(sNetworkStatus& status, bool (*passCheckingFrame)(sNetworkStatus&), void (*testLink)(),
                       void (*endStage)(sNetworkStatus&)) {
    showFrame(status);
    if (Net_Set_Conn_Tv_Image_No != kCheckingFrame) {
        ++Net_Set_Conn_Tv_Image_No;
    } else if (!passCheckingFrame(status)) {
        Net_Set_Conn_timer[kStageSlot] = nullptr;
        return ECORE_CALLBACK_CANCEL;
    }
    if (testLink) testLink();
    if (thread_flag == 0) endStage(status);
    return ECORE_CALLBACK_RENEW;
}

void enterInternetStage(sNetworkStatus& status, bool (*askOnline)(), Ecore_Task_Cb tick) {
    status.connStatus->animationStep = 0;
    status.connStatus->internetOnline = 0;
    status.connStatus->internetCheckDone = 0;
    clearTimer(kStageSlot);
    askOnline();
    Net_Set_Conn_Tv_Image_No = kCheckingFrame;
    armStage(tick, status);
    thread_flag = 1;
}

Eina_Bool tickInternetStage(sNetworkStatus& status, void (*testLink)(sNetworkStatus&),
                            void (*showVerdict)(sNetworkStatus&)) {
    showFrame(status);
    advanceInternetFrame(status);
    if (testLink) testLink(status);
    if (status.connStatus->internetCheckDone == 1) {
        endRun(status, kFirstFrame);
        showVerdict(status);
    }
    return ECORE_CALLBACK_RENEW;
}

void endRun(sNetworkStatus& status, int nextFrame) {
    deleteObject(status.animationImage);
    clearStageTimers();
    thread_flag = 1;
    Net_Set_Conn_Tv_Image_No = nextFrame;
}
