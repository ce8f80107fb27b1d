// What the stages of both kinds of network share: frames, pictures, timers.
#pragma once

#include <Ecore.h>
#include <Evas.h>

#include <cstdint>

struct sNetworkStatus;

inline constexpr int kFirstFrame = 1;
inline constexpr int kCheckingFrame = 3;
inline constexpr int kFrameAfterStageOne = 2;

inline constexpr const char* kCheckStartedPicture = "network_popup_connect_1.png";
inline constexpr const char* kSuccessPicture = "network_popup_connect_6.png";
inline constexpr const char* kNoInternetPicture = "network_connect_3.png";
inline constexpr const char* kNoGatewayPicture = "network_popup_connect_0.png";
inline constexpr const char* kNoCablePicture = "network_connect_0.png";
inline constexpr const char* kErrorMarkPicture = "wizard_popup_connect_error.png";

// An image object on the layout that shows its picture in the very frame in which it is loaded.
Evas_Object* addImage(Evas_Object* layout);
// Loads a file of the image folder. Says so in the log when it cannot, and returns whether it could.
bool showPicture(Evas_Object* image, const char* fileName, const char* key = nullptr);
// As showPicture, with the full path.
bool showPictureFile(Evas_Object* image, const char* path, const char* key = nullptr);

// Shows frame Net_Set_Conn_Tv_Image_No of the check; a frame counts as activity.
void showFrame(sNetworkStatus& status);

// Replaces the running stage's timer by a 0.5-second tick.
void armStage(Ecore_Task_Cb tick, sNetworkStatus& status);
// One tick of stage one: the frame, the pass on the checking frame (false ends the run without a verdict), the link
// test of a kind of network that has one, and the end of the stage once nothing is waited for.
Eina_Bool tickStageOne(sNetworkStatus& status, bool (*passCheckingFrame)(sNetworkStatus&), void (*testLink)(),
                       void (*endStage)(sNetworkStatus&));
// Leaves stage one for the internet stage: asks whether the internet is reachable and waits for the answer.
void enterInternetStage(sNetworkStatus& status, bool (*askOnline)(), Ecore_Task_Cb tick);

// One tick of the internet stage: the frame, the link test of a kind of network that has one, and the verdict once the
// question is answered.
Eina_Bool tickInternetStage(sNetworkStatus& status, void (*testLink)(sNetworkStatus&),
                            void (*showVerdict)(sNetworkStatus&));

// Ends the run: no hidden image, no timers; the next run begins at that frame.
void endRun(sNetworkStatus& status, int nextFrame);
