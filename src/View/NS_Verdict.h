// The end of a check: picture, message, advice, panel and buttons. What a kind of network says is in its table.
#pragma once

#include <span>

struct sGlobalIPInfo;
struct sNetworkStatus;

// One failure; the first case of a table that holds gives the advice.
struct FailureCase {
    bool (*holds)(const sNetworkStatus& status, const sGlobalIPInfo& info);
    const char* adviceId;
    void (*dress)(sNetworkStatus& status);         // before the row of buttons is linked; may be null
    void (*relink)(const sNetworkStatus& status);  // after it; may be null
};

struct NetworkVerdict {
    int (*prepare)();  // what must be read before the verdict; may be null
    const char* successMessageId;
    const char* failureMessageId;
    void (*failurePicture)(const sNetworkStatus* status, std::span<char> path);
    bool (*showsErrorMark)(const sNetworkStatus& status);
    void (*showName)(const sNetworkStatus& status, const sGlobalIPInfo& info);  // may be null
    void (*makeButtons)(sNetworkStatus& status);
    std::span<const FailureCase> failures;  // its last case always holds
};

// Ends the check on the screen with what the status record has found out.
void showVerdict(sNetworkStatus& status, const NetworkVerdict& verdict);

// Cases and dresses that several tables use.
bool hasUnusableMac(const sNetworkStatus& status, const sGlobalIPInfo& info);
bool isGatewayReached(const sNetworkStatus& status, const sGlobalIPInfo& info);
bool anyOtherFailure(const sNetworkStatus& status, const sGlobalIPInfo& info);

// Texts of the main message and of the advice line, by their IDs.
void showMessage(const sNetworkStatus& status, const char* textId);
void showAdvice(const sNetworkStatus& status, const char* textId);
