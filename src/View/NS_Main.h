// The status screen: built once, on the layout that the gadget's entry has made.
#pragma once

struct sNetworkStatus;

// Makes the package's layout file known as a theme extension, once a process.
void addThemeExtension();
// Loads the status group into the layout. Says so in the log when it cannot.
void loadStatusLayout(const sNetworkStatus& status);
void showTitle(const sNetworkStatus& status);

// Builds the screen and starts the check of the stored kind of network ("Wired" when there is none).
void initialize_status(sNetworkStatus* status);
