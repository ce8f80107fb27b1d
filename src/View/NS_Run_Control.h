// What the user does to a check: cancel, retry, the way to the settings screen and back; and the busy spinner.
#pragma once

#include <Evas.h>

struct sNetworkStatus;

// "clicked" callbacks; data is the status record.
void _click_cb_cancel(void* data, Evas_Object* object, void* event);
void retry_function(void* data, Evas_Object* object, void* event);
void ip_setting(void* data, Evas_Object* object, void* event);

// Clears what the last check has found out.
void initConnParameter();
// Sends the layout its high-contrast look when that mode is on.
void applyDisplayMode(const sNetworkStatus& status);

void startLoadingAnimation();
void stopLoadingAnimation();
// Deletes the spinner, shown or not.
void deleteLoadingAnimation();

// Deletes all timers and closes the settings screen. For the gadget's end.
void _clear_Timers();
