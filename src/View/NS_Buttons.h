// The status screen's buttons: Cancel while a check runs, the result row afterwards, and what closes the gadget.
#pragma once

#include <Evas.h>

struct sNetworkStatus;

// Makes Close, Retry and IPv6 settings and puts them into their parts. Sets no focus and no accessibility text.
void createNSCommonBtn(sNetworkStatus* status);

// Makes the Cancel button of a check in stopBtn, keeps left and right on it and gives it the focus.
void showCancelButton(sNetworkStatus& status);
// The same for the first check: up and down stay on it too, and the toolkit shows the focus at once.
void showFirstCancelButton(sNetworkStatus& status);
// The Cancel button becomes the Close button, in its own place and with its own click.
void turnCancelIntoClose(sNetworkStatus& status);
// One button of the result row with its accessibility text.
void addRetryButton(sNetworkStatus& status);
void addSettingsButton(sNetworkStatus& status);

// Links the buttons that there are, IPv6 settings, Retry and Close, into a ring and gives the focus to Close.
void focusResultRow(sNetworkStatus& status);
// Gives the focus to stopBtn, or to the layout when there is none: the close keys must always reach somebody.
void focusStopButton(const sNetworkStatus& status);

// The same, for whoever covers the status screen: nothing when it is not built.
void focusStatusBelow();

// Stops the check's timers and asks the host to destroy the gadget; Close's callback.
void stop_function(void* data, Evas_Object* object, void* event);
