// The kinds of network that the status screen can check, by the name that the settings store has for them.
#pragma once

struct sNetworkStatus;

struct NetworkKind {
    const char* storedName;
    int number;                                     // kNetworkWired or kNetworkWireless
    bool showsSignal;                               // has a signal picture
    void (*open)(sNetworkStatus& status);           // starts its client and the first check
    void (*check)(sNetworkStatus& status);          // starts another check
    void (*showCancelled)(sNetworkStatus& status);  // what is known of it once its check was cancelled
    void (*release)(sNetworkStatus& status);        // lets its client go
};

// The kind of that name, or null.
const NetworkKind* networkKindOf(const char* storedName);
// The kind of that number; wireless for any but the wired one.
const NetworkKind& networkKindOf(int number);
// Opens a kind's client and starts its first check.
void openNetwork(const NetworkKind& kind, sNetworkStatus& status);
// Releases the kind that the store names, and the opened one too where the store has changed meanwhile.
void releaseNetwork(sNetworkStatus& status, const char* storedName);
// The kind that the settings store names, or null.
const NetworkKind* storedNetworkKind();
